#include <gtest/gtest.h>

#include "tests/control/recording_hands.h"
#include "tools/control/stage/player.h"

namespace control {

namespace {

constexpr int kStepMs = 80;

class PlayerTest : public testing::Test {
protected:
    // What the hands did by then: advance() is called whenever it asks for it.
    std::string until(int ms) {
        while (next_ <= after(ms)) {
            next_ = player.advance(next_);
        }
        next_ = player.advance(after(ms));
        return hands.take();
    }

    RecordingHands hands;
    Player player{hands};

private:
    Time next_ = after(0);
};

const Gesture kRight = {setOf(Key::RIGHT)};
const Gesture kFlash = {setOf(Key::S)};
const Gesture kChord = {setOf(Key::Q) | setOf(Key::BACKSPACE)};

}  // namespace

TEST_F(PlayerTest, Press_BeginsAtOnceAndLastsAStep) {
    player.play(kRight);
    EXPECT_EQ(until(0), "+Right");
    EXPECT_EQ(until(kStepMs - 1), "");
    EXPECT_EQ(until(kStepMs), "-Right");
    EXPECT_TRUE(player.idle());
}

TEST_F(PlayerTest, SameKeyAgain_IsUpForAStepBetween) {
    player.play(kRight);
    player.play(kRight);
    EXPECT_EQ(until(0), "+Right");
    EXPECT_EQ(until(80), "-Right");
    EXPECT_EQ(until(159), "");
    EXPECT_EQ(until(160), "+Right");
    EXPECT_EQ(until(240), "-Right");
}

TEST_F(PlayerTest, SameKeyAfterItsPress_WaitsForTheGap) {
    player.play(kRight);
    EXPECT_EQ(until(100), "+Right -Right");
    player.play(kRight);
    EXPECT_EQ(until(159), "");
    EXPECT_EQ(until(160), "+Right");
}

TEST_F(PlayerTest, SameKeyDuringItsPress_IsUpForAStepBetween) {
    player.play(kRight);
    EXPECT_EQ(until(40), "+Right");
    player.play(kRight);
    EXPECT_EQ(until(159), "-Right");
    EXPECT_EQ(until(160), "+Right");
}

TEST_F(PlayerTest, OtherKey_FollowsWithoutAGap) {
    player.play(kRight);
    player.play(kFlash);
    EXPECT_EQ(until(0), "+Right");
    EXPECT_EQ(until(80), "-Right +S");
    EXPECT_EQ(until(160), "-S");
}

TEST_F(PlayerTest, OtherKeyWhileIdle_IsImmediate) {
    player.play(kRight);
    until(90);
    player.play(kFlash);
    EXPECT_EQ(until(91), "+S");
}

TEST_F(PlayerTest, Chord_GoesDownLetterFirst) {
    player.play(kChord);
    EXPECT_EQ(until(0), "+Q +Backspace");
    EXPECT_EQ(until(80), "-Q -Backspace");
}

TEST_F(PlayerTest, ArrowAfterALetter_WaitsForAGap) {
    player.play(kChord);
    player.play(kRight);
    EXPECT_EQ(until(80), "+Q +Backspace -Q -Backspace");
    EXPECT_EQ(until(159), "");
    EXPECT_EQ(until(160), "+Right");
}

TEST_F(PlayerTest, ArrowSoonAfterALetter_WaitsForTheRest) {
    player.play(kChord);
    until(120);
    player.play(kRight);
    EXPECT_EQ(until(159), "");
    EXPECT_EQ(until(160), "+Right");
}

TEST_F(PlayerTest, LetterStaysDown_UnderItsArrow) {
    player.play({setOf(Key::Y), setOf(Key::Y) | setOf(Key::LEFT)});
    EXPECT_EQ(until(0), "+Y");
    EXPECT_EQ(until(80), "+Left");
    EXPECT_EQ(until(160), "-Y -Left");
}

TEST_F(PlayerTest, TwentyASecond_AllArePlayedInOrder) {
    std::string wanted;
    std::string seen;
    for (int i = 0; i < 40; ++i) {
        player.play(i % 2 == 0 ? kRight : kFlash);
        seen += until(i * 50) + " ";
        wanted += i % 2 == 0 ? "+Right-Right" : "+S-S";
    }
    seen += until(40 * kStepMs);
    std::erase(seen, ' ');
    EXPECT_EQ(seen, wanted);
    EXPECT_TRUE(player.idle());
}

TEST_F(PlayerTest, TooMuch_IsRefusedWhole) {
    Gesture half;
    for (size_t i = 0; i < kMostSteps / 2; ++i) {
        half.push_back(i % 2 == 0 ? setOf(Key::S) : 0);
    }
    EXPECT_TRUE(player.play(half));
    EXPECT_FALSE(player.play(half));
    EXPECT_EQ(player.waiting(), kMostSteps / 2);
}

TEST_F(PlayerTest, Held_StaysBesideGestures) {
    player.hold(Key::A, true);
    EXPECT_EQ(until(0), "+A");
    player.play(kRight);
    EXPECT_EQ(until(1), "+Right");
    EXPECT_EQ(until(500), "-Right");
    player.hold(Key::A, false);
    EXPECT_EQ(until(501), "-A");
}

TEST_F(PlayerTest, ShortHold_LastsAStep) {
    player.hold(Key::SPACE, true);
    until(10);
    player.hold(Key::SPACE, false);
    EXPECT_EQ(until(79), "");
    EXPECT_EQ(until(80), "-Space");
}

TEST_F(PlayerTest, Scrub_PressesInTheStripAndFollows) {
    player.scrub(0.5, after(0));
    EXPECT_EQ(until(0), "at 320 215 +button");
    player.scrub(1, after(10));
    EXPECT_EQ(until(79), "");
    EXPECT_EQ(until(80), "at 639 215");
    player.scrub(0, after(90));
    EXPECT_EQ(until(90), "at 0 215");
    EXPECT_EQ(until(489), "");
    EXPECT_EQ(until(490), "-button");
    EXPECT_FALSE(player.scrubbing());
}

TEST_F(PlayerTest, ScrubOutOfRange_StaysInTheStrip) {
    player.scrub(7, after(0));
    EXPECT_EQ(until(0), "at 639 215 +button");
}

TEST_F(PlayerTest, GestureDuringScrub_EndsItFirst) {
    player.scrub(0.5, after(0));
    until(100);
    player.play(kRight);
    EXPECT_EQ(until(101), "-button +Right");
}

TEST_F(PlayerTest, ScrubDuringGesture_WaitsForIt) {
    player.play({setOf(Key::DOWN)});
    until(0);
    player.scrub(0.5, after(0));
    EXPECT_EQ(until(79), "");
    EXPECT_EQ(until(80), "-Down at 320 215 +button");
}

TEST_F(PlayerTest, EndScrub_LetsGoAfterAStep) {
    player.scrub(0.5, after(0));
    until(0);
    player.endScrub();
    EXPECT_EQ(until(79), "");
    EXPECT_EQ(until(80), "-button");
}

TEST_F(PlayerTest, Stop_LetsGoOfEverything) {
    player.hold(Key::A, true);
    player.scrub(0.5, after(0));
    until(0);
    player.stop();
    EXPECT_EQ(hands.take(), "-A -button");
    player.play(kRight);
    player.play(kRight);
    until(300);
    player.play(kChord);
    until(320);
    hands.take();
    player.stop();
    EXPECT_EQ(hands.take(), "-Q -Backspace");
    EXPECT_FALSE(hands.anyDown());
    EXPECT_EQ(until(2000), "");
}

}  // namespace control
