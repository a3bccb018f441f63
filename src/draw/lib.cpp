#include "draw/lib.h"

#include "common/rgb565.h"
#include "core/display.h"
#include "core/globals.h"
#include "draw/painter.h"

namespace {

constexpr int kOpaquePercent = 100;

}  // namespace

void c_lib::initLib() {
    scratch = SDL_ConvertSurface(screen[0], screen[0]->format, SDL_SRCCOLORKEY);
    if (scratch == nullptr) {
        return;
    }
    // SDL 1.2 leaves the copy without a key; its compatibility layer keys black, and black boxes
    // would not show.
    SDL_SetColorKey(scratch, 0, 0);
}

int c_lib::C(int rgb) {
    return px::fromRgb(rgb);
}

int c_lib::minMax(int value, int step, int lo, int hi, int wrap) {
    const int v = value + step;
    if (v < lo) {
        return wrap == 0 ? lo : hi;
    }
    if (v > hi) {
        return wrap == 0 ? hi : lo;
    }
    return v;
}

void c_lib::fillScratch(int w, int h, int colour, int alphaPercent) {
    SDL_Rect area = rectOf(0, 0, w, h);
    SDL_FillRect(scratch, &area, surfaceColour(scratch, px::fromRgb(colour)));
    SDL_SetAlpha(scratch, SDL_SRCALPHA, static_cast<uint8_t>(alphaPercent * 255 / 100));
}

void c_lib::blitScratch(SDL_Surface* to, int x, int y, int w, int h) {
    SDL_Rect from = rectOf(0, 0, w, h);
    SDL_Rect at = rectOf(x, y, w, h);
    SDL_BlitSurface(scratch, &from, to, &at);
}

// Deliberate: the fill goes to the work surface and the border to the video surface, so a screen
// that draws straight into the video surface shows the border alone.
// [quirk_box_fill_and_border_go_to_two_surfaces]
void c_lib::CSS_rect(int x, int y, int w, int h, int border, int borderColour, int fillColour,
                     int alphaPercent) {
    fillScratch(w, h, fillColour, alphaPercent);
    blitScratch(screen[0], x, y, w, h);
    if (border == 0) {
        return;
    }
    fillScratch(w, h, borderColour, kOpaquePercent);
    blitScratch(screen[1], x, y, w, border);
    blitScratch(screen[1], x + w - border, y, border, h);
    blitScratch(screen[1], x, y + h - border, w, border);
    blitScratch(screen[1], x, y, border, h);
}

void c_lib::CSS_rectNoBorder(int x, int y, int w, int h, int colour, int alphaPercent) {
    fillScratch(w, h, colour, alphaPercent);
    blitScratch(screen[1], x, y, w, h);
}

void c_lib::CSS_rectNoBorderNoAlpha(int x, int y, int w, int h, int colour) {
    Painter(screen[1]).fill(x, y, w, h, static_cast<uint32_t>(colour));
}

void c_lib::CSS_button(int x, int y, int w, const char* text) {
    Painter(screen[1]).button(x, y, w, text, _colorO, _colorN);
}
