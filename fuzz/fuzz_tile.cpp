// Any bytes as tile records: the fast decoder takes as many bytes as the plain one and paints the
// same pixels and levels, and neither looks past the room that a record is promised.
//
// Input: for each record its type, its tile code, and its bytes; the next one follows where the
// plain decoder stopped.
#include <cstring>
#include <vector>

#include "clip/paint.h"
#include "clip/tile_fast.h"
#include "fuzz/input.h"

namespace {

using fuzz::require;

constexpr int kTypes = 2 * clip::kColourTypes;
constexpr size_t kStripPixels = size_t{kFrameWidth} * clip::kTileSize;

// On the heap, so that the address sanitizer sees a step past the end of each.
struct Stage {
    std::vector<uint8_t> record = std::vector<uint8_t>(clip::kMaxRecordBytes);
    std::vector<uint16_t> palette = std::vector<uint16_t>(clip::kPaletteEntries);
    std::vector<uint16_t> plain = std::vector<uint16_t>(kStripPixels);
    std::vector<uint16_t> fast = std::vector<uint16_t>(kStripPixels);
    clip::fast::LinePainter painter;

    Stage() {
        for (size_t i = 0; i < palette.size(); ++i) {
            palette[i] = static_cast<uint16_t>(i * 2654435761u >> 7 & 0xFFFF);
        }
    }
};

size_t checkRuns(Stage& stage, int colourType, int code, int tile) {
    clip::TileRuns plain;
    clip::TileRuns fast;
    const uint8_t* record = stage.record.data();
    const size_t length = clip::decodeRuns(record, colourType, stage.palette.data(), plain);
    require(clip::fast::decodeRuns(record, colourType, stage.palette.data(), fast,
                                   stage.painter.line()) == length,
            "both decoders take the same bytes");
    int covered = 0;
    for (int i = 0; covered < clip::kTilePixels; ++i) {
        require(plain.lengths[i] == fast.lengths[i] && plain.colours[i] == fast.colours[i],
                "both decoders give the same runs");
        covered += plain.lengths[i] + 1;
    }
    const int x = tile * clip::kTileSize;
    clip::paintRuns(stage.plain.data() + x, plain, code, colourType % 2);
    stage.painter.paint(stage.fast.data() + x, code, colourType % 2);
    return length;
}

size_t checkColours(Stage& stage, int colourType, int code, int tile) {
    const uint8_t* record = stage.record.data();
    uint16_t* plain = stage.plain.data() + tile * clip::kTileSize;
    uint16_t* fast = stage.fast.data() + tile * clip::kTileSize;
    switch (colourType) {
        case clip::TYPE_RAW:
            clip::drawRawTile(record, fast);
            return clip::drawRawTile(record, plain);
        case clip::TYPE_PALETTE:
            clip::fast::drawPaletteTile(record, stage.palette.data(), fast);
            return clip::drawPaletteTile(record, stage.palette.data(), plain);
        default:
            return checkRuns(stage, colourType, code, tile);
    }
}

// Bytes of the alpha record.
size_t checkAlpha(const uint8_t* record) {
    uint8_t plain[clip::kTilePixels];
    uint8_t fast[clip::kTilePixels];
    clip::decodeAlpha(record, plain);
    clip::fast::decodeAlpha(record, fast);
    require(memcmp(plain, fast, sizeof plain) == 0, "both decoders give the same levels");
    size_t length = 1;
    if ((record[0] & clip::kAlphaFlatBit) == 0) {
        for (int covered = 0; covered < clip::kTilePixels; ++length) {
            covered += (record[length] >> 4) + 1;
        }
    }
    return length;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Stage stage;
    fuzz::Input input(data, size);
    for (int tile = 0; tile < clip::kTilesAcross && !input.empty(); ++tile) {
        const int type = input.below(kTypes);
        const int code = clip::CODE_FIRST_RECORD + input.below(clip::CODE_LAST_RECORD);
        input.peek(stage.record.data(), stage.record.size());
        // From the right, so that the first tile painted is the one at the end of the strip.
        size_t length =
            checkColours(stage, type % clip::kColourTypes, code, clip::kTilesAcross - 1 - tile);
        if (type >= clip::kColourTypes) {
            length += checkAlpha(stage.record.data() + length);
        }
        require(length <= stage.record.size(), "a record is no longer than the longest one");
        input.skip(length);
    }
    stage.painter.flush();
    require(stage.plain == stage.fast, "both painters give the same pixels");
    return 0;
}
