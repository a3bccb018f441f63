#pragma once
// The demo loops: short seamless animations drawn by our own code, for the demo playlists.
//
// Every loop is a pure function of the frame number: frame `frames` would equal frame 0, so the
// clip repeats without a seam. Pictures are 640 x 360 pixels, row-major, 4 bytes a pixel in the
// order red, green, blue, alpha (straight, not premultiplied), without gaps.

#include <cstdint>
#include <span>

namespace demo {

struct Loop {
    const char* name;  // file name without its extension; at most 16 of a-z, 0-9, '-'
    int frames;        // 1 to 256
    bool alpha;        // the picture uses the alpha channel; else every alpha byte is 255
    void (*render)(int frame, int frames, uint8_t* rgba);  // writes all 640 x 360 x 4 bytes
};

struct Playlist {
    const char* name;                     // at most 20 characters
    std::span<const char* const> tracks;  // names of loops, in order
};

std::span<const Loop> loops();
std::span<const Playlist> playlists();

}  // namespace demo
