#include "clip/paint.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace clip {

namespace {

using Path = std::array<uint16_t, kTilePixels>;  // offsets from the tile's top-left pixel

constexpr Path makePath(Walk walk) {
    Path path{};
    for (int i = 0; i < kTilePixels; ++i) {
        int line = i / kTileSize;
        int step = i % kTileSize;
        if (walk.lastFirst) {
            line = kTileSize - 1 - line;
        }
        if (walk.lineReverse) {
            step = kTileSize - 1 - step;
        }
        const int row = walk.columns ? step : line;
        const int column = walk.columns ? line : step;
        path[static_cast<size_t>(i)] = static_cast<uint16_t>(row * kFrameWidth + column);
    }
    return path;
}

constexpr std::array<Path, 2 * kWalkCodes> makePaths() {
    std::array<Path, 2 * kWalkCodes> paths{};
    for (size_t code = 0; code < kWalkCodes; ++code) {
        paths[2 * code] = makePath(kWalks[code][0]);
        paths[2 * code + 1] = makePath(kWalks[code][1]);
    }
    return paths;
}

constexpr std::array<Path, 2 * kWalkCodes> kPaths = makePaths();

}  // namespace

void fillTile(uint16_t* out, uint16_t colour) {
    for (int row = 0; row < kTileSize; ++row) {
        std::fill_n(out, kTileSize, colour);
        out += kFrameWidth;
    }
}

void fillTileAlpha(uint8_t* out, uint8_t level) {
    for (int row = 0; row < kTileSize; ++row) {
        memset(out, level, kTileSize);
        out += kFrameWidth;
    }
}

void copyTileAlpha(uint8_t* out, const uint8_t* levels) {
    for (int row = 0; row < kTileSize; ++row) {
        memcpy(out, levels + row * kTileSize, kTileSize);
        out += kFrameWidth;
    }
}

void paintRuns(uint16_t* out, const TileRuns& runs, int code, int columnOrder) {
    const Path& path = kPaths[2 * static_cast<size_t>(code - CODE_FIRST_RECORD) +
                              static_cast<size_t>(columnOrder)];
    int painted = 0;
    for (int i = 0; painted < kTilePixels; ++i) {
        const int end = std::min(painted + runs.lengths[i] + 1, kTilePixels);
        const uint16_t colour = runs.colours[i];
        for (; painted < end; ++painted) {
            out[path[static_cast<size_t>(painted)]] = colour;
        }
    }
}

}  // namespace clip
