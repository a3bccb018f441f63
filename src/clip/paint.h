#pragma once
// Fills one 8 x 8 tile of a frame, and says along which walks records are painted into one: `out`
// is the tile's top-left pixel, rows are 640 apart (pixels of RGB565 in the layer buffers, bytes 0
// to 15 in the alpha buffer).

#include <cstdint>

#include "clip/format.h"

namespace clip {

void fillTile(uint16_t* out, uint16_t colour);
void fillTileAlpha(uint8_t* out, uint8_t level);
void copyTileAlpha(uint8_t* out, const uint8_t* levels);

// One way through a tile: line after line, each pixel by pixel.
struct Walk {
    bool columns;      // a line is a column, else a row
    bool lineReverse;  // pixels run right to left, or bottom to top
    bool lastFirst;    // the bottom row, or the right column, comes first

    bool operator==(const Walk&) const = default;

    // The pixel, counted row by row, that a step comes to.
    constexpr int pixelAt(int step) const {
        constexpr int kLast = kTileSize - 1;
        const int line = lastFirst ? kLast - step / kTileSize : step / kTileSize;
        const int place = lineReverse ? kLast - step % kTileSize : step % kTileSize;
        return columns ? place * kTileSize + line : line * kTileSize + place;
    }
};

// Codes 1 to 6 with column order 0 and 1: code 1 is the record as coded, 2 to 4 its mirror images,
// 5 and 6 the walks of 3 and 4 with rows and columns exchanged.
inline constexpr int kWalkCodes = CODE_LAST_RECORD - CODE_FIRST_RECORD + 1;
inline constexpr Walk kWalks[kWalkCodes][2] = {
    {{false, false, false}, {true, false, false}}, {{false, true, false}, {true, false, true}},
    {{false, false, true}, {true, true, false}},   {{false, true, true}, {true, true, true}},
    {{true, true, false}, {false, false, true}},   {{true, true, true}, {false, true, true}},
};

}  // namespace clip
