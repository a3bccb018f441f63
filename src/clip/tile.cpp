#include "clip/tile.h"

#include <algorithm>
#include <cstring>

#include "common/bytes.h"

namespace clip {

namespace {

// Reads colours and control bytes from a record in memory.
struct RecordCursor {
    const uint8_t* at;
    const uint16_t* palette;

    uint8_t byte() { return *at++; }
    uint16_t indexedColour() { return palette[*at++]; }
    uint16_t colour(bool indexed) {
        if (indexed) {
            return indexedColour();
        }
        const uint16_t value = le16(at);
        at += 2;
        return value;
    }
};

void decodeFourRuns(RecordCursor& cursor, TileRuns& runs) {
    const int header = be16(cursor.at);
    cursor.at += 2;
    const bool indexed = (header & kFourRunsPaletteBit) != 0;
    const int a = header & 31;
    const int b = (header >> 5) & 31;
    const int c = (header >> 10) & 31;
    runs.lengths[0] = static_cast<uint16_t>(a);
    runs.lengths[1] = static_cast<uint16_t>(b);
    runs.lengths[2] = static_cast<uint16_t>(c);
    // Deliberate: the last run comes out one pixel longer than what is left of the tile. Painting
    // stops at the tile's 64th pixel, so it never shows. [quirk_last_of_four_runs_is_one_too_long]
    runs.lengths[3] = static_cast<uint16_t>(61 - (a + b + c));
    runs.colours[0] = cursor.colour(indexed);
    runs.colours[1] = cursor.colour(indexed);
    if (a + b + 2 < kTilePixels) {
        runs.colours[2] = cursor.colour(indexed);
        if (a + b + c + 3 < kTilePixels) {
            runs.colours[3] = cursor.colour(indexed);
        }
    }
}

void decodeShortRuns(RecordCursor& cursor, TileRuns& runs) {
    int covered = 0;
    for (int i = 0; covered < kTilePixels; ++i) {
        const uint8_t control = cursor.byte();
        runs.lengths[i] = static_cast<uint16_t>(control >> 5);
        runs.colours[i] = cursor.colour((control & 2) != 0);
        covered += runs.lengths[i] + 1;
        if (covered >= kTilePixels) {
            return;
        }
        ++i;
        runs.lengths[i] = static_cast<uint16_t>((control >> 2) & 7);
        runs.colours[i] = cursor.colour((control & 1) != 0);
        covered += runs.lengths[i] + 1;
    }
}

void decodePaletteRuns(RecordCursor& cursor, TileRuns& runs) {
    int covered = 0;
    for (int i = 0; covered < kTilePixels || i < 4; ++i) {
        const uint8_t control = cursor.byte();
        runs.lengths[i] = static_cast<uint16_t>(control >> 4);
        runs.colours[i] = cursor.indexedColour();
        covered += runs.lengths[i] + 1;
        if (covered >= kTilePixels && i >= 4) {
            return;
        }
        ++i;
        runs.lengths[i] = static_cast<uint16_t>(control & 15);
        runs.colours[i] = cursor.indexedColour();
        covered += runs.lengths[i] + 1;
    }
}

void decodeTwoColours(RecordCursor& cursor, TileRuns& runs) {
    const uint8_t control = cursor.byte();
    const int split = control & 63;
    runs.lengths[0] = static_cast<uint16_t>(split);
    runs.lengths[1] = static_cast<uint16_t>(62 - split);
    runs.colours[0] = cursor.colour((control & 0x40) != 0);
    runs.colours[1] = cursor.colour((control & 0x80) != 0);
}

}  // namespace

size_t drawRawTile(const uint8_t* record, uint16_t* out) {
    for (int row = 0; row < kTileSize; ++row) {
        for (int column = 0; column < kTileSize; ++column) {
            out[column] = le16(record + 2 * (row * kTileSize + column));
        }
        out += kFrameWidth;
    }
    return size_t{kTilePixels} * 2;
}

size_t drawPaletteTile(const uint8_t* record, const uint16_t* palette, uint16_t* out) {
    for (int row = 0; row < kTileSize; ++row) {
        for (int column = 0; column < kTileSize; ++column) {
            out[column] = palette[record[row * kTileSize + column]];
        }
        out += kFrameWidth;
    }
    return kTilePixels;
}

size_t decodeRuns(const uint8_t* record, int colourType, const uint16_t* palette, TileRuns& runs) {
    RecordCursor cursor{record, palette};
    switch (colourType) {
        case TYPE_FOUR_RUNS:
        case TYPE_FOUR_RUNS + 1:
            decodeFourRuns(cursor, runs);
            break;
        case TYPE_SHORT_RUNS:
        case TYPE_SHORT_RUNS + 1:
            decodeShortRuns(cursor, runs);
            break;
        case TYPE_PALETTE_RUNS:
        case TYPE_PALETTE_RUNS + 1:
            decodePaletteRuns(cursor, runs);
            break;
        default:
            decodeTwoColours(cursor, runs);
            break;
    }
    return static_cast<size_t>(cursor.at - record);
}

void decodeAlpha(const uint8_t* record, uint8_t* levels) {
    const uint8_t first = record[0];
    if ((first & kAlphaFlatBit) != 0) {
        memset(levels, first & 15, kTilePixels);
        return;
    }
    int covered = 0;
    while (covered < kTilePixels) {
        const uint8_t run = *++record;
        const int length = std::min((run >> 4) + 1, kTilePixels - covered);
        memset(levels + covered, run & 15, static_cast<size_t>(length));
        covered += length;
    }
}

}  // namespace clip
