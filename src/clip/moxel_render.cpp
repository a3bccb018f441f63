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

}  // namespace

// The tile's runs, pixels and alpha levels from its record. Types 0 and 1 are drawn at drawPointer
// right away, whatever the code; the run types go to tileRuns for painting.
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

// `alphaOut` is the tile's place in the alpha buffer, or null when alpha is not wanted.
void c_moxel::drawTile(uint16_t entry, int code, bool flatOnly, uint8_t* alphaOut) {
    uint16_t* const out = drawPointer;
    if (code == clip::CODE_FLAT || flatOnly) {
        clip::fillTile(out, entry);
        if (alphaOut != nullptr) {
            clip::fillTileAlpha(alphaOut, clip::kAlphaOpaque);
        }
        return;
    }
    if (code == clip::CODE_EMPTY) {
        clip::fillTile(out, 0);
    }
    // Guard: a record that the block does not have is an empty tile.
    if (entry >= blockRecordCounts[currentBlock]) {
        clip::fillTile(out, 0);
        if (alphaOut != nullptr) {
            clip::fillTileAlpha(alphaOut, 0);
        }
        return;
    }
    const uint32_t* starts = blockTypeStarts[currentBlock].get();
    const int type = clip::recordType(starts, clip::typeSlots(alpha), entry);
    drawnDirect = 0;
    unRLETile19(blockRecords[currentBlock].get() + blockRecordOffsets[currentBlock][entry], type,
                code);
    // Deliberate: an empty tile that names a record of types 0 or 1 shows that record's pixels,
    // fully transparent; with a run record it stays black. [quirk_empty_tile_shows_raw_record]
    if (type % clip::kColourTypes >= clip::TYPE_FOUR_RUNS && code != clip::CODE_EMPTY) {
        clip::paintRuns(out, tileRuns, code, columnOrder);
    }
    if (alphaOut != nullptr) {
        if (code == clip::CODE_EMPTY) {
            clip::fillTileAlpha(alphaOut, 0);
        } else {
            clip::copyTileAlpha(alphaOut, tileAlpha);
        }
    }
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
    const int codeWords = clip::codeWordsFor(tileCount);
    const uint16_t* codes = blockCodes[currentBlock].get() + frameInBlock * codeWords;
    const bool writeAlpha = mode == MODE_KEY && layer == 1;
    // Deliberate: a layer starts at its own clip's pixelCount, so the top layer of a clip lower
    // than 360 lines lies higher in memory than the mixer's top slot.
    // [quirk_low_clip_moves_top_layer]
    uint16_t* const layerOut = moxelTiles16 + layer * pixelCount;

    for (int position = 0; position < tileCount; ++position) {
        const int code = clip::codeAt(codes, position);
        const uint16_t entry = map[position];
        const auto index = static_cast<size_t>(position);
        if (entry == prevMap[index] && code == clip::codeAt(prevCodes.data(), position) &&
            redrawCount == 0) {
            continue;
        }
        const int offset =
            (position / tilesAcross * kFrameWidth + position % tilesAcross) * clip::kTileSize;
        drawPointer = layerOut + offset;
        prevMap[index] = entry;
        drawTile(entry, code, glitch == kGlitchFlat, writeAlpha ? moxelAlpha16 + offset : nullptr);
    }
    std::copy_n(codes, codeWords, prevCodes.begin());
    if (redrawCount != 0) {
        --redrawCount;
    }
}
