#include "tools/clip/encoder/noise.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace maker {

namespace {

constexpr size_t kSide = clip::kTileSize;

// Sum of the mask's answers over the inner pixels of all channels.
int maskSum(const ColourPlanes& a, const ColourPlanes& b) {
    int sum = 0;
    for (size_t c = 0; c < kChannels; ++c) {
        std::array<int16_t, clip::kTilePixels> d;
        for (size_t i = 0; i < clip::kTilePixels; ++i) {
            d[i] = static_cast<int16_t>(a[c][i] - b[c][i]);
        }
        for (size_t y = 1; y + 1 < kSide; ++y) {
            for (size_t x = 1; x + 1 < kSide; ++x) {
                const size_t i = y * kSide + x;
                const int across = 2 * (d[i - 1] + d[i + 1] + d[i - kSide] + d[i + kSide]);
                const int corners =
                    d[i - kSide - 1] + d[i - kSide + 1] + d[i + kSide - 1] + d[i + kSide + 1];
                sum += std::abs(4 * d[i] - across + corners);
            }
        }
    }
    return sum;
}

}  // namespace

double noiseOf(const SourceBlock& block) {
    constexpr size_t kEvery = 7;    // tiles are many enough
    constexpr size_t kQuieter = 4;  // one tile in so many
    // White noise of deviation s gives the difference s x sqrt 2, and the mask 6 times that, of
    // which the mean size is sqrt (2 / pi).
    constexpr double kPixels = (kSide - 2.0) * (kSide - 2.0) * kChannels;
    constexpr double kScale = 6 * 1.41421356 * 0.79788456 * kPixels;
    std::vector<int> sums;
    for (size_t i = block.tileCount; i < block.tiles.size(); i += kEvery) {
        sums.push_back(maskSum(block.tiles[i].colours, block.tiles[i - block.tileCount].colours));
    }
    if (sums.empty()) {
        return 0;
    }
    std::sort(sums.begin(), sums.end());
    if (sums[sums.size() / 2] == 0) {
        return 0;
    }
    const auto moving = std::upper_bound(sums.begin(), sums.end(), 0);
    const auto left = sums.end() - moving;
    const double noise = moving[left / static_cast<long>(kQuieter)] / kScale;
    return noise <= kMostNoise ? noise : 0;
}

}  // namespace maker
