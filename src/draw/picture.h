#pragma once
// Interface pictures from PNG files.

#include <SDL.h>

// The picture at `path`, or null when it cannot be read; drawing a null picture is the caller's to
// skip. Never freed: pictures live as long as the program.
SDL_Surface* loadPicture(const char* path);

// The same in the format of `screen`, in which it is drawn in every frame with less work. A picture
// that lets something through stays as it was, and so does one that there is no memory to convert.
SDL_Surface* loadPictureFor(const SDL_Surface* screen, const char* path);
