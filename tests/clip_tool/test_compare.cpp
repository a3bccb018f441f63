// PSNR, SSIM, and the frames that are compared.
#include <gtest/gtest.h>

#include <cmath>

#include "clip_tool/media.h"
#include "clip_tool/pictures.h"
#include "support/folder.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/jobs/feed.h"
#include "tools/clip/reports/compare.h"

namespace {

using Bytes = std::vector<uint8_t>;

Bytes grey(uint8_t level, uint8_t alpha = 255, size_t pixels = 16 * 16) {
    Bytes rgba(pixels * 4, level);
    for (size_t i = 3; i < rgba.size(); i += 4) {
        rgba[i] = alpha;
    }
    return rgba;
}

TEST(Compare, ColourError_IsTheMeanOverThreeChannels) {
    EXPECT_DOUBLE_EQ(maker::colourError(grey(10), grey(10, 0)), 0);
    EXPECT_DOUBLE_EQ(maker::colourError(grey(10), grey(15)), 25);
    Bytes one = grey(0, 255, 4);
    one[5] = 6;  // green of one pixel in four: 36 / 12
    EXPECT_DOUBLE_EQ(maker::colourError(one, grey(0, 255, 4)), 3);
    EXPECT_DOUBLE_EQ(maker::alphaError(grey(1, 10), grey(9, 13)), 9);
}

// 10 log10(255^2 / 25)
TEST(Compare, Psnr_IsInDecibels) {
    EXPECT_NEAR(maker::psnrOf(25), 34.1514, 1e-4);
    EXPECT_NEAR(maker::psnrOf(65025), 0, 1e-12);
    EXPECT_TRUE(std::isinf(maker::psnrOf(0)));
}

// Without any structure only the means count: (2 x 100 x 110 + c) / (100^2 + 110^2 + c), c
// = 6.5025.
TEST(Compare, Ssim_OfFlatPicturesComparesMeans) {
    EXPECT_DOUBLE_EQ(maker::ssim(grey(77), grey(77), 16), 1);
    EXPECT_NEAR(maker::ssim(grey(100), grey(110), 16), 22006.5025 / 22106.5025, 1e-12);
}

// Half of each window is 0, half 200, the other picture the other way round: means and spreads are
// equal, covariance is -100^2. (2 x 100^2 + c)(-2 x 100^2 + d) / ((2 x 100^2 + c)(2 x 100^2 + d)),
// d = 58.5225.
TEST(Compare, Ssim_OfOppositesIsNegative) {
    Bytes a = grey(0);
    Bytes b = grey(200);
    for (size_t i = 0; i < 256; i += 2) {
        std::fill_n(a.begin() + static_cast<ptrdiff_t>(i) * 4, 3, uint8_t{200});
        std::fill_n(b.begin() + static_cast<ptrdiff_t>(i) * 4, 3, uint8_t{0});
    }
    EXPECT_NEAR(maker::ssim(a, b, 16), (-20000 + 58.5225) / (20000 + 58.5225), 1e-9);
}

TEST(Comparison, Totals_AreMeansOfErrors) {
    maker::Comparison comparison;
    comparison.frames = {{10, 4, 0.5}, {40, 0, 0.7}, {40, 2, 0.9}};
    EXPECT_NEAR(comparison.psnr(), maker::psnrOf(30), 1e-12);
    EXPECT_NEAR(comparison.alphaPsnr(), maker::psnrOf(2), 1e-12);
    EXPECT_NEAR(comparison.meanSsim(), 0.7, 1e-12);
    EXPECT_EQ(comparison.worstFrame(), 1);
}

class Feeds : public testing::Test {
protected:
    TemporaryFolder folder_;
};

TEST_F(Feeds, Clip_GivesItsFramesAndHidesColoursThatNobodySees) {
    maker::Frame frame = pictures::flat(16, 0xFFFF, true);
    frame.alpha[1] = 7;
    maker::writeWholeFile("a.m19", pictures::encode({frame, pictures::flat(16, 0, true)}));
    maker::Feed feed = maker::openFeed("a.m19", {}, false);
    EXPECT_EQ(feed.height, 16);
    EXPECT_TRUE(feed.alpha);
    Bytes rgba;
    ASSERT_TRUE(feed.next(rgba));
    EXPECT_EQ(Bytes(rgba.begin(), rgba.begin() + 8),
              (Bytes{255, 255, 255, 255, 255, 255, 255, 119}));
    EXPECT_TRUE(feed.next(rgba));
    EXPECT_FALSE(feed.next(rgba));
}

// One picture of red 100, green 101, blue 102. On stage red is 12 of 31 (99), green 25 of 63 (101),
// blue 12 of 31 (99).
TEST_F(Feeds, Video_IsRoundedForTheStageAlone) {
    media::Recipe recipe;
    recipe.path = "a.mkv";
    recipe.fill = [](int, AVFrame& picture) { media::fillBytes(picture, 102, 101, 100, 0); };
    media::write(recipe);
    Bytes rgba;
    ASSERT_TRUE(maker::openFeed("a.mkv", {}, false).next(rgba));
    EXPECT_EQ(Bytes(rgba.begin(), rgba.begin() + 4), (Bytes{100, 101, 102, 255}));
    ASSERT_TRUE(maker::openFeed("a.mkv", {}, true).next(rgba));
    EXPECT_EQ(Bytes(rgba.begin(), rgba.begin() + 4), (Bytes{99, 101, 99, 255}));
}

TEST_F(Feeds, WhatCannotBeRead_IsThrown) {
    EXPECT_THROW(maker::openFeed("no.m19", {}, false), maker::ToolError);
    EXPECT_THROW(maker::openFeed("no.mp4", {}, true), maker::ToolError);
}

}  // namespace
