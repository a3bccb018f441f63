#include "px/introfade.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

uint16_t brightened(uint16_t pixel, int step) {
    px::brightenLit(&pixel, 1, step);
    return pixel;
}

TEST(IntroFade, Black_StaysBlack) {
    for (int step = -20; step <= 29; ++step) {
        EXPECT_EQ(brightened(0x0000, step), 0x0000) << step;
    }
}

TEST(IntroFade, StepZero_LeavesEveryPixel) {
    for (int pixel = 0; pixel <= 0xFFFF; ++pixel) {
        ASSERT_EQ(brightened(static_cast<uint16_t>(pixel), 0), pixel);
    }
}

// Red and blue by 2, green by 4 for each step.
TEST(IntroFade, StepOne_TwoFourTwo) {
    EXPECT_EQ(brightened(0x8410, 1), (18 << 11) | (36 << 5) | 18);  // 16, 32, 16
    EXPECT_EQ(brightened(0x0001, 1), (2 << 11) | (4 << 5) | 3);
    EXPECT_EQ(brightened(0x8410, -1), (14 << 11) | (28 << 5) | 14);
}

TEST(IntroFade, Channels_StopAtTheirEnds) {
    EXPECT_EQ(brightened(0x0001, 29), 0xFFFF);              // 58 and 116 are past 31 and 63
    EXPECT_EQ(brightened(0xFFFF, -20), 0x0000);             // 31 - 40, 63 - 80
    EXPECT_EQ(brightened(0xF800, 1), 0xF800 | 4 << 5 | 2);  // red is full
    EXPECT_EQ(brightened(0x07E0, -10), 23 << 5);            // 63 - 40
}

TEST(IntroFade, Count_PixelsPastItStay) {
    std::vector<uint16_t> row(4, 0x8410);
    px::brightenLit(row.data(), 3, 2);
    const auto lit = static_cast<uint16_t>((20 << 11) | (40 << 5) | 20);
    EXPECT_EQ(row, (std::vector<uint16_t>{lit, lit, lit, 0x8410}));
    px::brightenLit(row.data(), 0, 2);
    EXPECT_EQ(row[0], lit);
}

}  // namespace
