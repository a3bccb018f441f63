#include "common/rgb565.h"

#include <gtest/gtest.h>

namespace {

TEST(Rgb565, FromRgb_DropsTheLowBits) {
    EXPECT_EQ(px::fromRgb(0x00FFFFFF), 0xFFFF);
    EXPECT_EQ(px::fromRgb(0x00FFB000), 0xFD80);
    EXPECT_EQ(px::fromRgb(0x00FE00C3), 0xF818);
    EXPECT_EQ(px::fromRgb(0x0059B1FF), 0x5D9F);  // 0x59 >> 3 = 11, 0xB1 >> 2 = 44, 31
    EXPECT_EQ(px::fromRgb(0x00070307), 0x0000);
    EXPECT_EQ(px::fromRgb(0x00080408), 0x0821);
}

TEST(Rgb565, PackAndFields_EveryPixelComesBack) {
    for (int pixel = 0; pixel <= 0xFFFF; ++pixel) {
        const auto p = static_cast<uint16_t>(pixel);
        ASSERT_EQ(px::pack(px::redOf(p), px::greenOf(p), px::blueOf(p)), p);
    }
    EXPECT_EQ(px::redOf(0xF800), 31);
    EXPECT_EQ(px::greenOf(0x07E0), 63);
    EXPECT_EQ(px::blueOf(0x001F), 31);
}

// The ends, and the top bit of each channel alone: 10000 gives 10000100, 100000 gives 10000010.
TEST(Rgb565, OutOf255_RepeatsTheTopBitsBelow) {
    EXPECT_EQ(px::red8Of(0x07FF), 0);
    EXPECT_EQ(px::red8Of(0xF800), 255);
    EXPECT_EQ(px::red8Of(0x8000), 132);
    EXPECT_EQ(px::green8Of(0xF81F), 0);
    EXPECT_EQ(px::green8Of(0x07E0), 255);
    EXPECT_EQ(px::green8Of(0x0400), 130);
    EXPECT_EQ(px::blue8Of(0xFFE0), 0);
    EXPECT_EQ(px::blue8Of(0x001F), 255);
    EXPECT_EQ(px::blue8Of(0x0010), 132);
}

}  // namespace
