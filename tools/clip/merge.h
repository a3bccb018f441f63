#pragma once
// What a quality below 100 gives up: small differences between tiles, never the shape of one.
//
// A tile that stays near the tile kept at its place keeps showing that one, and a tile near its own
// mean colour becomes flat. "Near" bounds every channel of every pixel, on the scale 0 to 255.
// Differences are taken from the source each time, so they do not add up over a block. Alpha is
// kept exactly.

#include <span>

#include "tools/clip/frame.h"

namespace maker {

inline constexpr int kBestQuality = 100;  // changes nothing

// The largest difference of a channel that a quality of 0 to 100 lets pass.
int toleranceOf(int quality);

bool near(const Tile& a, const Tile& b, int tolerance);

// `tiles` is one frame of source tiles, changed in place to what the clip will show; `kept` is what
// the frame before shows, empty in the first frame of a block.
void mergeTiles(std::span<Tile> tiles, std::span<const Tile> kept, int tolerance);

}  // namespace maker
