#pragma once
// Interface pictures from PNG files.

#include <SDL.h>

// The picture at `path`, or null when it cannot be read; drawing a null picture is the caller's to
// skip. Never freed: pictures live as long as the program.
SDL_Surface* loadPicture(const char* path);
