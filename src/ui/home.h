#pragma once
// c_home: the main menu of five items. One object, the global `_home`. The items stand on a grid of
// 104-pixel cells: MIX and EDIT on the top row, OPTIONS, FULL SCREEN and QUIT below.

#include <SDL.h>

#include <cstdint>

#include "common/geometry.h"

enum HomeItem : int32_t {
    HOME_MIX = 0,
    HOME_EDIT = 1,
    HOME_OPTIONS = 2,
    HOME_FULL_SCREEN = 3,
    HOME_QUIT = 4,
};
inline constexpr int kHomeItems = 5;

class Painter;

class c_home {
public:
    void initHome();
    void draw(SDL_Surface* s);  // one frame into the work surface
    void open(int item);        // what a HomeItem leads to

    int32_t selected;         // HomeItem
    SDL_Surface* background;  // null when its file is missing
    Point offset;             // of the 640 x 360 picture

private:
    void drawSelection(Painter& painter) const;
    void drawTexts(Painter& painter) const;
    uint32_t itemColour(int item) const;
};
