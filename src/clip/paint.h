#pragma once
// Paints one 8 x 8 tile into a frame: `out` is the tile's top-left pixel, rows are 640 apart
// (pixels of RGB565 in the layer buffers, bytes 0 to 15 in the alpha buffer).

#include <cstdint>

#include "clip/tile.h"

namespace clip {

void fillTile(uint16_t* out, uint16_t colour);
void fillTileAlpha(uint8_t* out, uint8_t level);
void copyTileAlpha(uint8_t* out, const uint8_t* levels);

// Paints 64 pixels of the run list along the path of `code` (1 to 6). `columnOrder` is 1 for the
// odd record types, whose runs follow columns where the even ones follow rows.
void paintRuns(uint16_t* out, const TileRuns& runs, int code, int columnOrder);

}  // namespace clip
