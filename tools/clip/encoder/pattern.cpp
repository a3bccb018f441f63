#include "tools/clip/encoder/pattern.h"

#include "common/rgb565.h"
#include "tools/clip/encoder/quantise.h"

namespace maker {

namespace {

constexpr std::array<int, kChannels> kMost = {31, 63, 31};  // levels of RGB565

}  // namespace

PatternColour patternColourOf(const SourceTile& tile) {
    constexpr int kScale = clip::kTilePixels * kMax8;
    PatternColour colour{};
    for (size_t c = 0; c < kChannels; ++c) {
        int sum = 0;
        for (const uint8_t value : tile.colours[c]) {
            sum += value;
        }
        colour[c] = (sum * kMost[c] * kPatternSteps + kScale / 2) / kScale;
    }
    return colour;
}

Tile patternTile(const PatternColour& colour) {
    constexpr int kRanks = clip::kTilePixels / kPatternSteps;
    Tile tile;
    tile.alpha.fill(clip::kAlphaOpaque);
    for (int i = 0; i < clip::kTilePixels; ++i) {
        const int rank = ditherRank(i % clip::kTileSize, i / clip::kTileSize) / kRanks;
        std::array<int, kChannels> level{};
        for (size_t c = 0; c < kChannels; ++c) {
            level[c] = colour[c] / kPatternSteps + (rank < colour[c] % kPatternSteps ? 1 : 0);
        }
        tile.colours[static_cast<size_t>(i)] = px::pack(level[0], level[1], level[2]);
    }
    return tile;
}

}  // namespace maker
