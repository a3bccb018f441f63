#pragma once
// The pictures that pass through the encoder.
//
// All are 640 pixels wide, row-major, without gaps. A source gives RGBA bytes (straight alpha); the
// quantiser turns them into a Frame; a Frame is cut into tiles, whose 64 pixels stand row by row.

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "clip/format.h"

namespace maker {

inline constexpr int kChannels = 3;

struct Frame {
    int height = 0;
    std::vector<uint16_t> pixels;  // RGB565
    std::vector<uint8_t> alpha;    // 0 to 15 a pixel; empty in a clip without alpha
};

// A tile's 64 colours in the order of some walk.
using Sequence = std::array<uint16_t, clip::kTilePixels>;
using AlphaTile = std::array<uint8_t, clip::kTilePixels>;

// Whether all of a tile's colours, levels or values of a channel are this one.
constexpr bool allAre(const auto& values, int expected) {
    return std::all_of(values.begin(), values.end(),
                       [expected](auto value) { return value == expected; });
}

struct Tile {
    Sequence colours;
    AlphaTile alpha;  // all opaque in a clip without alpha

    bool operator==(const Tile&) const = default;
};

}  // namespace maker
