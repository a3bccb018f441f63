#pragma once
// The demo loops: short seamless animations drawn by our own code, for the demo playlists.
//
// Every loop is a pure function of the frame number: frame `frames` would equal frame 0, so the
// clip repeats without a seam.

#include <span>

#include "art/loops/canvas.h"

namespace demo {

// Draws one frame, every pixel of it, and keeps nothing.
using Render = void(int frame, int frames, Canvas& canvas);

struct Loop {
    const char* name;  // file name without its extension; at most 16 of a-z, 0-9, '-'
    int frames;        // 1 to 256
    bool alpha;        // the picture uses the alpha channel; else every alpha byte is 255
    Render* render;
};

struct Playlist {
    const char* name;                     // at most 20 characters
    std::span<const char* const> tracks;  // names of loops, in order
};

std::span<const Loop> loops();
std::span<const Playlist> playlists();

}  // namespace demo
