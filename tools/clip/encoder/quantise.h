#pragma once
// 8-bit channels to RGB565 and to the 16 alpha levels, each rounded to the nearest level; and the
// dither that spreads the rounding error over a pattern.

#include <cstdint>

#include "clip/format.h"
#include "common/rgb565.h"

namespace maker {

inline constexpr int kMax8 = 255;
inline constexpr int kRoundBias = kMax8 / 2;

// value 0-255 to 0-`levels`; `bias` out of 255 decides where a value between two levels goes.
constexpr int toLevel(int value, int levels, int bias) {
    return (value * levels + bias) / kMax8;
}

// Each channel 0 to 255.
constexpr uint16_t toColour(int red, int green, int blue, int bias) {
    constexpr int kMax5 = 31;
    constexpr int kMax6 = 63;
    return px::pack(toLevel(red, kMax5, bias), toLevel(green, kMax6, bias),
                    toLevel(blue, kMax5, bias));
}

constexpr uint16_t nearestColour(int red, int green, int blue) {
    return toColour(red, green, blue, kRoundBias);
}

// 0 (transparent) to 15 (opaque).
constexpr uint8_t alphaLevel(int alpha) {
    return static_cast<uint8_t>(toLevel(alpha, clip::kAlphaOpaque, kRoundBias));
}

// Threshold of pixel (x, y) in the 8 x 8 ordered pattern, 0 to 63: the bits of x ^ y and y
// interleaved in reverse order, so that neighbours lie far apart.
constexpr int ditherRank(int x, int y) {
    int rank = 0;
    for (int bit = 0; bit < 3; ++bit) {
        const int fromX = ((x ^ y) >> bit) & 1;
        const int fromY = (y >> bit) & 1;
        rank = (rank << 2) | (fromX << 1) | fromY;
    }
    return rank;
}

// Replaces the colours of 640 x height x 4 bytes by RGB565 levels on the scale 0 to 255, rounded up
// or down by an 8 x 8 ordered pattern. Alpha stays.
void dither(uint8_t* rgba, int height);

}  // namespace maker
