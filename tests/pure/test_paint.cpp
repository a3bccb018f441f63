#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "clip/paint.h"

namespace {

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

TEST(FillTile, OnlyTheTile_Changes) {
    std::vector<uint16_t> frame(9 * kFrameWidth, 5);
    clip::fillTile(frame.data() + 8, 9);
    EXPECT_EQ(frame[7], 5);
    EXPECT_EQ(frame[8], 9);
    EXPECT_EQ(frame[15], 9);
    EXPECT_EQ(frame[16], 5);
    EXPECT_EQ(frame[7 * kFrameWidth + 15], 9);
    EXPECT_EQ(frame[8 * kFrameWidth + 8], 5);
}

TEST(TileAlpha, Levels_StandRowByRow) {
    std::array<uint8_t, 64> levels{};
    for (uint8_t i = 0; i < 64; ++i) {
        levels[i] = static_cast<uint8_t>(i % 16);
    }
    std::vector<uint8_t> plane(8 * kFrameWidth, 99);
    clip::copyTileAlpha(plane.data(), levels.data());
    EXPECT_EQ(plane[7], 7);
    EXPECT_EQ(plane[8], 99);
    EXPECT_EQ(plane[kFrameWidth], 8);
    clip::fillTileAlpha(plane.data(), 15);
    EXPECT_EQ(plane[7 * kFrameWidth + 7], 15);
    EXPECT_EQ(plane[8], 99);
}

}  // namespace
