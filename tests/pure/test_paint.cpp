#include "clip/paint.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace {

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
