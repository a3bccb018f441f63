#include "clip/frame.h"

#include <algorithm>
#include <cstring>

#include "clip/format.h"
#include "clip/paint.h"
#include "clip/tile_fast.h"

namespace clip {

namespace {

constexpr int kRowWords = kTilesAcross / kCodesPerWord;

static_assert(kRowWords * kCodesPerWord == kTilesAcross);

bool sameWords(const uint16_t* a, const uint16_t* b, int count) {
    return memcmp(a, b, static_cast<size_t>(count) * sizeof *a) == 0;
}

struct FrameJob : FrameDrawing {
    fast::TilePainter& painter;
    int lastRecord = -1;

    void add(size_t entry, size_t code, size_t offset) {
        lastRecord = static_cast<int>(offset);
        painter.add(records + recordOffsets[entry], recordTypes[entry], static_cast<int>(code),
                    lastRecord);
    }
};

void drawFlat(const FrameJob& job, uint16_t colour, size_t offset) {
    fillTile(job.out + offset, colour);
    if (job.levels != nullptr) {
        fillTileAlpha(job.levels + offset, kAlphaOpaque);
    }
}

// Guard: a record that the block does not have is an empty tile.
void drawEmpty(FrameJob& job, size_t entry, size_t offset) {
    fillTile(job.out + offset, 0);
    if (job.levels != nullptr) {
        fillTileAlpha(job.levels + offset, 0);
    }
    if (entry >= job.recordCount) {
        return;
    }
    job.lastRecord = static_cast<int>(offset);
    // Deliberate: an empty tile that names a record of types 0 or 1 shows that record's pixels,
    // fully transparent; with a run record it stays black. [quirk_empty_tile_shows_raw_record]
    if (job.recordTypes[entry] % kColourTypes < TYPE_FOUR_RUNS) {
        job.add(entry, CODE_EMPTY, offset);
    }
}

// Inlined into both loops over the tiles: a call takes 14 instructions a tile on arm64. Entry, code
// and offset are sizes there because they are indices; narrower ones are widened tile by tile.
[[gnu::always_inline]] inline void drawTile(FrameJob& job, size_t entry, size_t code,
                                            size_t offset) {
    if (code == CODE_FLAT) {
        drawFlat(job, static_cast<uint16_t>(entry), offset);
        return;
    }
    if (code == CODE_EMPTY || entry >= job.recordCount) {
        drawEmpty(job, entry, offset);
        return;
    }
    job.add(entry, code, offset);
    if (job.levels == nullptr) {
        return;
    }
    if (job.keptLevels != nullptr) {
        copyTileAlpha(job.levels + offset, job.keptLevels);
    } else if (job.recordTypes[entry] < kColourTypes) {
        fillTileAlpha(job.levels + offset, kAlphaOpaque);
    }
}

// Draws those tiles of a row for which differs(tile, word of its code, shift in the word) holds.
template <typename Differs>
void drawRowTiles(FrameJob& job, int row, Differs differs) {
    const uint16_t* const map = job.map + row * kTilesAcross;
    const uint16_t* const codes = job.codes + row * kRowWords;
    size_t offset = static_cast<size_t>(row) * kTileSize * kFrameWidth;
    int tile = 0;
    for (int word = 0; word < kRowWords; ++word) {
        static_assert(CODE_FLAT == 0, "a word of 0 is five flat tiles");
        size_t bits = job.flatOnly ? 0 : codes[word];
        for (int shift = 0; shift < kWordCodeBits; shift += kCodeBits) {
            if (differs(tile, word, shift)) {
                drawTile(job, map[tile], bits & kCodeMask, offset);
            }
            ++tile;
            offset += kTileSize;
            bits >>= kCodeBits;
        }
    }
}

// A row whose map and codes are those of the frame drawn last costs a comparison. By itself, so
// that its loops have all registers.
[[gnu::noinline]] void drawTileRow(FrameJob& job, int row) {
    const uint16_t* const map = job.map + row * kTilesAcross;
    const uint16_t* const codes = job.codes + row * kRowWords;
    uint16_t* const drawnMap = job.drawnMap + row * kTilesAcross;
    uint16_t* const drawnCodes = job.drawnCodes + row * kRowWords;
    if (job.everything) {
        drawRowTiles(job, row, [](int, int, int) { return true; });
    } else if (sameWords(map, drawnMap, kTilesAcross) && sameWords(codes, drawnCodes, kRowWords)) {
        return;
    } else {
        drawRowTiles(job, row, [=](int tile, int word, int shift) {
            return map[tile] != drawnMap[tile] ||
                   ((codes[word] ^ drawnCodes[word]) >> shift & kCodeMask) != 0;
        });
    }
    std::copy_n(codes, kRowWords, drawnCodes);
    std::copy_n(map, kTilesAcross, drawnMap);
}

}  // namespace

int drawFrame(const FrameDrawing& drawing) {
    fast::TilePainter painter({drawing.out, drawing.levels, drawing.palette});
    FrameJob job{drawing, painter};
    for (int row = 0; row < drawing.rows; ++row) {
        drawTileRow(job, row);
    }
    painter.flush();
    return job.lastRecord;
}

}  // namespace clip
