// Draws one frame of a ready clip into the shared layer buffers.
#include <algorithm>
#include <cassert>
#include <cstring>

#include "clip/paint.h"
#include "clip/tile_fast.h"
#include "core/globals.h"
#include "mixer/filters.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"

namespace {

constexpr int kGlitchLeavesMap = 0;  // GLITCH direction that visits the map before drawing
constexpr int kGlitchFlat = 2;       // GLITCH direction that draws every tile as a flat one

constexpr int kRowWords = clip::kTilesAcross / clip::kCodesPerWord;

static_assert(kRowWords * clip::kCodesPerWord == clip::kTilesAcross);

bool sameWords(const uint16_t* a, const uint16_t* b, int count) {
    return memcmp(a, b, static_cast<size_t>(count) * sizeof *a) == 0;
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
    clip::fast::TilePainter& painter;
    uint16_t recordCount;
    int lastRecord = -1;  // offset of the last tile that has one, for the levels that it leaves

    void add(size_t entry, size_t code, size_t offset) {
        lastRecord = static_cast<int>(offset);
        painter.add(records + recordOffsets[entry], recordTypes[entry], static_cast<int>(code),
                    lastRecord);
    }
};

void c_moxel::drawFlat(const FrameJob& job, uint16_t colour, size_t offset) {
    clip::fillTile(job.out + offset, colour);
    if (job.alphaOut != nullptr) {
        clip::fillTileAlpha(job.alphaOut + offset, clip::kAlphaOpaque);
    }
}

// Guard: a record that the block does not have is an empty tile.
void c_moxel::drawEmpty(FrameJob& job, size_t entry, size_t offset) {
    clip::fillTile(job.out + offset, 0);
    if (job.alphaOut != nullptr) {
        clip::fillTileAlpha(job.alphaOut + offset, 0);
    }
    if (entry >= job.recordCount) {
        return;
    }
    job.lastRecord = static_cast<int>(offset);
    // Deliberate: an empty tile that names a record of types 0 or 1 shows that record's pixels,
    // fully transparent; with a run record it stays black. [quirk_empty_tile_shows_raw_record]
    if (job.recordTypes[entry] % clip::kColourTypes < clip::TYPE_FOUR_RUNS) {
        job.add(entry, clip::CODE_EMPTY, offset);
    }
}

// Inlined into both loops over the tiles: a call takes 14 instructions a tile on arm64. Entry, code
// and offset are sizes there because they are indices; narrower ones are widened tile by tile.
[[gnu::always_inline]] inline void c_moxel::drawTile(FrameJob& job, size_t entry, size_t code,
                                                     size_t offset) {
    if (code == clip::CODE_FLAT) {
        drawFlat(job, static_cast<uint16_t>(entry), offset);
        return;
    }
    if (code == clip::CODE_EMPTY || entry >= job.recordCount) {
        drawEmpty(job, entry, offset);
        return;
    }
    job.add(entry, code, offset);
    if (job.alphaOut == nullptr) {
        return;
    }
    if (alpha == 0) {
        clip::copyTileAlpha(job.alphaOut + offset, tileAlpha);
    } else if (job.recordTypes[entry] < clip::kColourTypes) {
        clip::fillTileAlpha(job.alphaOut + offset, clip::kAlphaOpaque);
    }
}

// Draws those tiles of a row for which differs(tile, word of its code, shift in the word) holds.
template <typename Differs>
void c_moxel::drawRowTiles(FrameJob& job, int row, Differs differs) {
    const uint16_t* const map = job.map + row * clip::kTilesAcross;
    const uint16_t* const codes = job.codes + row * kRowWords;
    size_t offset = static_cast<size_t>(row) * clip::kTileSize * kFrameWidth;
    int tile = 0;
    for (int word = 0; word < kRowWords; ++word) {
        static_assert(clip::CODE_FLAT == 0, "a word of 0 is five flat tiles");
        size_t bits = job.flatOnly ? 0 : codes[word];
        for (int shift = 0; shift < clip::kWordCodeBits; shift += clip::kCodeBits) {
            if (differs(tile, word, shift)) {
                drawTile(job, map[tile], bits & clip::kCodeMask, offset);
            }
            ++tile;
            offset += clip::kTileSize;
            bits >>= clip::kCodeBits;
        }
    }
}

// A row whose map and codes are those of the frame drawn last costs a comparison.
void c_moxel::drawTileRow(FrameJob& job, int row) {
    const uint16_t* const map = job.map + row * clip::kTilesAcross;
    const uint16_t* const codes = job.codes + row * kRowWords;
    uint16_t* const drawnMap = prevMap.data() + row * clip::kTilesAcross;
    uint16_t* const drawnCodes = prevCodes.data() + row * kRowWords;
    if (job.everything) {
        drawRowTiles(job, row, [](int, int, int) { return true; });
    } else if (sameWords(map, drawnMap, clip::kTilesAcross) &&
               sameWords(codes, drawnCodes, kRowWords)) {
        return;
    } else {
        drawRowTiles(job, row, [=](int tile, int word, int shift) {
            return map[tile] != drawnMap[tile] ||
                   ((codes[word] ^ drawnCodes[word]) >> shift & clip::kCodeMask) != 0;
        });
    }
    std::copy_n(codes, kRowWords, drawnCodes);
    std::copy_n(map, clip::kTilesAcross, drawnMap);
}

// A clip without alpha shows the levels of the record that its object drew last, perhaps of the
// clip before it: the last record of a frame leaves them, whoever drew its pixels.
void c_moxel::keepLevels(const FrameJob& job) {
    if (alpha == 0 || job.lastRecord < 0) {
        return;
    }
    const int position = job.lastRecord / (clip::kTileSize * kFrameWidth) * clip::kTilesAcross +
                         job.lastRecord % kFrameWidth / clip::kTileSize;
    const uint16_t entry = job.map[position];
    drawnDirect = 0;
    drawPointer = job.out + job.lastRecord;
    unRLETile19(blockRecords[currentBlock].get() + job.recordOffsets[entry], job.recordTypes[entry],
                clip::codeAt(job.codes, position));
}

void c_moxel::renderMoxel19(int layer, int frame, int mode) {
    assert(state == CLIP_READY && frame >= 0 && frame < frameCount);
    // Guard: the playlists' scan reads other files' headers into slots that play, and frameCount is
    // theirs then; a frame that this clip does not have leaves the layer as it is.
    if (frame >= ownHeader.frameCount) {
        return;
    }
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
    // Deliberate: the levels of a tile are written with its pixels and only while they are wanted.
    // On a change to this mode, tiles that stay as they are keep the levels of before until a block
    // begins; writing all of them at the key would change the picture at once, where now it comes
    // tile by tile. [quirk_alpha_comes_within_a_block]
    uint8_t* const alphaOut = mode == MODE_KEY && layer == 1 ? moxelAlpha16 : nullptr;
    clip::fast::TilePainter painter({out, alphaOut, palette});
    // Deliberate: what was drawn last is the clip's, on whichever layer that was, and a change of
    // mode or deck does not make it draw everything. On a layer that shows another picture, the
    // tiles in which this clip stands still keep that picture until a block begins: 16 frames at
    // the most, and as long as the layers are held. Drawn whole at the key, the picture would
    // change at once, where now it comes tile by tile. [quirk_mode_change_leaves_tiles_for_a_block]
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
        .painter = painter,
        .recordCount = blockRecordCounts[currentBlock],
    };
    for (int row = 0; row < tilesDown; ++row) {
        drawTileRow(job, row);
    }
    painter.flush();
    keepLevels(job);
    if (redrawCount != 0) {
        --redrawCount;
    }
}
