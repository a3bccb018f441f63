#pragma once
// Tile records decoded and painted plainly, one at a time, as blocks hold them (clip/block.h). This
// is what clip/tile_fast.h, which draws on stage, is held to by its tests. On stage it decodes one
// record a frame at the most, for the levels that it leaves.
//
// At least kMaxRecordBytes bytes are readable from `record` on, whatever the record says; the
// decoders never look further. Colours are RGB565; palette indices are resolved here. `out` is the
// tile's first pixel in a frame whose rows are 640 pixels apart.

#include <cstddef>
#include <cstdint>

#include "clip/format.h"

namespace clip {

// The runs of a tile in painting order: run i is lengths[i] + 1 pixels of colours[i]. They cover 64
// pixels or more; painting stops at the 64th.
struct TileRuns {
    uint16_t lengths[kTilePixels];
    uint16_t colours[kTilePixels];
};

// Types 0 and 1 are painted at `out`, row by row; types 2 to 9 become a run list. Returns the bytes
// that the colour record took.
size_t decodeColours(const uint8_t* record, int colourType, const uint16_t* palette, uint16_t* out,
                     TileRuns& runs);

// Alpha record into 64 levels, 0 to 15, row by row. Returns the bytes that it took.
size_t decodeAlpha(const uint8_t* record, uint8_t* levels);

// Paints 64 pixels of the run list along the path of `code` (1 to 6). `columnOrder` is 1 for the
// odd record types, whose runs follow columns where the even ones follow rows.
void paintRuns(uint16_t* out, const TileRuns& runs, int code, int columnOrder);

// The record of `type` (0 to 19) as `code` (1 to 7) draws it over what is there: 7, an empty tile,
// shows types 0 and 1 alone. Levels, of types 10 to 19 with codes 1 to 6, go to `levels` unless it
// is null. Returns the bytes that were looked at.
size_t drawPlainTile(const uint8_t* record, int type, int code, const uint16_t* palette,
                     uint16_t* out, uint8_t* levels);

}  // namespace clip
