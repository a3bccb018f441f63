// The clips that have one fault each.
#include "clip/validate.h"
#include "tools/clip/jobs/conformance_cases.h"
#include "tools/clip/jobs/conformance_parts.h"

namespace maker::conformance {

namespace {

enum class Section { kHeader, kRuns, kMap, kCodes, kRecords };

// Of 16 frames and of one. Every section that a block can have is there.
Bytes twoBlocks() {
    std::vector<Block> blocks{Block(clip::kFramesPerBlock), Block(1)};
    for (Block& block : blocks) {
        for (int type = 0; type < clip::kMaxTypeSlots; ++type) {
            const Bytes record = sample(type % clip::kColourTypes);
            block.addShown(type,
                           type < clip::kColourTypes ? record : joined(record, sampleLevels()));
        }
        for (int frame = 1; frame < block.frames(); ++frame) {
            block.set(frame, 3 * frame, colour(frame), clip::CODE_FLAT);
        }
    }
    return clipOf(blocks, 1);
}

// Where a section of twoBlocks() begins, and how long it is.
std::pair<size_t, size_t> place(const Bytes& bytes, size_t block, Section section) {
    std::vector<clip::BlockLayout> layouts;
    clip::validate(bytes, &layouts);
    const clip::BlockLayout& layout = layouts.at(block);
    const size_t lengths[] = {layout.headerBytes, layout.runBytes, layout.mapBytes,
                              layout.codeBytes, layout.recordBytes};
    size_t at = layout.offset;
    for (size_t i = 0; i < static_cast<size_t>(section); ++i) {
        at += lengths[i];
    }
    return {at, lengths[static_cast<size_t>(section)]};
}

template <size_t block, Section section>
Bytes cut() {
    const Bytes bytes = twoBlocks();
    const auto [at, length] = place(bytes, block, section);
    return withoutEnd(bytes, at + length / 2);
}

Bytes secondGone() {
    const Bytes bytes = twoBlocks();
    return withoutEnd(bytes, place(bytes, 1, Section::kHeader).first);
}

template <size_t length>
Bytes firstBytes() {
    return withoutEnd(plainClip(), length);
}

template <size_t at, uint8_t value>
Bytes plainWith() {
    return withByte(plainClip(), at, value);
}

template <uint8_t value>
Bytes alphaWith() {
    return withByte(twoBlocks(), kAlphaAt, value);
}

// All blocks, lines and frames are there; the fault is their number.

Bytes oneFrameMore() {
    std::vector<Block> blocks(clip::kMaxBlocks, Block(clip::kFramesPerBlock));
    blocks.emplace_back(1);
    return clipOf(blocks);
}

Bytes lines368() {
    constexpr int kLines = kFrameHeight + clip::kTileSize;
    return clipOf(Block(2, kLines), 0, kLines);
}

Bytes shortRecordRoom() {
    return withWord(plainClip(), kRecordRoomAt, 1);
}

Bytes shortMapRoom() {
    return withWord(plainClip(), kMapRoomAt, clip::kTilesAcross / 2 - 1);
}

template <size_t at>
Bytes hugeRoom() {
    return withWord(withWord(plainClip(), at, 0xFFFF), at + 2, 0xFFFF);
}

// The record of plainClip() has number 0.
Bytes recordNumber() {
    Block block(2);
    block.addShown(2, sample(2));
    block.show(1, 1);
    return clipOf(block);
}

Bytes noRecords() {
    Block block(1);
    block.show(0, 6);
    return clipOf(block);
}

// The change runs of plainClip() are one byte: 80 tiles stay.
Bytes runPastTheEnd() {
    const Bytes bytes = plainClip();
    return withByte(bytes, clip::kHeaderBytes + clip::blockHeaderBytes(0), clip::kTilesAcross);
}

Bytes oneRecord(int type, const Bytes& record) {
    Block block(1);
    block.addShown(type, record);
    return clipOf(block, type < clip::kColourTypes ? 0 : 1);
}

// A, B and C of 32, 31 and 2 pixels.
Bytes fourRunsOver() {
    return oneRecord(2, withWord(runsOf(2, {32, 31, 1}, kBeside), 0, 31 | 30 << 5 | 1 << 10));
}

Bytes shortRunsOver() {
    return oneRecord(4, Bytes{0xFF, 1, 2, 0xFF, 3, 4, 0xFF, 5, 6, 0xFB, 7, 8, 0xE3, 9, 10});
}

Bytes paletteRunsOver() {
    return oneRecord(6, Bytes{0xFF, 1, 2, 0xFE, 3, 4, 0x1F, 5});
}

Bytes split63() {
    return oneRecord(8, Bytes{0xC0 | 63, 1, 2});
}

Bytes levelsOver() {
    return oneRecord(18,
                     joined(sample(8), levels(0, {{16, 1}, {16, 2}, {16, 3}, {15, 4}, {2, 5}})));
}

template <uint8_t first>
Bytes levelByte() {
    return oneRecord(18, joined(sample(8), Bytes{first}));
}

constexpr Case kFaults[] = {
    {"fault-empty", "An empty file.", Expected::REFUSED, firstBytes<0>},
    {"fault-version-18", "Version 18.", Expected::REFUSED, plainWith<kVersionAt, 18>},
    {"fault-version-20", "Version 20.", Expected::REFUSED, plainWith<kVersionAt, 20>},
    {"fault-cut-file-header", "Ends inside the file header.", Expected::REFUSED, firstBytes<7>},
    {"fault-no-block", "Ends behind the file header.", Expected::REFUSED,
     firstBytes<clip::kHeaderBytes>},
    {"fault-lines-0", "No lines.", Expected::REFUSED, plainWith<kHeightAt, 0>},
    {"fault-lines-12", "12 lines, which is no multiple of 8.", Expected::BROKEN,
     plainWith<kHeightAt, 12>},
    {"fault-lines-368", "368 lines, all there.", Expected::REFUSED, lines368},
    {"fault-alpha-2", "Alpha 2.", Expected::REFUSED, alphaWith<2>},
    {"fault-alpha-255", "Alpha 255.", Expected::REFUSED, alphaWith<255>},
    {"fault-frames-0", "No frames.", Expected::REFUSED, plainWith<kFramesAt, 0>},
    {"fault-frames-257", "257 frames in 17 blocks, all there.", Expected::REFUSED, oneFrameMore},
    {"fault-blocks-0", "No blocks for 2 frames.", Expected::REFUSED, plainWith<kBlocksAt, 0>},
    {"fault-blocks-more", "Two blocks for 2 frames.", Expected::REFUSED, plainWith<kBlocksAt, 2>},
    {"fault-blocks-fewer", "One block for 17 frames.", Expected::REFUSED, plainWith<kFramesAt, 17>},
    {"fault-record-room", "Room for 4 bytes of records; there are 6.", Expected::REFUSED,
     shortRecordRoom},
    {"fault-map-room", "Room for 78 map entries; there are 80.", Expected::REFUSED, shortMapRoom},
    {"fault-record-room-huge", "Room for 16 GB of records: reserve no memory for it.",
     Expected::BROKEN, hugeRoom<kRecordRoomAt>},
    {"fault-map-room-huge", "Room for 16 GB of map entries: reserve no memory for it.",
     Expected::BROKEN, hugeRoom<kMapRoomAt>},
    {"fault-counts-over", "The type counts sum to one more than the record count.",
     Expected::BROKEN, plainWith<kTypeCountsAt + 2 * 9, 1>},
    {"fault-counts-under", "The type counts sum to one less than the record count.",
     Expected::BROKEN, plainWith<kTypeCountsAt + 2 * 2, 0>},
    {"fault-change-run", "A change run passes the last tile by one.", Expected::BROKEN,
     runPastTheEnd},
    {"fault-record-number", "A tile names record 1 of a block with one record.", Expected::BROKEN,
     recordNumber},
    {"fault-no-records", "A tile names record 0 of a block without records.", Expected::BROKEN,
     noRecords},
    {"fault-four-runs", "The runs A, B and C of a record of type 2 cover 65 pixels.",
     Expected::BROKEN, fourRunsOver},
    {"fault-short-runs", "The last run of a record of type 4 passes the 64th pixel by one.",
     Expected::BROKEN, shortRunsOver},
    {"fault-palette-runs", "The last run of a record of type 6 passes the 64th pixel by one.",
     Expected::BROKEN, paletteRunsOver},
    {"fault-two-colours", "The split of a record of type 8 leaves its second colour no pixel.",
     Expected::BROKEN, split63},
    {"fault-alpha-runs", "The last run of an alpha part passes the 64th pixel by one.",
     Expected::BROKEN, levelsOver},
    {"fault-alpha-byte-40", "An alpha part begins with 0x40.", Expected::BROKEN, levelByte<0x40>},
    {"fault-alpha-byte-3f", "An alpha part begins with 0x3F, of which bit 4 is set.",
     Expected::BROKEN, levelByte<0x3F>},
    {"fault-alpha-byte-87", "An alpha part begins with 0x87.", Expected::BROKEN, levelByte<0x87>},
    {"fault-cut-block-header", "Ends inside the first block's header.", Expected::REFUSED,
     cut<0, Section::kHeader>},
    {"fault-cut-runs", "Ends inside the first block's change runs.", Expected::REFUSED,
     cut<0, Section::kRuns>},
    {"fault-cut-map", "Ends inside the first block's map entries.", Expected::REFUSED,
     cut<0, Section::kMap>},
    {"fault-cut-codes", "Ends inside the first block's tile codes.", Expected::REFUSED,
     cut<0, Section::kCodes>},
    {"fault-cut-records", "Ends inside the first block's tile records.", Expected::REFUSED,
     cut<0, Section::kRecords>},
    {"fault-second-block-gone", "Ends behind the first of two blocks.", Expected::REFUSED,
     secondGone},
    {"fault-cut-second-header", "Ends inside the second block's header.", Expected::REFUSED,
     cut<1, Section::kHeader>},
    {"fault-cut-second-map", "Ends inside the second block's map entries.", Expected::REFUSED,
     cut<1, Section::kMap>},
    {"fault-cut-second-records", "Ends inside the second block's tile records.", Expected::REFUSED,
     cut<1, Section::kRecords>},
};

}  // namespace

Chapter faultCases() {
    return {"Faults", kFaults};
}

}  // namespace maker::conformance
