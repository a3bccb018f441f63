#pragma once
// c_intro: the maker's logo for 50 frames, flashing up and fading away. One object, the global
// `_intro`.

#include <SDL.h>

#include <cstdint>

#include "common/geometry.h"

class c_intro {
public:
    void initIntro();
    // One frame into the work surface `s`, which is never cleared: the effect accumulates.
    void draw(SDL_Surface* s);

    int32_t state;      // set to 0, otherwise unused
    SDL_Surface* logo;  // null when its file is missing
    int32_t counter;    // frames left; home follows when a draw brings it to 0
    Point offset;       // of the 640 x 360 picture
};
