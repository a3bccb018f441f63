#pragma once
// The eight ways of walking through a tile's 64 pixels, and which of them a record can be painted
// along.
//
// Walks 0-3 go row by row: bit 0 set goes right to left, bit 1 set starts with the bottom row.
// Walks 4-7 go column by column: bit 0 set starts with the right column, bit 1 set goes bottom to
// top. Reading a tile along one walk and painting it along another mirrors or turns it.

#include <array>
#include <cstdint>

#include "tools/clip/encoder/frame.h"

namespace maker {

inline constexpr int kWalks = 8;

// The pixel (row by row) that step `step` of a walk visits.
constexpr int walkPixel(int walk, int step) {
    const int slow = step / clip::kTileSize;
    const int fast = step % clip::kTileSize;
    const int last = clip::kTileSize - 1;
    const bool columns = walk >= 4;
    const int x = columns ? slow : fast;
    const int y = columns ? fast : slow;
    return ((walk & 2) != 0 ? last - y : y) * clip::kTileSize + ((walk & 1) != 0 ? last - x : x);
}

using WalkTable = std::array<std::array<uint8_t, clip::kTilePixels>, kWalks>;

constexpr WalkTable makeWalkTable() {
    WalkTable table{};
    for (int walk = 0; walk < kWalks; ++walk) {
        for (int step = 0; step < clip::kTilePixels; ++step) {
            table[static_cast<size_t>(walk)][static_cast<size_t>(step)] =
                static_cast<uint8_t>(walkPixel(walk, step));
        }
    }
    return table;
}

inline constexpr WalkTable kWalkPixels = makeWalkTable();

// kComposed[g][w]: let P be the picture that a sequence gives along walk 0. P read along walk w and
// painted along kComposed[g][w] gives the picture that the sequence gives along walk g.
using ComposeTable = std::array<std::array<uint8_t, kWalks>, kWalks>;

constexpr ComposeTable makeComposeTable() {
    ComposeTable table{};
    for (size_t g = 0; g < kWalks; ++g) {
        for (size_t w = 0; w < kWalks; ++w) {
            for (size_t v = 0; v < kWalks; ++v) {
                bool same = true;
                for (size_t step = 0; step < clip::kTilePixels; ++step) {
                    same = same && kWalkPixels[v][step] == kWalkPixels[g][kWalkPixels[w][step]];
                }
                if (same) {
                    table[g][w] = static_cast<uint8_t>(v);
                }
            }
        }
    }
    return table;
}

inline constexpr ComposeTable kComposed = makeComposeTable();

// The tile code that paints a run record along `walk`: first index 0 for the even colour types, 1
// for the odd ones. 0 where no code does.
inline constexpr uint8_t kCodeOfWalk[2][kWalks] = {
    {1, 2, 3, 4, 0, 0, 5, 6},
    {0, 0, 5, 6, 1, 2, 3, 4},
};

constexpr Sequence readAlong(const Sequence& picture, int walk) {
    Sequence sequence{};
    for (size_t step = 0; step < clip::kTilePixels; ++step) {
        sequence[step] = picture[kWalkPixels[static_cast<size_t>(walk)][step]];
    }
    return sequence;
}

constexpr Sequence paintAlong(const Sequence& sequence, int walk) {
    Sequence picture{};
    for (size_t step = 0; step < clip::kTilePixels; ++step) {
        picture[kWalkPixels[static_cast<size_t>(walk)][step]] = sequence[step];
    }
    return picture;
}

}  // namespace maker
