#pragma once
// c_lib: rectangles, translucent boxes and buttons. One object, the global `_lib`, created once the
// work surface exists. Colours are 0x00RRGGBB, positions and sizes pixels of the surface named.

#include <SDL.h>

#include <cstdint>

class c_lib {
public:
    // Makes the scratch surface, a copy of the work surface; null when there is no memory for it,
    // and nothing may be drawn then.
    void initLib();

    int C(int rgb);  // RGB565 of a 0x00RRGGBB colour
    // value + step, held inside [lo, hi], or wrapped to the other end when `wrap` is not 0.
    int minMax(int value, int step, int lo, int hi, int wrap);

    // Translucent fill (0 to 100 percent) on the work surface, opaque border on the video surface.
    void CSS_rect(int x, int y, int w, int h, int border, int borderColour, int fillColour,
                  int alphaPercent);
    // Translucent fill on the video surface.
    void CSS_rectNoBorder(int x, int y, int w, int h, int colour, int alphaPercent);
    // Kept without a caller, as are the next one, C and minMax: opaque fill on the video surface.
    void CSS_rectNoBorderNoAlpha(int x, int y, int w, int h, int colour);
    // An orange button, 24 pixels high, with a black text, on the video surface.
    void CSS_button(int x, int y, int w, const char* text);

    SDL_Surface* scratch;

private:
    void fillScratch(int w, int h, int colour, int alphaPercent);
    void blitScratch(SDL_Surface* to, int x, int y, int w, int h);
};
