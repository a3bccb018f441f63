// Any bytes as tile records: the fast painter draws the same pixels and levels as the plain
// one, and neither looks past the room that a record is promised.
//
// Input: for each record its type, its tile code, and its bytes; the next one follows where the
// plain decoder stopped.
#include <vector>

#include "clip/plain_tile.h"
#include "clip/tile_fast.h"
#include "fuzz/input.h"

namespace {

using fuzz::require;

constexpr size_t kStripPixels = size_t{kFrameWidth} * clip::kTileSize;

// On the heap, so that the address sanitizer sees a step past the end of each. Records are read
// when their turn comes, so each tile has its own.
struct Stage {
    std::vector<std::vector<uint8_t>> records =
        std::vector<std::vector<uint8_t>>(clip::kTilesAcross);
    std::vector<uint16_t> palette = std::vector<uint16_t>(clip::kPaletteEntries);
    std::vector<uint16_t> plain = std::vector<uint16_t>(kStripPixels);
    std::vector<uint16_t> fast = std::vector<uint16_t>(kStripPixels);
    std::vector<uint8_t> plainLevels = std::vector<uint8_t>(kStripPixels);
    std::vector<uint8_t> fastLevels = std::vector<uint8_t>(kStripPixels);

    Stage() {
        for (auto& record : records) {
            record.resize(clip::kMaxRecordBytes);
        }
        for (size_t i = 0; i < palette.size(); ++i) {
            palette[i] = static_cast<uint16_t>(i * 2654435761u >> 7 & 0xFFFF);
        }
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static Stage stage;
    fuzz::Input input(data, size);
    clip::fast::TilePainter painter(
        {stage.fast.data(), stage.fastLevels.data(), stage.palette.data()});
    for (int tile = 0; tile < clip::kTilesAcross && !input.empty(); ++tile) {
        const int type = input.below(clip::kMaxTypeSlots);
        const int code = clip::CODE_FIRST_RECORD + input.below(clip::CODE_LAST_RECORD);
        std::vector<uint8_t>& record = stage.records[static_cast<size_t>(tile)];
        input.peek(record.data(), record.size());
        // From the right, so that the first tile painted is the one at the end of the strip.
        const int offset = (clip::kTilesAcross - 1 - tile) * clip::kTileSize;
        const size_t length =
            clip::drawPlainTile(record.data(), type, code, stage.palette.data(),
                                stage.plain.data() + offset, stage.plainLevels.data() + offset);
        painter.add(record.data(), type, code, offset);
        require(length <= record.size(), "a record is no longer than the longest one");
        input.skip(length);
    }
    painter.flush();
    require(stage.plain == stage.fast, "both painters give the same pixels");
    require(stage.plainLevels == stage.fastLevels, "both decoders give the same levels");
    return 0;
}
