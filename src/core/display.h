#pragma once
// The video mode: opening it again at another size or in full screen, and the 16-bit rows that the
// mixer writes.
//
// Opening a mode may return a new surface: never keep screen[1], its pixels or its pitch across a
// call of updateResolution() or toggleFullScreen(). A refused mode falls back to the display's own
// size and depth; when that fails too the process ends with status 1.

#include <SDL.h>

#include <cstdint>

#include "px/output.h"

void updateResolution();  // the application size, same flags; surfaces cleared
void toggleFullScreen();  // the application size, full screen switched

void clearSurfaces();  // work and video surface, black

// Puts a picture on a surface with its top left at (x, y), as SDL_BlitSurface does. From 16 bits to
// 16 bits only rows that differ are written, through the caches: SDL writes past them what is going
// to be read next.
void putPicture(SDL_Surface* picture, SDL_Surface* surface, int x, int y);

// Where the mixer's rows go: the part of the video surface that the application size covers. On a
// display that is not 16 bits deep it is a stand-in of the same size.
px::OutputView videoView();

// Holds the video surface for direct writing, and shows the stand-in on it at the end.
class VideoOutput {
public:
    VideoOutput();
    ~VideoOutput();
    VideoOutput(const VideoOutput&) = delete;
    VideoOutput& operator=(const VideoOutput&) = delete;
};

// Whether SDL 1.2 is the layer over SDL 2, whose versions go on from 1.2.50.
bool overSdl2();

// A colour value for a surface: RGB565 as it is on 16-bit surfaces, mapped on any other depth.
uint32_t surfaceColour(const SDL_Surface* surface, uint16_t rgb565);

// Kept without a caller: doubles the columns of the work surface into even columns of a 1280-wide
// video surface and copies each row once below.
void scale2x();
// Kept without a caller: v held between lo and hi.
float Clamp(float v, float lo, float hi);
