#include "tools/clip/encoder/quantise.h"

#include "common/rgb565.h"
#include "tools/clip/encoder/frame.h"

namespace maker {

namespace {

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

}  // namespace

void dither(uint8_t* rgba, int height) {
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < kFrameWidth; ++x, rgba += 4) {
            // 64 thresholds, evenly spread over the 255 steps between two levels.
            const int bias = ditherRank(x % kDitherSize, y % kDitherSize) * 4 + 1;
            const uint16_t colour = toColour(rgba[0], rgba[1], rgba[2], bias);
            rgba[0] = static_cast<uint8_t>(px::red8Of(colour));
            rgba[1] = static_cast<uint8_t>(px::green8Of(colour));
            rgba[2] = static_cast<uint8_t>(px::blue8Of(colour));
        }
    }
}

}  // namespace maker
