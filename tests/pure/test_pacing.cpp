#include "core/pacing.h"

#include <gtest/gtest.h>

namespace {

TEST(Pacing, Interval_ThousandByRateAndOne) {
    EXPECT_EQ(frameInterval(25), 38);  // 1000 / 26 = 38.46
    EXPECT_EQ(frameInterval(40), 24);  // 1000 / 41 = 24.39
    EXPECT_EQ(frameInterval(10), 90);  // 1000 / 11 = 90.9
    EXPECT_EQ(frameInterval(0), 1000);
}

TEST(Pacing, Due_OnlyOncePastTheInterval) {
    EXPECT_FALSE(frameDue(0, 0, 38));
    EXPECT_FALSE(frameDue(38, 0, 38));
    EXPECT_TRUE(frameDue(39, 0, 38));
    EXPECT_FALSE(frameDue(1038, 1000, 38));
    EXPECT_TRUE(frameDue(1039, 1000, 38));
}

// A clock that was set back: at once, and from there on at the same pace.
TEST(Pacing, TimeBeforeTheLastFrame_Due) {
    EXPECT_TRUE(frameDue(999, 1000, 38));
    EXPECT_TRUE(frameDue(-19000, 1000, 38));
    EXPECT_FALSE(frameDue(1000, 1000, 38));
    EXPECT_FALSE(frameDue(-18962, -19000, 38));
    EXPECT_TRUE(frameDue(-18961, -19000, 38));
}

TEST(Pacing, LeftToWait_UpToTheFirstMillisecondThatIsDue) {
    EXPECT_EQ(untilFrame(1000, 1000, 38), 39);
    EXPECT_EQ(untilFrame(1037, 1000, 38), 2);
    EXPECT_EQ(untilFrame(1038, 1000, 38), 1);
    EXPECT_EQ(untilFrame(-19000, -19000, 38), 39);
}

TEST(Pacing, Rate_WholeFramesOfASecond) {
    EXPECT_EQ(frameRate(1), 1000);
    EXPECT_EQ(frameRate(39), 25);  // 25.6
    EXPECT_EQ(frameRate(40), 25);
    EXPECT_EQ(frameRate(41), 24);
    EXPECT_EQ(frameRate(1001), 0);
}

}  // namespace
