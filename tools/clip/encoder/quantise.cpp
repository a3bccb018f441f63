#include "tools/clip/encoder/quantise.h"

#include "common/rgb565.h"
#include "tools/clip/encoder/frame.h"

namespace maker {

namespace {

constexpr int kDitherSize = 8;

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
