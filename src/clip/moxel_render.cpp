// Draws one frame of a ready clip into the shared layer buffers.
#include <algorithm>
#include <cassert>
#include <cstring>

#include "clip/moxel.h"
#include "clip/paint.h"
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

}  // namespace

// The tile's runs, pixels and alpha levels from its record. Types 0 and 1 are drawn at drawPointer
// right away, whatever the code; the run types go to tileRuns and the painter's line.
void c_moxel::unRLETile19(unsigned char* record, int type, int) {
    const bool hasAlphaRecord = type >= clip::kColourTypes;
    const int colourType = type % clip::kColourTypes;
    size_t length = 0;
    switch (colourType) {
        case clip::TYPE_RAW:
            length = clip::drawRawTile(record, drawPointer);
            break;
        case clip::TYPE_PALETTE:
            length = clip::fast::drawPaletteTile(record, palette, drawPointer);
            break;
        default:
            columnOrder = colourType % 2;
            length =
                clip::fast::decodeRuns(record, colourType, palette, tileRuns, linePainter.line());
            break;
    }
    if (alpha == 0) {
        return;
    }
    if (hasAlphaRecord) {
        clip::fast::decodeAlpha(record + length, tileAlpha);
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

    bool unchanged(int position, const uint16_t* drawnMap, int count) const {
        return !everything && sameWords(map + position, drawnMap + position, count);
    }
};

// `alphaOut` is the tile's place in the alpha buffer, or null when alpha is not wanted.
void c_moxel::drawRecord(uint16_t entry, int code, uint8_t* alphaOut) {
    uint16_t* const out = drawPointer;
    const int type = blockRecordTypes[currentBlock][entry];
    drawnDirect = 0;
    unRLETile19(blockRecords[currentBlock].get() + blockRecordOffsets[currentBlock][entry], type,
                code);
    // Deliberate: an empty tile that names a record of types 0 or 1 shows that record's pixels,
    // fully transparent; with a run record it stays black. [quirk_empty_tile_shows_raw_record]
    if (type % clip::kColourTypes >= clip::TYPE_FOUR_RUNS && code != clip::CODE_EMPTY) {
        linePainter.paint(out, code, columnOrder);
    }
    if (alphaOut != nullptr) {
        if (code == clip::CODE_EMPTY) {
            clip::fillTileAlpha(alphaOut, 0);
        } else {
            clip::copyTileAlpha(alphaOut, tileAlpha);
        }
    }
}

void c_moxel::drawTile(const FrameJob& job, int position, int code) {
    const uint16_t entry = job.map[position];
    const int offset =
        (position / clip::kTilesAcross * kFrameWidth + position % clip::kTilesAcross) *
        clip::kTileSize;
    drawPointer = job.out + offset;
    uint8_t* const alphaOut = job.alphaOut != nullptr ? job.alphaOut + offset : nullptr;
    if (code == clip::CODE_FLAT || job.flatOnly) {
        clip::fillTile(drawPointer, entry);
        if (alphaOut != nullptr) {
            clip::fillTileAlpha(alphaOut, clip::kAlphaOpaque);
        }
        return;
    }
    if (code == clip::CODE_EMPTY) {
        clip::fillTile(drawPointer, 0);
    }
    // Guard: a record that the block does not have is an empty tile.
    if (entry >= blockRecordCounts[currentBlock]) {
        clip::fillTile(drawPointer, 0);
        if (alphaOut != nullptr) {
            clip::fillTileAlpha(alphaOut, 0);
        }
        return;
    }
    drawRecord(entry, code, alphaOut);
}

// A row whose map and codes are those of the frame drawn last costs a comparison, and so do five
// tiles whose codes share a word.
void c_moxel::drawTileRow(const FrameJob& job, int row) {
    const int first = row * clip::kTilesAcross;
    const int firstWord = first / clip::kCodesPerWord;
    if (job.unchanged(first, prevMap.data(), clip::kTilesAcross) &&
        sameWords(job.codes + firstWord, &prevCodes[static_cast<size_t>(firstWord)], kRowWords)) {
        return;
    }
    for (int word = firstWord; word < firstWord + kRowWords; ++word) {
        const uint16_t codes = job.codes[word];
        const uint16_t drawnCodes = prevCodes[static_cast<size_t>(word)];
        int position = word * clip::kCodesPerWord;
        if (codes == drawnCodes && job.unchanged(position, prevMap.data(), clip::kCodesPerWord)) {
            continue;
        }
        for (int shift = 0; shift < 3 * clip::kCodesPerWord; shift += 3, ++position) {
            const int code = codes >> shift & 7;
            if (code == (drawnCodes >> shift & 7) && job.unchanged(position, prevMap.data(), 1)) {
                continue;
            }
            drawTile(job, position, code);
        }
    }
    std::copy_n(job.codes + firstWord, kRowWords, prevCodes.begin() + firstWord);
    std::copy_n(job.map + first, clip::kTilesAcross, prevMap.begin() + first);
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
    FrameJob job;
    job.map = map;
    job.codes = blockCodes[currentBlock].get() + frameInBlock * clip::codeWordsFor(tileCount);
    // Deliberate: a layer starts at its own clip's pixelCount, so the top layer of a clip lower
    // than 360 lines lies higher in memory than the mixer's top slot.
    // [quirk_low_clip_moves_top_layer]
    job.out = moxelTiles16 + layer * pixelCount;
    job.alphaOut = mode == MODE_KEY && layer == 1 ? moxelAlpha16 : nullptr;
    job.everything = redrawCount != 0;
    job.flatOnly = glitch == kGlitchFlat;
    for (int row = 0; row < tilesDown; ++row) {
        drawTileRow(job, row);
    }
    linePainter.flush();
    if (redrawCount != 0) {
        --redrawCount;
    }
}
