#include "clip/plain_tile.h"

#include <algorithm>
#include <cstring>

#include "clip/paint.h"
#include "clip/record.h"
#include "common/bytes.h"

namespace clip {

namespace {

uint16_t& pixelOf(uint16_t* out, int pixel) {
    return out[pixel / kTileSize * kFrameWidth + pixel % kTileSize];
}

// The colour of each of the tile's pixels, row by row.
template <typename ColourAt>
void paintPixels(uint16_t* out, ColourAt colourAt) {
    for (int pixel = 0; pixel < kTilePixels; ++pixel) {
        pixelOf(out, pixel) = colourAt(pixel);
    }
}

}  // namespace

size_t decodeColours(const uint8_t* record, int colourType, const uint16_t* palette, uint16_t* out,
                     TileRuns& runs) {
    int count = 0;
    const uint8_t* end = walkColours<RecordForm::kStored>(record, colourType, [&](const Run& run) {
        runs.lengths[count] = static_cast<uint16_t>(run.length - 1);
        if (run.colour != nullptr) {
            runs.colours[count] = run.indexed ? palette[*run.colour] : le16(run.colour);
        }
        ++count;
    });
    if (colourType == TYPE_RAW) {
        paintPixels(out, [record](int pixel) { return le16(record + 2 * pixel); });
    } else if (colourType == TYPE_PALETTE) {
        paintPixels(out, [record, palette](int pixel) { return palette[record[pixel]]; });
    } else if (hasFourRuns(colourType)) {
        // Deliberate: the last run comes out one pixel longer than what is left of the tile.
        // Painting stops at the tile's 64th pixel, so it never shows.
        // [quirk_last_of_four_runs_is_one_too_long]
        ++runs.lengths[3];
    }
    return static_cast<size_t>(end - record);
}

size_t decodeAlpha(const uint8_t* record, uint8_t* levels) {
    if ((record[0] & kAlphaFlatBit) != 0) {
        memset(levels, record[0] & 15, kTilePixels);
        return 1;
    }
    const uint8_t* end = walkLevels(record + 1, [levels](const uint8_t* run, int covered) {
        std::fill_n(levels + covered, std::min((*run >> 4) + 1, kTilePixels - covered),
                    static_cast<uint8_t>(*run & 15));
    });
    return static_cast<size_t>(end - record);
}

void paintRuns(uint16_t* out, const TileRuns& runs, int code, int columnOrder) {
    const Walk& walk = kWalks[code - CODE_FIRST_RECORD][columnOrder];
    int painted = 0;
    for (int i = 0; painted < kTilePixels; ++i) {
        const int end = std::min(painted + runs.lengths[i] + 1, kTilePixels);
        const uint16_t colour = runs.colours[i];
        for (; painted < end; ++painted) {
            pixelOf(out, walk.pixelAt(painted)) = colour;
        }
    }
}

size_t drawPlainTile(const uint8_t* record, int type, int code, const uint16_t* palette,
                     uint16_t* out, uint8_t* levels) {
    const int colourType = type % kColourTypes;
    TileRuns runs;
    size_t length = decodeColours(record, colourType, palette, out, runs);
    if (code == CODE_EMPTY) {
        return length;
    }
    if (colourType >= TYPE_FOUR_RUNS) {
        paintRuns(out, runs, code, colourType % 2);
    }
    if (type >= kColourTypes && levels != nullptr) {
        uint8_t tile[kTilePixels];
        length += decodeAlpha(record + length, tile);
        copyTileAlpha(levels, tile);
    }
    return length;
}

}  // namespace clip
