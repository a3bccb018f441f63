#pragma once
// The last step of a frame: the video surface onto the display.
//
// On a display of 16 bits a pixel SDL 1.2 hands over the surface as it is. For one of 24 bits it
// would convert all of it in every frame, one pixel after the other; and the layer over SDL 2 has
// OpenGL draw it, on any display. In their place the rows that differ from the picture shown last
// are brought into memory that the X server reads (px::widenChanged, with the colours of SDL's
// blitter) and put into SDL's window over a connection of our own. What cannot be had of this
// (another kind of display, a connection that is refused or breaks, no memory) leaves SDL's way,
// without a word.

#include <SDL.h>

// Shows the whole surface of the video mode.
void present(SDL_Surface* video);

// After a video mode was opened: window, size and what stands on the display may be others.
void presentAnew();
