#include "clip/block.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

void append(Bytes& bytes, std::initializer_list<uint8_t> more) {
    for (const uint8_t byte : more) {
        bytes.push_back(byte);
    }
}

// A block of 80 tiles with memory of its own.
struct TestBlock {
    TestBlock(int frames, const clip::BlockRoom& room, std::vector<uint16_t> counts)
        : map(room.mapEntries),
          runs(room.runBytes),
          codes(room.codeWords),
          records(room.guardedRecordBytes(), 0xEE),
          offsets(room.records),
          types(room.records),
          starts(counts.size()) {
        clip::startTypes(counts.data(), static_cast<int>(counts.size()), starts.data());
        block = {.frames = frames,
                 .tiles = 80,
                 .slots = static_cast<int>(counts.size()),
                 .room = room,
                 .typeStarts = starts.data(),
                 .map = map.data(),
                 .runs = runs.data(),
                 .codes = codes.data(),
                 .records = records.data(),
                 .recordOffsets = offsets.data(),
                 .recordTypes = types.data()};
    }

    std::vector<uint16_t> map;
    Bytes runs;
    std::vector<uint16_t> codes;
    Bytes records;
    std::vector<uint32_t> offsets;
    Bytes types;
    std::vector<uint32_t> starts;
    clip::Block block;
};

TEST(ChangeRuns, EveryFrame_IsCoveredAndChangesAreCounted) {
    // Two frames of 200 tiles: 128 changed + 72 kept, 200 kept in 100 + 100.
    const uint8_t bytes[] = {0xFF, 0x47, 0x63, 0x63, 0xEE};
    clip::Source source(bytes);
    uint8_t runs[8] = {};
    clip::ChangeRuns result;
    ASSERT_TRUE(clip::readChangeRuns(source, 2, 200, runs, sizeof runs, result));
    EXPECT_EQ(result.runBytes, 4u);
    EXPECT_EQ(result.changed, 128);
    EXPECT_EQ(runs[0], 0xFF);
    EXPECT_EQ(runs[4], 0) << "the next section's byte is not taken";
}

TEST(ChangeRuns, MoreThanTheRoom_IsRefused) {
    const uint8_t bytes[4] = {};
    clip::Source source(bytes);
    uint8_t runs[3] = {};
    clip::ChangeRuns result;
    EXPECT_FALSE(clip::readChangeRuns(source, 1, 4, runs, sizeof runs, result));
}

TEST(ChangeRuns, PastTheEndOfTheFile_CountAsRunsOfOneKeptTile) {
    clip::Source source(std::span<const uint8_t>{});
    uint8_t runs[80];
    clip::ChangeRuns result;
    ASSERT_TRUE(clip::readChangeRuns(source, 1, 80, runs, sizeof runs, result));
    EXPECT_EQ(result.runBytes, 80u);
    EXPECT_EQ(result.changed, 0);
}

TEST(ChangeRuns, WithoutABuffer_AreCountedAllTheSame) {
    const uint8_t bytes[] = {0xFF, 0x47};
    clip::Source source(bytes);
    clip::ChangeRuns result;
    ASSERT_TRUE(clip::readChangeRuns(source, 1, 200, nullptr, 2, result));
    EXPECT_EQ(result.runBytes, 2u);
    EXPECT_EQ(result.changed, 128);
}

// 3600 tiles and 16 frames: 16 x (3600 + 128) entries, 16 x 3600 run bytes, 3 records of at most
// 225 bytes.
TEST(BlockRoom, Room_IsWhatIsAnnouncedOrWhatCanBeNeeded) {
    const clip::BlockRoom most = clip::blockRoom(3, 0xFFFFFFFF, 0xFFFFFFFF, 16, 3600);
    EXPECT_EQ(most.mapEntries, 59648u);
    EXPECT_EQ(most.runBytes, 57600u);
    EXPECT_EQ(most.recordBytes, 675u);
    const clip::BlockRoom less = clip::blockRoom(3, 100, 1800, 16, 3600);
    EXPECT_EQ(less.mapEntries, 3600u);
    EXPECT_EQ(less.recordBytes, 400u);
}

TEST(TypeStarts, Starts_AreTheSumsOfTheCountsBefore) {
    const uint16_t counts[] = {2, 0, 65535, 7};
    uint32_t starts[4];
    clip::startTypes(counts, 4, starts);
    EXPECT_EQ(std::vector<uint32_t>(starts, starts + 4), (std::vector<uint32_t>{0, 2, 2, 65537}));
}

// Two frames; the second changes its last two tiles.
Bytes mapSections() {
    Bytes bytes = {77, 0x81};
    for (uint8_t entry = 0; entry < 82; ++entry) {
        append(bytes, {entry, 0x40});
    }
    for (uint8_t word = 0; word < 32; ++word) {
        append(bytes, {word, 0x12});
    }
    bytes.push_back(99);
    return bytes;
}

TEST(Maps, RunsEntriesAndCodes_AreTakenInOrder) {
    TestBlock test(2, {82, 160, 32, 0, 0}, std::vector<uint16_t>(10));
    const Bytes bytes = mapSections();
    clip::Source source(bytes);
    ASSERT_TRUE(clip::loadMaps(source, test.block));
    EXPECT_EQ(test.runs[0], 77);
    EXPECT_EQ(test.runs[1], 0x81);
    EXPECT_EQ(test.map[0], 0x4000);
    EXPECT_EQ(test.map[81], 0x4000 + 81);
    EXPECT_EQ(test.codes[0], 0x1200);
    EXPECT_EQ(test.codes[31], 0x1200 + 31);
    EXPECT_EQ(source.byte(), 99) << "and nothing of what follows";
}

TEST(Maps, MoreEntriesThanTheRoom_AreRefused) {
    TestBlock test(2, {81, 160, 32, 0, 0}, std::vector<uint16_t>(10));
    const Bytes bytes = mapSections();
    clip::Source source(bytes);
    EXPECT_FALSE(clip::loadMaps(source, test.block));
}

TEST(Maps, MoreRunsThanTheRoom_AreRefused) {
    TestBlock test(2, {82, 1, 32, 0, 0}, std::vector<uint16_t>(10));
    const Bytes bytes = mapSections();
    clip::Source source(bytes);
    EXPECT_FALSE(clip::loadMaps(source, test.block));
}

// One of type 1, 64 bytes; two of type 2 with two colours, 4 bytes; one of type 8, 3 bytes.
constexpr size_t kRecordBytes = 64 + 4 + 4 + 3;

Bytes recordSection() {
    Bytes bytes(64, 7);
    append(bytes, {0xFF, 0x83, 1, 2});
    append(bytes, {0xFF, 0x93, 3, 4});
    append(bytes, {0xC5, 5, 6, 99});
    return bytes;
}

std::vector<uint16_t> recordCounts() {
    return {0, 1, 2, 0, 0, 0, 0, 0, 1, 0};
}

TEST(BlockRecords, All_AreStoredOneAfterTheOther) {
    TestBlock test(1, {80, 80, 16, 4, kRecordBytes}, recordCounts());
    const Bytes bytes = recordSection();
    clip::Source source(bytes);
    ASSERT_EQ(clip::loadRecords(source, 100, test.block), clip::Records::kAll);
    EXPECT_EQ(test.offsets, (std::vector<uint32_t>{0, 64, 68, 72}));
    EXPECT_EQ(test.types, (Bytes{1, 2, 2, 8}));
    Bytes expected(64, 7);
    append(expected, {0x83, 0xFF, 1, 2});  // high byte first
    append(expected, {0x93, 0xFF, 3, 4});
    append(expected, {0xC5, 5, 6});
    expected.resize(expected.size() + clip::kMaxRecordBytes);  // zeros behind them
    EXPECT_EQ(test.records, expected);
    EXPECT_EQ(source.byte(), 99) << "and nothing of what follows";
}

TEST(BlockRecords, Budget_IsHowManyAStepTakes) {
    TestBlock test(1, {80, 80, 16, 4, kRecordBytes}, recordCounts());
    const Bytes bytes = recordSection();
    clip::Source source(bytes);
    EXPECT_EQ(clip::loadRecords(source, 0, test.block), clip::Records::kMore);
    EXPECT_EQ(test.block.recordsDone, 0);
    EXPECT_EQ(clip::loadRecords(source, 3, test.block), clip::Records::kMore);
    EXPECT_EQ(test.block.recordsDone, 3);
    EXPECT_EQ(test.block.recordsEnd, 72u);
    EXPECT_EQ(clip::loadRecords(source, 1, test.block), clip::Records::kAll);
    EXPECT_EQ(test.types, (Bytes{1, 2, 2, 8}));
}

TEST(BlockRecords, LongerThanTheRoom_AreRefusedUnwritten) {
    TestBlock test(1, {80, 80, 16, 4, kRecordBytes - 1}, recordCounts());
    const Bytes bytes = recordSection();
    clip::Source source(bytes);
    EXPECT_EQ(clip::loadRecords(source, 100, test.block), clip::Records::kRefused);
    EXPECT_EQ(test.block.recordsDone, 3);
    EXPECT_EQ(test.records[72], 0xEE);
}

TEST(BlockRecords, OfABlockWithoutAny_AreAllThereAtOnce) {
    TestBlock test(1, {80, 80, 16, 0, 0}, std::vector<uint16_t>(10));
    clip::Source source(std::span<const uint8_t>{});
    EXPECT_EQ(clip::loadRecords(source, 2000, test.block), clip::Records::kAll);
    EXPECT_EQ(test.records, Bytes(clip::kMaxRecordBytes));
}

}  // namespace
