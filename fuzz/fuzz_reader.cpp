// Any bytes through the reader of clip sections: what it stores fits the room it was given, and its
// records are as long as the tile decoder takes them to be.
//
// Input: a mode. Even: the sections of a clip follow, with a room of the input's own for each. Odd:
// records follow, each a type, its room and its bytes.
#include <vector>

#include "clip/reader.h"
#include "clip/tile.h"
#include "fuzz/input.h"

namespace {

using fuzz::require;

constexpr int kTypes = 2 * clip::kColourTypes;
constexpr int kMostBlocks = 3;
constexpr int kMostRecords = 64;

// Bytes of a record as the decoder sees it.
size_t decodedLength(const std::vector<uint8_t>& record, int type) {
    static const std::vector<uint16_t> palette(clip::kPaletteEntries);
    const int colourType = type % clip::kColourTypes;
    size_t length = 2 * clip::kTilePixels;
    if (colourType == clip::TYPE_PALETTE) {
        length = clip::kTilePixels;
    } else if (colourType >= clip::TYPE_FOUR_RUNS) {
        clip::TileRuns runs;
        length = clip::decodeRuns(record.data(), colourType, palette.data(), runs);
    }
    if (type < clip::kColourTypes) {
        return length;
    }
    const bool oneByte = (record[length++] & clip::kAlphaOneByteMask) != 0;
    for (int covered = 0; !oneByte && covered < clip::kTilePixels;) {
        covered += (record[length++] >> 4) + 1;
    }
    return length;
}

void checkRecord(fuzz::Input& input, std::vector<uint8_t>& record) {
    const int type = input.below(kTypes);
    const size_t room = input.byte();
    const fuzz::Stream stream = fuzz::openStream(input.rest());
    std::fill(record.begin(), record.end(), uint8_t{0});
    const auto length =
        static_cast<size_t>(clip::readRecord(stream.get(), type, record.data(), record.size()));
    require(length > 0, "every record fits the room of the longest");
    require(length == decodedLength(record, type), "reader and decoder take the same bytes");

    std::vector<uint8_t> exact(room);
    rewind(stream.get());
    const int again = clip::readRecord(stream.get(), type, exact.data(), room);
    require(again == (length <= room ? static_cast<int>(length) : 0),
            "a record that does not fit is refused, any other is not");
    require(again == 0 || std::equal(exact.begin(), exact.begin() + again, record.begin()),
            "the room does not change the record");
    input.skip(length);
}

void checkRecords(fuzz::Input& input) {
    static std::vector<uint8_t> record(clip::kMaxRecordBytes);
    for (int i = 0; i < kMostRecords && !input.empty(); ++i) {
        checkRecord(input, record);
    }
}

// False when the block's runs do not fit.
bool readBlock(FILE* stream, const clip::FileHeader& file, int frames, size_t room) {
    const int tiles = clip::tilesFor(file.height);
    clip::BlockHeader header;
    clip::readBlockHeader(stream, file.alpha, header);
    for (int type = clip::typeSlots(file.alpha); type < clip::kMaxTypeSlots; ++type) {
        require(header.typeCounts[type] == 0, "a clip without alpha has ten types");
    }
    std::vector<uint8_t> runs(room);
    clip::ChangeRuns changes = {0, 0};
    if (!clip::readChangeRuns(stream, frames - 1, tiles, runs.data(), room, changes)) {
        require(changes.runBytes == room, "runs are refused at the end of their room");
        return false;
    }
    require(changes.runBytes <= room, "runs stay in their room");
    std::vector<uint16_t> map(static_cast<size_t>(tiles) + static_cast<size_t>(changes.changed));
    clip::readWords(stream, map.data(), map.size());
    std::vector<uint16_t> codes(static_cast<size_t>(clip::codeWordsFor(tiles) * frames));
    clip::readWords(stream, codes.data(), codes.size());
    return true;
}

void checkSections(fuzz::Input& input) {
    const size_t room = input.word();
    const fuzz::Stream stream = fuzz::openStream(input.rest());
    const clip::FileHeader file = clip::readFileHeader(stream.get());
    if (!clip::headerFits(file)) {
        return;
    }
    require(clip::tilesFor(file.height) <= clip::kMaxTiles && file.blockCount <= clip::kMaxBlocks,
            "a header that fits stays inside the program's buffers");
    const int blocks = std::min<int>(file.blockCount, kMostBlocks);
    for (int block = 0; block < blocks; ++block) {
        const int frames = clip::framesInBlock(block, file.blockCount, file.frameCount);
        require(frames >= 1 && frames <= clip::kFramesPerBlock, "a block has 1 to 16 frames");
        if (!readBlock(stream.get(), file, frames, room)) {
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
