#pragma once
// The eight ways of walking through a tile's 64 pixels, and which of them a record can be painted
// along.
//
// Walks 0-3 go row by row: bit 0 set goes right to left, bit 1 set starts with the bottom row.
// Walks 4-7 go column by column: bit 0 set starts with the right column, bit 1 set goes bottom to
// top. They are those of codes 1 to 4. Reading a tile along one walk and painting it along another
// mirrors or turns it.

#include <array>
#include <cstdint>

#include "clip/paint.h"
#include "tools/clip/encoder/source_block.h"

namespace maker {

inline constexpr size_t kWalks = 8;

constexpr const clip::Walk& walkOf(size_t walk) {
    return clip::kWalks[walk % 4][walk / 4];
}

// The pixel (row by row) that each step of a walk visits.
inline constexpr auto kWalkPixels = [] {
    std::array<std::array<uint8_t, clip::kTilePixels>, kWalks> pixels{};
    for (size_t walk = 0; walk < kWalks; ++walk) {
        for (size_t step = 0; step < clip::kTilePixels; ++step) {
            pixels[walk][step] = static_cast<uint8_t>(walkOf(walk).pixelAt(static_cast<int>(step)));
        }
    }
    return pixels;
}();

// kComposed[g][w]: let P be the picture that a sequence gives along walk 0. P read along walk w and
// painted along kComposed[g][w] gives the picture that the sequence gives along walk g.
inline constexpr auto kComposed = [] {
    std::array<std::array<uint8_t, kWalks>, kWalks> composed{};
    for (size_t g = 0; g < kWalks; ++g) {
        for (size_t w = 0; w < kWalks; ++w) {
            for (size_t v = 0; v < kWalks; ++v) {
                bool same = true;
                for (size_t step = 0; step < clip::kTilePixels; ++step) {
                    same = same && kWalkPixels[v][step] == kWalkPixels[g][kWalkPixels[w][step]];
                }
                if (same) {
                    composed[g][w] = static_cast<uint8_t>(v);
                }
            }
        }
    }
    return composed;
}();

// The tile code that paints a run record along a walk: first index 0 for the even colour types, 1
// for the odd ones. 0 where no code does.
inline constexpr auto kCodeOfWalk = [] {
    std::array<std::array<uint8_t, kWalks>, 2> codes{};
    for (size_t walk = 0; walk < kWalks; ++walk) {
        for (size_t code = 0; code < clip::kWalkCodes; ++code) {
            for (size_t parity = 0; parity < codes.size(); ++parity) {
                if (clip::kWalks[code][parity] == walkOf(walk)) {
                    codes[parity][walk] = static_cast<uint8_t>(clip::CODE_FIRST_RECORD + code);
                }
            }
        }
    }
    return codes;
}();

// Values of a picture's pixels, colours or one channel of them.
template <typename Value>
constexpr auto readAlong(const std::array<Value, clip::kTilePixels>& picture, size_t walk) {
    std::array<Value, clip::kTilePixels> sequence{};
    for (size_t step = 0; step < clip::kTilePixels; ++step) {
        sequence[step] = picture[kWalkPixels[walk][step]];
    }
    return sequence;
}

inline ColourPlanes readAlong(const ColourPlanes& colours, size_t walk) {
    return {readAlong(colours[0], walk), readAlong(colours[1], walk), readAlong(colours[2], walk)};
}

constexpr Sequence paintAlong(const Sequence& sequence, size_t walk) {
    Sequence picture{};
    for (size_t step = 0; step < clip::kTilePixels; ++step) {
        picture[kWalkPixels[walk][step]] = sequence[step];
    }
    return picture;
}

}  // namespace maker
