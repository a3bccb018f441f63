#include "tools/clip/quantise.h"

#include "common/rgb565.h"

namespace maker {

namespace {

constexpr int kMax8 = 255;
constexpr int kMax5 = 31;
constexpr int kMax6 = 63;
constexpr int kDitherSize = 8;

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

// value 0-255 to 0-`levels`; `bias` out of 255 decides where a value between two levels goes.
constexpr int toLevel(int value, int levels, int bias) {
    return (value * levels + bias) / kMax8;
}

constexpr int kRoundBias = kMax8 / 2;

}  // namespace

void quantise(const uint8_t* rgba, int height, const QuantiseOptions& options, Frame& frame) {
    const size_t pixels = static_cast<size_t>(kFrameWidth) * static_cast<size_t>(height);
    frame.height = height;
    frame.pixels.resize(pixels);
    frame.alpha.resize(options.alpha ? pixels : 0);
    for (size_t i = 0; i < pixels; ++i, rgba += 4) {
        if (options.alpha) {
            frame.alpha[i] = static_cast<uint8_t>(toLevel(rgba[3], clip::kAlphaOpaque, kRoundBias));
            if (frame.alpha[i] == 0) {
                frame.pixels[i] = 0;
                continue;
            }
        }
        int bias = kRoundBias;
        if (options.dither) {
            const int x = static_cast<int>(i % kFrameWidth) % kDitherSize;
            const int y = static_cast<int>(i / kFrameWidth) % kDitherSize;
            // 64 thresholds, evenly spread over the 255 steps between two levels.
            bias = ditherRank(x, y) * 4 + 1;
        }
        frame.pixels[i] = px::pack(toLevel(rgba[0], kMax5, bias), toLevel(rgba[1], kMax6, bias),
                                   toLevel(rgba[2], kMax5, bias));
    }
}

}  // namespace maker
