#pragma once
// Draws the parts of the playlist screen's pages onto the 640 x 360 page surface: texts that stay
// inside their room, list rows, buttons from the interface atlas. Lives for one frame and owns
// nothing; without an atlas the buttons are drawn plainly. Colours are 0x00RRGGBB, positions pixels
// of the page. Texts are in the small font.

#include <SDL.h>

#include <string>

#include "layout/page_layout.h"

namespace page {

inline constexpr int kPaperRgb = 0x181818;
inline constexpr int kWhiteRgb = 0xFFFFFF;
inline constexpr int kGreyRgb = 0x888888;
inline constexpr int kLitRgb = 0x3A3A3A;

// How a row looks. The list in use shows its selection inverted, the other one greyed.
// A carried one is orange.
enum RowLook : int { ROW_PLAIN = 0, ROW_LIT, ROW_SELECTED_ELSEWHERE, ROW_SELECTED, ROW_CARRIED };

// What is wrong with a row's file, in a pink that stands out from the row's ground.
constexpr int alarmRgb(int look) {
    switch (look) {
        case ROW_LIT:
            return 0xFF7AE0;
        case ROW_SELECTED_ELSEWHERE:
            return 0x440033;
        case ROW_SELECTED:
            return 0xB00088;
        default:
            return 0xFE00C3;
    }
}

}  // namespace page

class PagePainter {
public:
    PagePainter(SDL_Surface* surface, SDL_Surface* atlas) : surface_(surface), atlas_(atlas) {}

    void fill(int x, int y, int w, int h, int rgb);
    void frame(int x, int y, int w, int h, int rgb);  // two pixels thick, inside the rectangle
    // Left-aligned, cut to `room` pixels with an ellipsis. Returns the width drawn.
    int text(const std::string& words, int x, int y, int room, int rgb);
    // The same, ending at `right`. Returns where it begins.
    int textRight(const std::string& words, int right, int y, int room, int rgb);
    // Over the whole width of the page.
    void line(const std::string& words, int y, int rgb);
    // The two lines of a page: what the mouse does, what the keys do.
    void help(int shown, const char* words, const char* keysHelp);
    void largeText(const std::string& words, int x, int y, int rgb);
    int widthOf(const std::string& words, int font) const;

    // A row's ground; returns the colour for its texts.
    int row(int list, int visibleRow, int look);
    // `under` the pointer; `focused`: the keys are on it.
    void button(const page::ButtonPlace& place, bool usable, bool under, bool focused);

    SDL_Surface* surface() { return surface_; }

private:
    SDL_Surface* surface_;
    SDL_Surface* atlas_;
};
