#pragma once
// A small writer of clip files for tests: 640 x 360, from whole pictures. It uses three kinds of
// tile: flat ones, raw pixels, and raw pixels with alpha. Every frame after a block's first one
// changes all of its tiles. The byte layout is that of src/clip/format.h.

#include <cstdint>
#include <vector>

#include "app/shot.h"

namespace app {

struct TinyFrame {
    Shot picture;                // 640 x 360
    std::vector<uint8_t> alpha;  // a level (0-15) for each pixel, or empty for opaque
};

// 1 to 256 frames; a block of 16 frames may hold 65535 tiles that are not flat. With `alpha` the
// file says that it carries alpha, and frames without levels are opaque.
std::vector<uint8_t> tinyClip(const std::vector<TinyFrame>& frames, bool alpha = false);

}  // namespace app
