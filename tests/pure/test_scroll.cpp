#include "layout/scroll.h"

#include <gtest/gtest.h>

namespace {

ScrollBar used() {
    return {7, 9, 24, 1, 20};
}

TEST(Scroll, ResetWithFewRows_FullThumb) {
    for (const int count : {0, 1, 14}) {
        ScrollBar bar = used();
        resetScroll(bar, count);
        EXPECT_EQ(bar.pos, 0);
        EXPECT_EQ(bar.active, 0);
        EXPECT_EQ(bar.count, count);
        EXPECT_EQ(bar.maxPos, 0) << count;
        EXPECT_EQ(bar.thumb, 194) << count;
    }
}

TEST(Scroll, ResetAtTheLimitOf15Rows_NothingToScroll) {
    ScrollBar bar = used();
    resetScroll(bar, 15);
    EXPECT_EQ(bar.maxPos, 0);
    EXPECT_EQ(bar.thumb, 194);  // 194 / (15 - 14)
}

// 194 / (count - 14): 194 / 2 = 97, 194 / 3 = 64, 194 / 9 = 21, 194 / 10 = 19, raised to 20.
TEST(Scroll, ResetWithMoreRows_ThumbShrinksTo20) {
    const struct {
        int count, maxPos, thumb;
    } cases[] = {{16, 1, 97}, {17, 2, 64}, {23, 8, 21}, {24, 9, 20}, {50, 35, 20}, {100, 85, 20}};
    for (const auto& each : cases) {
        ScrollBar bar = used();
        resetScroll(bar, each.count);
        EXPECT_EQ(bar.maxPos, each.maxPos) << each.count;
        EXPECT_EQ(bar.thumb, each.thumb) << each.count;
        EXPECT_EQ(bar.pos, 0);
    }
}

TEST(Scroll, Resize_KeepsPositionAndGrip) {
    ScrollBar bar = {5, 9, 24, 1, 20};
    resizeScroll(bar, 30);
    EXPECT_EQ(bar.pos, 5);
    EXPECT_EQ(bar.active, 1);
    EXPECT_EQ(bar.count, 30);
    EXPECT_EQ(bar.maxPos, 15);
    EXPECT_EQ(bar.thumb, 20);
}

TEST(Scroll, ResizeToFewerRows_LowersThePosition) {
    ScrollBar bar = {9, 9, 24, 0, 20};
    resizeScroll(bar, 18);
    EXPECT_EQ(bar.pos, 3);
    EXPECT_EQ(bar.maxPos, 3);
    EXPECT_EQ(bar.thumb, 48);  // 194 / 4
    resizeScroll(bar, 3);
    EXPECT_EQ(bar.pos, 0);
    EXPECT_EQ(bar.maxPos, 0);
    EXPECT_EQ(bar.thumb, 194);
}

TEST(Scroll, SameCount_ResetAndResizeGiveTheSameThumb) {
    for (int count = 0; count <= 120; ++count) {
        ScrollBar reset = used();
        ScrollBar resized = used();
        resetScroll(reset, count);
        resizeScroll(resized, count);
        ASSERT_EQ(reset.thumb, resized.thumb) << count;
        ASSERT_EQ(reset.maxPos, resized.maxPos) << count;
        ASSERT_GE(reset.thumb, 20) << count;
        ASSERT_LE(reset.thumb, 194) << count;
    }
}

// The thumb of 16 rows is 97 high and travels 97 pixels: (16 - 15) x (y - 20) / 97.
TEST(Scroll, ThumbDragged_FollowsTheFormulaAndStaysInRange) {
    ScrollBar bar = {};
    resetScroll(bar, 16);
    scrollTo(bar, 116);
    EXPECT_EQ(bar.pos, 0);
    scrollTo(bar, 117);
    EXPECT_EQ(bar.pos, 1);
    for (const int y : {-5000, 0, 20}) {
        scrollTo(bar, y);
        EXPECT_EQ(bar.pos, 0) << y;
    }
    scrollTo(bar, 5000);
    EXPECT_EQ(bar.pos, 1);
    // 100 rows: thumb 20, 85 x 87 / 174 = 42.
    resetScroll(bar, 100);
    scrollTo(bar, 107);
    EXPECT_EQ(bar.pos, 42);
    resetScroll(bar, 15);
    scrollTo(bar, 200);
    EXPECT_EQ(bar.pos, 0);
}

TEST(Scroll, RowOutOfView_ComesIntoViewAtTheNearEdge) {
    ScrollBar bar = {};
    resetScroll(bar, 50);
    scrollIntoView(bar, 14);
    EXPECT_EQ(bar.pos, 0);
    scrollIntoView(bar, 15);
    EXPECT_EQ(bar.pos, 1);
    scrollIntoView(bar, 49);
    EXPECT_EQ(bar.pos, 35);
    scrollIntoView(bar, 34);
    EXPECT_EQ(bar.pos, 34);
    scrollIntoView(bar, -1);
    EXPECT_EQ(bar.pos, 0);
    scrollIntoView(bar, 500);
    EXPECT_EQ(bar.pos, 35);
}

TEST(Scroll, ByRows_StopsAtTheEnds) {
    ScrollBar bar = {};
    resetScroll(bar, 17);
    scrollBy(bar, -1);
    EXPECT_EQ(bar.pos, 0);
    scrollBy(bar, 1);
    EXPECT_EQ(bar.pos, 1);
    scrollBy(bar, 5);
    EXPECT_EQ(bar.pos, 2);
}

// 17 rows: thumb 64, maxPos 2; pos 1 is 1 x 130 / 2 = 65 pixels down.
TEST(Scroll, Thumb_StandsAtItsPartOfTheTrack) {
    ScrollBar bar = {};
    resetScroll(bar, 17);
    EXPECT_EQ(thumbTop(bar), 20);
    bar.pos = 1;
    EXPECT_EQ(thumbTop(bar), 85);
    bar.pos = 2;
    EXPECT_EQ(thumbTop(bar), 150);
    resetScroll(bar, 3);
    EXPECT_EQ(thumbTop(bar), 20);
}

}  // namespace
