// Draws one frame of a ready clip into the shared layer buffers.
#include <algorithm>
#include <cassert>
#include <cstring>

#include "clip/moxel.h"
#include "clip/paint.h"
#include "clip/tile_fast.h"
#include "core/globals.h"
#include "mixer/filters.h"
#include "mixer/mix.h"

namespace {

constexpr int kGlitchLeavesMap = 0;  // GLITCH direction that visits the map before drawing
constexpr int kGlitchFlat = 2;       // GLITCH direction that draws every tile as a flat one

constexpr int kRowWords = clip::kTilesAcross / clip::kCodesPerWord;

static_assert(kRowWords * clip::kCodesPerWord == clip::kTilesAcross);

bool sameWords(const uint16_t* a, const uint16_t* b, int count) {
    return memcmp(a, b, static_cast<size_t>(count) * sizeof *a) == 0;
}

// Of a tile's first pixel in its frame.
int tileOffset(int position) {
    return (position / clip::kTilesAcross * kFrameWidth + position % clip::kTilesAcross) *
           clip::kTileSize;
}

}  // namespace

// One tile's record, plainly: types 0 and 1 are drawn at drawPointer right away, whatever the code;
// the run types go to tileRuns. Its alpha levels go to tileAlpha.
void c_moxel::unRLETile19(unsigned char* record, int type, int) {
    const bool hasAlphaRecord = type >= clip::kColourTypes;
    const int colourType = type % clip::kColourTypes;
    size_t length = 0;
    switch (colourType) {
        case clip::TYPE_RAW:
            length = clip::drawRawTile(record, drawPointer);
            break;
        case clip::TYPE_PALETTE:
            length = clip::drawPaletteTile(record, palette, drawPointer);
            break;
        default:
            columnOrder = colourType % 2;
            length = clip::decodeRuns(record, colourType, palette, tileRuns);
            break;
    }
    if (alpha == 0) {
        return;
    }
    if (hasAlphaRecord) {
        clip::decodeAlpha(record + length, tileAlpha);
    } else {
        memset(tileAlpha, clip::kAlphaOpaque, sizeof tileAlpha);
    }
}

// What the tiles of a frame have in common.
struct c_moxel::FrameJob {
    const uint16_t* map;
    const uint16_t* codes;
    uint16_t* out;      // the layer's first pixel
    uint8_t* alphaOut;  // the alpha buffer; null when alpha is not wanted
    bool everything;    // also the tiles that the last frame had
    bool flatOnly;      // GLITCH: every tile as a flat one
    const uint8_t* records;
    const uint32_t* recordOffsets;
    const uint8_t* recordTypes;
    uint16_t recordCount;
    clip::fast::TilePainter painter;
    int lastRecord = -1;  // position of the last tile that has one, for the levels that it leaves
};

// The levels of a tile whose record has none, or that shows none.
void c_moxel::drawLevels(uint8_t* alphaOut, int type, int code) {
    if (code == clip::CODE_EMPTY) {
        clip::fillTileAlpha(alphaOut, 0);
    } else if (alpha == 0) {
        clip::copyTileAlpha(alphaOut, tileAlpha);
    } else if (type < clip::kColourTypes) {
        clip::fillTileAlpha(alphaOut, clip::kAlphaOpaque);
    }
}

void c_moxel::drawTile(FrameJob& job, int position, int code, int offset) {
    const uint16_t entry = job.map[position];
    uint16_t* const out = job.out + offset;
    uint8_t* const alphaOut = job.alphaOut != nullptr ? job.alphaOut + offset : nullptr;
    if (code == clip::CODE_FLAT || job.flatOnly) {
        clip::fillTile(out, entry);
        if (alphaOut != nullptr) {
            clip::fillTileAlpha(alphaOut, clip::kAlphaOpaque);
        }
        return;
    }
    // Guard: a record that the block does not have is an empty tile.
    const bool known = entry < job.recordCount;
    if (code == clip::CODE_EMPTY || !known) {
        clip::fillTile(out, 0);
    }
    if (!known) {
        if (alphaOut != nullptr) {
            clip::fillTileAlpha(alphaOut, 0);
        }
        return;
    }
    const int type = job.recordTypes[entry];
    job.lastRecord = position;
    // Deliberate: an empty tile that names a record of types 0 or 1 shows that record's pixels,
    // fully transparent; with a run record it stays black. [quirk_empty_tile_shows_raw_record]
    if (code != clip::CODE_EMPTY || type % clip::kColourTypes < clip::TYPE_FOUR_RUNS) {
        job.painter.add(job.records + job.recordOffsets[entry], type, code, offset);
    }
    if (alphaOut != nullptr) {
        drawLevels(alphaOut, type, code);
    }
}

// A row whose map and codes are those of the frame drawn last costs a comparison, and so do five
// tiles whose codes share a word.
void c_moxel::drawTileRow(FrameJob& job, int row) {
    const int first = row * clip::kTilesAcross;
    const uint16_t* map = job.map + first;
    const uint16_t* codes = job.codes + first / clip::kCodesPerWord;
    uint16_t* const drawnMap = prevMap.data() + first;
    uint16_t* const drawnCodes = prevCodes.data() + first / clip::kCodesPerWord;
    if (!job.everything && sameWords(map, drawnMap, clip::kTilesAcross) &&
        sameWords(codes, drawnCodes, kRowWords)) {
        return;
    }
    int offset = row * clip::kTileSize * kFrameWidth;
    for (int word = 0; word < kRowWords; ++word) {
        for (int i = 0; i < clip::kCodesPerWord; ++i, offset += clip::kTileSize) {
            const int tile = word * clip::kCodesPerWord + i;
            const int code = codes[word] >> (3 * i) & 7;
            if (job.everything || map[tile] != drawnMap[tile] ||
                code != (drawnCodes[word] >> (3 * i) & 7)) {
                drawTile(job, first + tile, code, offset);
            }
        }
    }
    std::copy_n(codes, kRowWords, drawnCodes);
    std::copy_n(map, clip::kTilesAcross, drawnMap);
}

// Deliberate: a clip without alpha shows the levels of the record that its object drew last, so the
// last one of a frame leaves them, whoever drew it.
void c_moxel::keepLevels(const FrameJob& job) {
    if (alpha == 0 || job.lastRecord < 0) {
        return;
    }
    const uint16_t entry = job.map[job.lastRecord];
    const int offset = tileOffset(job.lastRecord);
    drawPointer = job.out + offset;
    drawnDirect = 0;
    unRLETile19(blockRecords[currentBlock].get() + job.recordOffsets[entry], job.recordTypes[entry],
                clip::codeAt(job.codes, job.lastRecord));
}

void c_moxel::renderMoxel19(int layer, int frame, int mode) {
    assert(state == CLIP_READY && frame >= 0 && frame < frameCount);
    currentBlock = frame / clip::kFramesPerBlock;
    const int frameInBlock = frame % clip::kFramesPerBlock;
    if (frameInBlock == 0) {
        redrawCount = 1;
    }
    memcpy(palette, blockPalettes[currentBlock].get(), sizeof palette);

    uint16_t* map = frameMaps[frame];
    const int glitch = _filters->isFilterFXOn(layer, FILTER_GLITCH) != 0
                           ? _filters->getFilterDir(layer, FILTER_GLITCH)
                           : -1;
    if (glitch == kGlitchLeavesMap) {
        _filters->fx_glitchMap(map, tileCount);
    }
    // Deliberate: a layer starts at its own clip's pixelCount, so the top layer of a clip lower
    // than 360 lines lies higher in memory than the mixer's top slot.
    // [quirk_low_clip_moves_top_layer]
    uint16_t* const out = moxelTiles16 + layer * pixelCount;
    uint8_t* const alphaOut = mode == MODE_KEY && layer == 1 ? moxelAlpha16 : nullptr;
    FrameJob job{
        .map = map,
        .codes = blockCodes[currentBlock].get() + frameInBlock * clip::codeWordsFor(tileCount),
        .out = out,
        .alphaOut = alphaOut,
        .everything = redrawCount != 0,
        .flatOnly = glitch == kGlitchFlat,
        .records = blockRecords[currentBlock].get(),
        .recordOffsets = blockRecordOffsets[currentBlock].get(),
        .recordTypes = blockRecordTypes[currentBlock].get(),
        .recordCount = blockRecordCounts[currentBlock],
        .painter = clip::fast::TilePainter({out, alphaOut, palette}),
    };
    for (int row = 0; row < tilesDown; ++row) {
        drawTileRow(job, row);
    }
    job.painter.flush();
    keepLevels(job);
    if (redrawCount != 0) {
        --redrawCount;
    }
}
