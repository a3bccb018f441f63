#include "clip/plain_tile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

namespace {

using clip::TileRuns;

std::vector<uint16_t> testPalette() {
    std::vector<uint16_t> palette(clip::kPaletteEntries);
    for (size_t i = 0; i < palette.size(); ++i) {
        palette[i] = static_cast<uint16_t>(0x4000 + i);
    }
    return palette;
}

// The record in a buffer of the room that the decoders are promised.
std::vector<uint8_t> padded(std::vector<uint8_t> record) {
    record.resize(clip::kMaxRecordBytes, 0);
    return record;
}

struct Decoded {
    TileRuns runs;
    size_t length;
};

Decoded decode(int type, const std::vector<uint8_t>& record) {
    Decoded result{};
    const std::vector<uint16_t> palette = testPalette();
    result.length =
        clip::decodeColours(padded(record).data(), type, palette.data(), nullptr, result.runs);
    return result;
}

// Lengths A, B, C = 10, 20, 30: header fields 9, 19, 29, high byte first.
constexpr int kFourRunsHeader = 9 + (19 << 5) + (29 << 10);

TEST(FourRuns, PaletteColours_AreResolved) {
    const int header = kFourRunsHeader | 0x8000;
    const Decoded tile = decode(
        2, {static_cast<uint8_t>(header >> 8), static_cast<uint8_t>(header & 255), 1, 2, 3, 4});
    EXPECT_EQ(tile.length, 6u);
    EXPECT_EQ(tile.runs.lengths[0], 9);
    EXPECT_EQ(tile.runs.lengths[1], 19);
    EXPECT_EQ(tile.runs.lengths[2], 29);
    EXPECT_EQ(tile.runs.colours[0], 0x4001);
    EXPECT_EQ(tile.runs.colours[3], 0x4004);
}

// 64 - 60 = 4 pixels are left; the stored length minus 1 is 61 - 57 = 4, which means 5 pixels.
TEST(FourRuns, quirk_last_of_four_runs_is_one_too_long) {
    const Decoded tile = decode(3, {kFourRunsHeader >> 8, kFourRunsHeader & 255, 0x11, 0x22, 0x33,
                                    0x44, 0x55, 0x66, 0x77, 0x88});
    EXPECT_EQ(tile.length, 10u);
    EXPECT_EQ(tile.runs.lengths[3], 4);
    EXPECT_EQ(tile.runs.colours[0], 0x2211);
    EXPECT_EQ(tile.runs.colours[3], 0x8877);
}

// 32 + 32 pixels: header fields 31 and 31.
TEST(FourRuns, TwoRunsThatCoverTheTile_HaveTwoColours) {
    const int header = 31 + (31 << 5);
    const Decoded tile = decode(
        2, {static_cast<uint8_t>(header >> 8), static_cast<uint8_t>(header & 255), 1, 2, 3, 4});
    EXPECT_EQ(tile.length, 6u);
    EXPECT_EQ(tile.runs.colours[0], 0x0201);
    EXPECT_EQ(tile.runs.colours[1], 0x0403);
}

// 32 + 16 + 16 pixels.
TEST(FourRuns, ThreeRunsThatCoverTheTile_HaveThreeColours) {
    const int header = 31 + (15 << 5) + (15 << 10);
    const Decoded tile = decode(2, {static_cast<uint8_t>((header >> 8) | 0x80),
                                    static_cast<uint8_t>(header & 255), 1, 2, 3});
    EXPECT_EQ(tile.length, 5u);
    EXPECT_EQ(tile.runs.colours[2], 0x4003);
}

TEST(TwoColours, SplitZero_GivesRunsOf1And63) {
    const Decoded tile = decode(8, {0xC0, 5, 6});
    EXPECT_EQ(tile.length, 3u);
    EXPECT_EQ(tile.runs.lengths[0] + 1, 1);
    EXPECT_EQ(tile.runs.lengths[1] + 1, 63);
    EXPECT_EQ(tile.runs.colours[0], 0x4005);
    EXPECT_EQ(tile.runs.colours[1], 0x4006);
}

TEST(TwoColours, Split62_GivesRunsOf63And1) {
    const Decoded tile = decode(9, {62, 0x34, 0x12, 0x78, 0x56});
    EXPECT_EQ(tile.length, 5u);
    EXPECT_EQ(tile.runs.lengths[0] + 1, 63);
    EXPECT_EQ(tile.runs.lengths[1] + 1, 1);
    EXPECT_EQ(tile.runs.colours[0], 0x1234);
    EXPECT_EQ(tile.runs.colours[1], 0x5678);
}

TEST(TwoColours, MixedWidths_FollowTheirBits) {
    const Decoded first = decode(8, {0x40 | 20, 7, 0x78, 0x56});
    EXPECT_EQ(first.length, 4u);
    EXPECT_EQ(first.runs.colours[0], 0x4007);
    EXPECT_EQ(first.runs.colours[1], 0x5678);
    const Decoded second = decode(8, {0x80 | 20, 0x78, 0x56, 7});
    EXPECT_EQ(second.runs.colours[0], 0x5678);
    EXPECT_EQ(second.runs.colours[1], 0x4007);
}

// Four groups of 8 + 8 pixels; the first group holds an index and an RGB565 colour.
TEST(ShortRuns, Groups_GiveTheirRunsInOrder) {
    const std::vector<uint8_t> record = {0xFE, 9, 0xCD, 0xAB, 0xFF, 1, 2, 0xFF, 1, 2, 0xFF, 1, 2};
    const Decoded tile = decode(4, record);
    EXPECT_EQ(tile.length, 13u);
    EXPECT_EQ(tile.runs.lengths[0], 7);
    EXPECT_EQ(tile.runs.lengths[1], 7);
    EXPECT_EQ(tile.runs.colours[0], 0x4009);
    EXPECT_EQ(tile.runs.colours[1], 0xABCD);
    EXPECT_EQ(tile.runs.colours[7], 0x4002);
}

// Four groups cover 63 pixels; the fifth's first run is the 64th, so the record ends with its
// colour.
TEST(ShortRuns, LastGroupEndingAfterItsFirstRun_HasOneColour) {
    const std::vector<uint8_t> record = {0xFF, 1, 2,   0xFF, 1, 2, 0xFF, 1, 2,  // 48 pixels
                                         0xFB, 3, 4,                            // 8 + 7
                                         0x17, 8, 0xEE};                        // the 64th pixel
    const Decoded tile = decode(5, record);
    EXPECT_EQ(tile.length, 14u);
    EXPECT_EQ(tile.runs.lengths[8], 0);
    EXPECT_EQ(tile.runs.colours[8], 0x4008);
}

TEST(PaletteRuns, TwoGroupsOf32Pixels_AreTheWholeRecord) {
    const Decoded tile = decode(6, {0xFF, 1, 2, 0xFF, 3, 4});
    EXPECT_EQ(tile.length, 6u);
    EXPECT_EQ(tile.runs.lengths[3], 15);
    EXPECT_EQ(tile.runs.colours[3], 0x4004);
}

// 60 pixels in two groups, then a run of 4: one index more.
TEST(PaletteRuns, ThirdGroupEndingAfterItsFirstRun_HasOneIndex) {
    const Decoded tile = decode(7, {0xEE, 1, 2, 0xEE, 3, 4, 0x3F, 5, 0xEE});
    EXPECT_EQ(tile.length, 8u);
    EXPECT_EQ(tile.runs.lengths[4], 3);
    EXPECT_EQ(tile.runs.colours[4], 0x4005);
}

TEST(DirectTiles, RawPixels_StandRowByRow) {
    std::vector<uint8_t> record(128);
    for (size_t i = 0; i < 64; ++i) {
        record[2 * i] = static_cast<uint8_t>(i);
        record[2 * i + 1] = 0x30;
    }
    std::vector<uint16_t> frame(8 * kFrameWidth, 0xEEEE);
    clip::TileRuns runs;
    EXPECT_EQ(clip::decodeColours(record.data(), 0, nullptr, frame.data(), runs), 128u);
    EXPECT_EQ(frame[0], 0x3000);
    EXPECT_EQ(frame[7], 0x3007);
    EXPECT_EQ(frame[8], 0xEEEE);
    EXPECT_EQ(frame[kFrameWidth], 0x3008);
    EXPECT_EQ(frame[7 * kFrameWidth + 7], 0x303F);
}

TEST(DirectTiles, PaletteIndices_StandRowByRow) {
    std::vector<uint8_t> record(64);
    for (size_t i = 0; i < 64; ++i) {
        record[i] = static_cast<uint8_t>(255 - i);
    }
    std::vector<uint16_t> frame(8 * kFrameWidth, 0xEEEE);
    clip::TileRuns runs;
    EXPECT_EQ(clip::decodeColours(record.data(), 1, testPalette().data(), frame.data(), runs), 64u);
    EXPECT_EQ(frame[0], 0x40FF);
    EXPECT_EQ(frame[kFrameWidth], 0x40FF - 8);
    EXPECT_EQ(frame[8], 0xEEEE);
}

std::vector<uint8_t> levels(const std::vector<uint8_t>& record) {
    std::vector<uint8_t> out(64, 0xEE);
    clip::decodeAlpha(padded(record).data(), out.data());
    return out;
}

TEST(Alpha, OneByteRecord_FillsTheTile) {
    EXPECT_EQ(levels({0x27}), std::vector<uint8_t>(64, 7));
}

TEST(Alpha, Runs_CoverTheTileInOrder) {
    const std::vector<uint8_t> tile = levels({0x00, 0xF3, 0xFF, 0xF0, 0xE5, 0x01});
    EXPECT_EQ(tile[15], 3);
    EXPECT_EQ(tile[16], 15);
    EXPECT_EQ(tile[47], 0);
    EXPECT_EQ(tile[62], 5);
    EXPECT_EQ(tile[63], 1);
}

TEST(Alpha, LevelsPastTheTile_AreDropped) {
    const std::vector<uint8_t> tile = levels({0x00, 0xF1, 0xF2, 0xF3, 0xE4, 0xF5});
    EXPECT_EQ(tile.size(), 64u);
    EXPECT_EQ(tile[63], 5);
}

// 0x87 is one byte for the loader; drawing looks at bit 5 alone and goes on to the bytes behind it.
TEST(Alpha, quirk_alpha_first_byte_read_two_ways) {
    EXPECT_EQ(levels({0x87, 0xF2, 0xF2, 0xF2, 0xF2}), std::vector<uint8_t>(64, 2));
}

using Tile = std::array<int, 64>;  // step at which each pixel is painted, row by row

// Runs of one pixel whose colours count up show the path.
Tile pathOf(int code, int columnOrder) {
    clip::TileRuns runs{};
    for (uint16_t i = 0; i < 64; ++i) {
        runs.lengths[i] = 0;
        runs.colours[i] = static_cast<uint16_t>(1000 + i);
    }
    std::vector<uint16_t> frame(8 * kFrameWidth, 0);
    clip::paintRuns(frame.data(), runs, code, columnOrder);
    Tile tile{};
    for (int row = 0; row < 8; ++row) {
        for (int column = 0; column < 8; ++column) {
            tile[static_cast<size_t>(row * 8 + column)] =
                frame[static_cast<size_t>(row * kFrameWidth + column)] - 1000;
        }
    }
    return tile;
}

// The step of pixel (row r, column c), written out for each walk.
template <typename Step>
Tile tileOf(Step step) {
    Tile tile{};
    for (int r = 0; r < 8; ++r) {
        for (int c = 0; c < 8; ++c) {
            tile[static_cast<size_t>(r * 8 + c)] = step(r, c);
        }
    }
    return tile;
}

TEST(Paths, Code1_IsTheRecordAsCoded) {
    EXPECT_EQ(pathOf(1, 0), tileOf([](int r, int c) { return r * 8 + c; }));
    EXPECT_EQ(pathOf(1, 1), tileOf([](int r, int c) { return c * 8 + r; }));
}

TEST(Paths, Code2_IsMirroredLeftToRight) {
    EXPECT_EQ(pathOf(2, 0), tileOf([](int r, int c) { return r * 8 + (7 - c); }));
    EXPECT_EQ(pathOf(2, 1), tileOf([](int r, int c) { return (7 - c) * 8 + r; }));
}

TEST(Paths, Code3_IsMirroredTopToBottom) {
    EXPECT_EQ(pathOf(3, 0), tileOf([](int r, int c) { return (7 - r) * 8 + c; }));
    EXPECT_EQ(pathOf(3, 1), tileOf([](int r, int c) { return c * 8 + (7 - r); }));
}

TEST(Paths, Code4_IsMirroredBothWays) {
    EXPECT_EQ(pathOf(4, 0), tileOf([](int r, int c) { return (7 - r) * 8 + (7 - c); }));
    EXPECT_EQ(pathOf(4, 1), tileOf([](int r, int c) { return (7 - c) * 8 + (7 - r); }));
}

TEST(Paths, Code5_WalksCode3WithRowsAndColumnsExchanged) {
    EXPECT_EQ(pathOf(5, 0), tileOf([](int r, int c) { return c * 8 + (7 - r); }));
    EXPECT_EQ(pathOf(5, 1), tileOf([](int r, int c) { return (7 - r) * 8 + c; }));
}

TEST(Paths, Code6_WalksCode4WithRowsAndColumnsExchanged) {
    EXPECT_EQ(pathOf(6, 0), tileOf([](int r, int c) { return (7 - c) * 8 + (7 - r); }));
    EXPECT_EQ(pathOf(6, 1), tileOf([](int r, int c) { return (7 - r) * 8 + (7 - c); }));
}

TEST(PaintRuns, RunPastTheTile_StopsAtTheLastPixel) {
    clip::TileRuns runs{};
    runs.lengths[0] = 59;
    runs.colours[0] = 1;
    runs.lengths[1] = 65535;
    runs.colours[1] = 2;
    std::vector<uint16_t> frame(8 * kFrameWidth, 0);
    clip::paintRuns(frame.data(), runs, 1, 0);
    EXPECT_EQ(frame[7 * kFrameWidth + 3], 1);
    EXPECT_EQ(frame[7 * kFrameWidth + 4], 2);
    EXPECT_EQ(frame[7 * kFrameWidth + 7], 2);
    EXPECT_EQ(frame[8], 0) << "the next tile";
}

// Two colours, 5 and 6 of the palette, 32 pixels each; 16 levels of each of 1 to 4.
constexpr uint8_t kTwoHalves[] = {0xC0 | 31, 5, 6, 0x00, 0xF1, 0xF2, 0xF3, 0xF4};

struct DrawnTile {
    std::vector<uint16_t> pixels = std::vector<uint16_t>(8 * kFrameWidth, 0xEEEE);
    std::vector<uint8_t> levels = std::vector<uint8_t>(8 * kFrameWidth, 99);

    DrawnTile(int type, int code, std::vector<uint8_t> record) {
        record.resize(clip::kMaxRecordBytes);
        clip::drawPlainTile(record.data(), type, code, testPalette().data(), pixels.data(),
                            levels.data());
    }
};

TEST(PlainTile, RunRecordWithAlpha_IsPaintedWithItsLevels) {
    const DrawnTile tile(18, 3, {std::begin(kTwoHalves), std::end(kTwoHalves)});
    EXPECT_EQ(tile.pixels[0], 0x4006) << "the bottom row is painted first";
    EXPECT_EQ(tile.pixels[7 * kFrameWidth], 0x4005);
    EXPECT_EQ(tile.levels[0], 1) << "levels are not mirrored";
    EXPECT_EQ(tile.levels[7 * kFrameWidth + 7], 4);
    EXPECT_EQ(tile.levels[8], 99);
}

TEST(PlainTile, WithoutAlphaRecord_LeavesTheLevels) {
    const DrawnTile tile(8, 1, {std::begin(kTwoHalves), std::end(kTwoHalves)});
    EXPECT_EQ(tile.pixels[0], 0x4005);
    EXPECT_EQ(tile.levels, std::vector<uint8_t>(8 * kFrameWidth, 99));
}

TEST(PlainTile, Empty_ShowsTypes0And1Alone) {
    const DrawnTile runs(18, 7, {std::begin(kTwoHalves), std::end(kTwoHalves)});
    EXPECT_EQ(runs.pixels, std::vector<uint16_t>(8 * kFrameWidth, 0xEEEE));
    const DrawnTile direct(11, 7, std::vector<uint8_t>(65, 0x22));
    EXPECT_EQ(direct.pixels[0], 0x4022);
    EXPECT_EQ(direct.levels, std::vector<uint8_t>(8 * kFrameWidth, 99));
}

// Whatever the bytes: the decoders stay in the promised room and the runs cover the tile.
TEST(TileDecoders, RandomBytes_StayInsideAndCoverTheTile) {
    std::mt19937 random(4242);
    const std::vector<uint16_t> palette = testPalette();
    for (int round = 0; round < 20000; ++round) {
        std::vector<uint8_t> record(clip::kMaxRecordBytes);  // exactly: sanitizers see one more
        for (uint8_t& byte : record) {
            byte = static_cast<uint8_t>(random() % (round % 2 == 0 ? 256u : 4u));
        }
        for (int type = 2; type < clip::kColourTypes; ++type) {
            TileRuns runs{};
            const size_t length =
                clip::decodeColours(record.data(), type, palette.data(), nullptr, runs);
            ASSERT_LE(length, size_t{clip::kMaxColourRecordBytes});
            int covered = 0;
            for (int i = 0; i < clip::kTilePixels && covered < clip::kTilePixels; ++i) {
                covered += runs.lengths[i] + 1;
            }
            ASSERT_GE(covered, clip::kTilePixels) << "type " << type << " round " << round;
            uint8_t alpha[64];
            clip::decodeAlpha(record.data() + length, alpha);
        }
    }
}

}  // namespace
