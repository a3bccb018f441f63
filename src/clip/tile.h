#pragma once
// Decodes one tile record from memory, as clip/reader.h stored it.
//
// At least kMaxRecordBytes bytes are readable from `record` on, whatever the record says; the
// decoders never look further. Colours are RGB565; palette indices are resolved here.

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

// Types 0 and 1: the 64 pixels, row by row, into a frame at `out` whose rows are 640 pixels apart.
// Both return the bytes that the record took.
size_t drawRawTile(const uint8_t* record, uint16_t* out);
size_t drawPaletteTile(const uint8_t* record, const uint16_t* palette, uint16_t* out);

// Types 2 to 9 into a run list. Returns the bytes that the record took.
size_t decodeRuns(const uint8_t* record, int colourType, const uint16_t* palette, TileRuns& runs);

// Alpha record into 64 levels, 0 to 15, row by row.
void decodeAlpha(const uint8_t* record, uint8_t* levels);

}  // namespace clip
