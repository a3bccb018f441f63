#include "clip/paint.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace clip {

namespace {

using Path = std::array<uint16_t, kTilePixels>;  // offsets from the tile's top-left pixel

constexpr int kCodes = CODE_LAST_RECORD - CODE_FIRST_RECORD + 1;

// One way through a tile: line after line, each pixel by pixel.
struct Walk {
    bool columns;      // a line is a column, else a row
    bool lineReverse;  // pixels run right to left, or bottom to top
    bool lastFirst;    // the bottom row, or the right column, comes first
};

// Codes 1 to 6 with column order 0 and 1: code 1 is the record as coded, 2 to 4 its mirror images,
// 5 and 6 the walks of 3 and 4 with rows and columns exchanged.
constexpr Walk kWalks[kCodes][2] = {
    {{false, false, false}, {true, false, false}}, {{false, true, false}, {true, false, true}},
    {{false, false, true}, {true, true, false}},   {{false, true, true}, {true, true, true}},
    {{true, true, false}, {false, false, true}},   {{true, true, true}, {false, true, true}},
};

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

constexpr std::array<Path, 2 * kCodes> makePaths() {
    std::array<Path, 2 * kCodes> paths{};
    for (size_t code = 0; code < kCodes; ++code) {
        paths[2 * code] = makePath(kWalks[code][0]);
        paths[2 * code + 1] = makePath(kWalks[code][1]);
    }
    return paths;
}

constexpr std::array<Path, 2 * kCodes> kPaths = makePaths();

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
    const Path& path = kPaths[static_cast<size_t>(2 * (code - CODE_FIRST_RECORD) + columnOrder)];
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
