#pragma once
// c_home: the main menu of five items. One object, the global `_home`. The items stand on a grid of
// 104-pixel cells: MIX and EDIT on the top row, OPTIONS, FULL SCREEN and QUIT below.

#include <SDL.h>

#include <cstdint>

enum HomeItem : int32_t {
    HOME_MIX = 0,
    HOME_EDIT = 1,
    HOME_OPTIONS = 2,
    HOME_FULL_SCREEN = 3,
    HOME_QUIT = 4,
};
inline constexpr int kHomeItems = 5;

class c_home {
public:
    void initHome();
    void place();  // at the offset of the application resolution, whenever that changes
    void draw(SDL_Surface* s);  // one frame into the work surface

    int32_t selected;         // HomeItem
    SDL_Surface* background;  // null when its file is missing
    int32_t offsetX;          // of the 640 x 360 picture
    int32_t offsetY;

private:
    void drawSelection(SDL_Surface* s);
    void drawTexts(SDL_Surface* s);
    void text(SDL_Surface* s, const char* words, int x, int y, int font, int colour);
    int itemColour(int item);
};
