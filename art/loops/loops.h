#pragma once
// The demo loops: short seamless animations drawn by our own code, for the demo playlists.
//
// Every loop is a pure function of the frame number: frame `frames` would equal frame 0, so the
// clip repeats without a seam.

#include <optional>
#include <span>

#include "art/loops/canvas.h"

namespace demo {

// Where a loop stands. In sums it counts as its time, 0 to below 1.
struct Moment {
    int frame;  // below `frames`
    int frames;
    float time;

    operator float() const { return time; }
};

// Draws on a canvas that is clear, in a loop without alpha black; keeps nothing.
using Render = void(Canvas& canvas, const Moment& t);

struct Loop {
    const char* name;  // file name without its extension; at most 16 of a-z, 0-9, '-'
    int frames;        // 1 to 256
    bool alpha;        // the picture uses the alpha channel; else every alpha byte is 255
    Render* render;
    std::optional<Half> drawn = {};  // what it draws, which completes the picture; else all of it
};

// One frame, every pixel of it; any number from 0 up, as the loop goes round.
void draw(const Loop& loop, int frame, Canvas& canvas);

struct Playlist {
    const char* name;                     // at most 20 characters
    std::span<const char* const> tracks;  // names of loops, in order
};

std::span<const Loop> loops();
std::span<const Playlist> playlists();

}  // namespace demo
