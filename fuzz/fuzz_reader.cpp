// Any bytes through the loading of blocks: what it stores fits the room it was given, and its
// records are as long as the tile decoder takes them to be.
//
// Input: a mode. Even: the sections of a clip follow, with a room of the input's own for each. Odd:
// records follow, each a type, its room and its bytes.
#include <vector>

#include "clip/block.h"
#include "clip/plain_tile.h"
#include "fuzz/input.h"

namespace {

using fuzz::require;

constexpr int kMostBlocks = 3;
constexpr int kMostRecords = 64;

// Bytes of a record as the decoder sees it.
size_t decodedLength(const std::vector<uint8_t>& record, int type) {
    static const std::vector<uint16_t> palette(clip::kPaletteEntries);
    static std::vector<uint16_t> tile(size_t{clip::kTileSize} * kFrameWidth);
    clip::TileRuns runs;
    size_t length = clip::decodeColours(record.data(), type % clip::kColourTypes, palette.data(),
                                        tile.data(), runs);
    if (type < clip::kColourTypes) {
        return length;
    }
    const bool oneByte = (record[length++] & clip::kAlphaOneByteMask) != 0;
    for (int covered = 0; !oneByte && covered < clip::kTilePixels;) {
        covered += (record[length++] >> 4) + 1;
    }
    return length;
}

// One record of `type` into a room of `room` bytes; the end of what was stored.
size_t loadOne(std::span<const uint8_t> bytes, int type, size_t room, std::vector<uint8_t>& out) {
    const std::vector<uint32_t> starts(static_cast<size_t>(type) + 1);
    uint32_t offset = 0;
    uint8_t storedType = 0;
    out.assign(room + clip::kMaxRecordBytes, 0);
    clip::Block block{.frames = 1,
                      .tiles = 0,
                      .slots = type + 1,
                      .room = {0, 0, 0, 1, room},
                      .typeStarts = starts.data(),
                      .map = nullptr,
                      .runs = nullptr,
                      .codes = nullptr,
                      .records = out.data(),
                      .recordOffsets = &offset,
                      .recordTypes = &storedType};
    clip::Source source(bytes);
    const bool fits = clip::loadRecords(source, 1, block) == clip::Records::kAll;
    require(fits == (block.recordsEnd > 0) && (!fits || storedType == type),
            "a record is stored or refused");
    return block.recordsEnd;
}

void checkRecord(fuzz::Input& input) {
    static std::vector<uint8_t> record;
    static std::vector<uint8_t> exact;
    const int type = input.below(clip::kMaxTypeSlots);
    const size_t room = input.byte();
    const size_t length = loadOne(input.rest(), type, clip::kMaxRecordBytes, record);
    require(length > 0, "every record fits the room of the longest");
    require(length == decodedLength(record, type), "loader and decoder take the same bytes");

    const size_t again = loadOne(input.rest(), type, room, exact);
    require(again == (length <= room ? length : 0),
            "a record that does not fit is refused, any other is not");
    require(
        std::equal(exact.begin(), exact.begin() + static_cast<ptrdiff_t>(again), record.begin()),
        "the room does not change the record");
    input.skip(length);
}

void checkRecords(fuzz::Input& input) {
    for (int i = 0; i < kMostRecords && !input.empty(); ++i) {
        checkRecord(input);
    }
}

// False when the block's runs do not fit.
bool readBlock(clip::Source& source, const clip::FileHeader& file, int frames, size_t room) {
    const int tiles = clip::tilesFor(file.height);
    clip::BlockHeader header;
    clip::readBlockHeader(source, file.alpha, header);
    for (int type = clip::typeSlots(file.alpha); type < clip::kMaxTypeSlots; ++type) {
        require(header.typeCounts[type] == 0, "a clip without alpha has ten types");
    }
    std::vector<uint8_t> runs(room);
    clip::ChangeRuns changes = {0, 0};
    if (!clip::readChangeRuns(source, frames - 1, tiles, runs.data(), room, changes)) {
        require(changes.runBytes == room, "runs are refused at the end of their room");
        return false;
    }
    require(changes.runBytes <= room, "runs stay in their room");
    std::vector<uint16_t> map(static_cast<size_t>(tiles) + static_cast<size_t>(changes.changed));
    source.takeWords(map.data(), map.size());
    std::vector<uint16_t> codes(static_cast<size_t>(clip::codeWordsFor(tiles) * frames));
    source.takeWords(codes.data(), codes.size());
    return true;
}

void checkSections(fuzz::Input& input) {
    const size_t room = input.word();
    clip::Source source(input.rest());
    const clip::FileHeader file = clip::readFileHeader(source);
    if (!clip::headerFits(file)) {
        return;
    }
    require(clip::tilesFor(file.height) <= clip::kMaxTiles && file.blockCount <= clip::kMaxBlocks,
            "a header that fits stays inside the program's buffers");
    const int blocks = std::min<int>(file.blockCount, kMostBlocks);
    for (int block = 0; block < blocks; ++block) {
        const int frames = clip::framesInBlock(block, file.blockCount, file.frameCount);
        require(frames >= 1 && frames <= clip::kFramesPerBlock, "a block has 1 to 16 frames");
        if (!readBlock(source, file, frames, room)) {
            return;
        }
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Input input(data, size);
    if (input.byte() % 2 == 0) {
        checkSections(input);
    } else {
        checkRecords(input);
    }
    return 0;
}
