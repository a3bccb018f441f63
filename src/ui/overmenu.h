#pragma once
// c_overMenu: the list of playlists over the mix screen, from which one is loaded. One object, the
// global `overMenu`.

#include <SDL.h>

#include <cstdint>

class c_overMenu {
public:
    void initOverMenu();  // the playlist loaded last is selected
    // Onto the video surface `s`, in window coordinates.
    void drawOverMenu(SDL_Surface* s);

    int32_t selected;  // index of a famille
};
