#include "clip/record.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

struct RecordCase {
    const char* what;
    int type;
    std::vector<uint8_t> bytes;  // followed by bytes that do not matter
    int length;
};

std::vector<RecordCase> recordCases() {
    std::vector<uint8_t> shortRuns;
    for (int group = 0; group < 32; ++group) {
        shortRuns.insert(shortRuns.end(), {0, 1, 2, 3, 4});
    }
    return {
        {"raw", 0, std::vector<uint8_t>(128, 7), 128},
        {"palette", 1, std::vector<uint8_t>(64, 7), 64},
        {"four runs, two cover the tile", 2, {0xFF, 0x83, 1, 2}, 4},
        {"four runs, three cover the tile", 2, {0xFF, 0xBD, 1, 2, 3}, 5},
        {"four runs, all four", 3, {0x00, 0x80, 1, 2, 3, 4}, 6},
        {"four runs in RGB565", 3, {0x00, 0x00, 1, 2, 3, 4, 5, 6, 7, 8}, 10},
        {"short runs, the longest record", 4, shortRuns, 160},
        {"short runs, last group cut",
         5,
         {0xFF, 1, 2, 0xFF, 1, 2, 0xFF, 1, 2, 0xFB, 1, 2, 0x03, 1},
         14},
        {"palette runs, two groups", 6, {0xFF, 1, 2, 0xFF, 3, 4}, 6},
        {"palette runs, third group cut", 7, {0xEE, 1, 2, 0xEE, 3, 4, 0x3F, 5}, 8},
        {"two colours, palette", 8, {0xC5, 1, 2}, 3},
        {"two colours, one of each", 8, {0x45, 1, 2, 3}, 4},
        {"two colours, RGB565", 9, {0x05, 1, 2, 3, 4}, 5},
        {"colour and one alpha byte", 18, {0xC5, 1, 2, 0x27}, 4},
        {"colour and alpha runs", 18, {0xC5, 1, 2, 0x00, 0xF1, 0xF2, 0xF3, 0xF4}, 8},
        {"alpha runs past the tile", 18, {0xC5, 1, 2, 0x00, 0xF1, 0xF2, 0xF3, 0xE4, 0xF5}, 9},
        {"alpha byte that only skipping takes for one", 18, {0xC5, 1, 2, 0x87}, 4},
    };
}

TEST(Records, EveryForm_HasItsLength) {
    for (const RecordCase& each : recordCases()) {
        std::vector<uint8_t> bytes = each.bytes;
        bytes.resize(clip::kMaxRecordBytes, 0x99);
        EXPECT_EQ(clip::recordLength(bytes.data(), each.type), static_cast<size_t>(each.length))
            << each.what;
    }
}

struct SeenRun {
    std::ptrdiff_t control;
    int length;
    std::ptrdiff_t colour;  // -1: none
    bool indexed;

    bool operator==(const SeenRun&) const = default;
};

template <clip::RecordForm form>
std::vector<SeenRun> runsOf(int colourType, std::vector<uint8_t> bytes) {
    bytes.resize(clip::kMaxRecordBytes);
    std::vector<SeenRun> runs;
    clip::walkColours<form>(bytes.data(), colourType, [&](const clip::Run& run) {
        runs.push_back({run.control - bytes.data(), run.length,
                        run.colour == nullptr ? -1 : run.colour - bytes.data(), run.indexed});
    });
    return runs;
}

// Header fields 9, 19 and 29: 10, 20 and 30 pixels, 4 are left.
TEST(Walk, FourRuns_OfBothForms) {
    const unsigned header = 0x8000 | 9 | 19 << 5 | 29 << 10;
    const std::vector<SeenRun> expected = {
        {0, 10, 2, true}, {0, 20, 3, true}, {0, 30, 4, true}, {0, 4, 5, true}};
    const auto low = static_cast<uint8_t>(header & 255);
    const auto high = static_cast<uint8_t>(header >> 8);
    EXPECT_EQ(runsOf<clip::RecordForm::kFile>(2, {low, high}), expected);
    EXPECT_EQ(runsOf<clip::RecordForm::kStored>(3, {high, low}), expected);
}

// 32 + 32 pixels: no colour for the third of 1, and nothing is left for the fourth.
TEST(Walk, TwoOfFourRuns_HaveColoursWhenTheyCoverTheTile) {
    EXPECT_EQ(runsOf<clip::RecordForm::kFile>(2, {0xFF, 0x03}),
              (std::vector<SeenRun>{
                  {0, 32, 2, false}, {0, 32, 4, false}, {0, 1, -1, false}, {0, -1, -1, false}}));
}

TEST(Walk, Groups_GiveTheirControlByteTwice) {
    const std::vector<SeenRun> runs = runsOf<clip::RecordForm::kFile>(4, {0xFD, 9, 9, 9, 0x06, 5});
    EXPECT_EQ(runs[0], (SeenRun{0, 8, 1, false}));
    EXPECT_EQ(runs[1], (SeenRun{0, 8, 3, true}));
    EXPECT_EQ(runs[2], (SeenRun{4, 1, 5, true}));
}

TEST(Walk, Levels_ComeWithThePixelsBefore) {
    const uint8_t runs[] = {0xF1, 0xF2, 0x03, 0xFE, 0xF5};
    std::vector<int> covered;
    const uint8_t* end =
        clip::walkLevels(runs, [&](const uint8_t*, int before) { covered.push_back(before); });
    EXPECT_EQ(end, std::end(runs));
    EXPECT_EQ(covered, (std::vector<int>{0, 16, 32, 33, 49}));
}

// The room is exact: sanitizers see one byte more.
TEST(Records, RandomBytes_NeverPassTheLongestRecord) {
    std::mt19937 random(99);
    for (int round = 0; round < 4000; ++round) {
        std::vector<uint8_t> bytes(clip::kMaxRecordBytes);
        for (uint8_t& byte : bytes) {
            byte = static_cast<uint8_t>(random() % (round % 2 == 0 ? 256u : 8u));
        }
        for (int type = 0; type < clip::kMaxTypeSlots; ++type) {
            const size_t length = clip::recordLength(bytes.data(), type);
            ASSERT_GT(length, 0u);
            ASSERT_LE(length, bytes.size());
        }
    }
}

}  // namespace
