// Draws one frame of a ready clip into the shared layer buffers.
#include <cassert>
#include <cstring>

#include "clip/frame.h"
#include "core/filters.h"
#include "core/globals.h"
#include "moxel/moxel.h"
#include "px/modes.h"

namespace {

constexpr int kGlitchLeavesMap = 0;  // GLITCH direction that visits the map before drawing
constexpr int kGlitchFlat = 2;       // GLITCH direction that draws every tile as a flat one

}  // namespace

// One tile's record, plainly: types 0 and 1 are drawn at drawPointer right away, whatever the code;
// the run types go to tileRuns. Its alpha levels go to tileAlpha.
void c_moxel::unRLETile19(unsigned char* record, int type, int) {
    const int colourType = type % clip::kColourTypes;
    if (colourType >= clip::TYPE_FOUR_RUNS) {
        columnOrder = colourType % 2;
    }
    const size_t length = clip::decodeColours(record, colourType, palette, drawPointer, tileRuns);
    if (alpha == 0) {
        return;
    }
    if (type >= clip::kColourTypes) {
        clip::decodeAlpha(record + length, tileAlpha);
    } else {
        memset(tileAlpha, clip::kAlphaOpaque, sizeof tileAlpha);
    }
}

// A clip without alpha shows the levels of the record that its object drew last, perhaps of the
// clip before it: the last record of a frame leaves them, whoever drew its pixels.
void c_moxel::keepLevels(const clip::FrameDrawing& drawing, int lastRecord) {
    if (alpha == 0 || lastRecord < 0) {
        return;
    }
    const int position = lastRecord / (clip::kTileSize * kFrameWidth) * clip::kTilesAcross +
                         lastRecord % kFrameWidth / clip::kTileSize;
    const uint16_t entry = drawing.map[position];
    drawnDirect = 0;
    drawPointer = drawing.out + lastRecord;
    unRLETile19(blockRecords[currentBlock].get() + drawing.recordOffsets[entry],
                drawing.recordTypes[entry], clip::codeAt(drawing.codes, position));
}

// Deliberate: what was drawn last is the clip's, on whichever layer that was, and a change of mode
// or deck does not make it draw everything. On a layer that shows another picture, the tiles in
// which this clip stands still keep that picture until a block begins: 16 frames at the most, and
// as long as the layers are held. Drawn whole at the key, the picture would change at once, where
// now it comes tile by tile. [quirk_mode_change_leaves_tiles_for_a_block]
clip::FrameDrawing c_moxel::drawingOf(int frame, uint16_t* out, uint8_t* levels, bool flatOnly) {
    const int frameInBlock = frame % clip::kFramesPerBlock;
    return {
        .rows = tilesDown,
        .map = frameMaps[frame],
        .codes = blockCodes[currentBlock].get() + frameInBlock * clip::codeWordsFor(tileCount),
        .palette = palette,
        .records = blockRecords[currentBlock].get(),
        .recordOffsets = blockRecordOffsets[currentBlock].get(),
        .recordTypes = blockRecordTypes[currentBlock].get(),
        .recordCount = blockRecordCounts[currentBlock],
        .out = out,
        .levels = levels,
        .keptLevels = alpha == 0 ? tileAlpha : nullptr,
        .drawnMap = prevMap.data(),
        .drawnCodes = prevCodes.data(),
        .everything = redrawCount != 0,
        .flatOnly = flatOnly,
    };
}

void c_moxel::renderMoxel19(int layer, int frame, int mode) {
    assert(state == CLIP_READY && frame >= 0 && frame < frameCount);
    // Guard: the playlists' scan reads other files' headers into slots that play, and frameCount is
    // theirs then; a frame that this clip does not have leaves the layer as it is.
    if (frame >= ownHeader.frameCount) {
        return;
    }
    currentBlock = frame / clip::kFramesPerBlock;
    if (frame % clip::kFramesPerBlock == 0) {
        redrawCount = 1;
    }
    memcpy(palette, blockPalettes[currentBlock].get(), sizeof palette);

    const int glitch = _filters->isFilterFXOn(layer, FILTER_GLITCH) != 0
                           ? _filters->getFilterDir(layer, FILTER_GLITCH)
                           : -1;
    if (glitch == kGlitchLeavesMap) {
        _filters->fx_glitchMap(frameMaps[frame], tileCount);
    }
    // Deliberate: a layer starts at its own clip's pixelCount, so the top layer of a clip lower
    // than 360 lines lies higher in memory than the mixer's top slot.
    // [quirk_low_clip_moves_top_layer]
    uint16_t* const out = moxelTiles16 + layer * pixelCount;
    // Deliberate: the levels of a tile are written with its pixels and only while they are wanted.
    // On a change to this mode, tiles that stay as they are keep the levels of before until a block
    // begins; writing all of them at the key would change the picture at once, where now it comes
    // tile by tile. [quirk_alpha_comes_within_a_block]
    uint8_t* const levels = mode == MODE_KEY && layer == 1 ? moxelAlpha16 : nullptr;
    const clip::FrameDrawing drawing = drawingOf(frame, out, levels, glitch == kGlitchFlat);
    keepLevels(drawing, clip::drawFrame(drawing));
    if (redrawCount != 0) {
        --redrawCount;
    }
}
