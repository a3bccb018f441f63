#pragma once
// The way to the display that the program does not take: the surface goes as it is, with 16 bits a
// pixel, into a pixmap that the X server has in shared memory, and XRender converts it onto the
// window.

#include <SDL.h>

#include <cstdint>
#include <vector>

// False when the server has no shared pixmaps or no XRender.
bool openXRender(int width, int height);
void showByXRender(SDL_Surface* surface);

// What stands in SDL's window, for windows of 32 bits a pixel.
std::vector<uint32_t> windowPixels(int width, int height);
