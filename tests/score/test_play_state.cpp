#include "tools/play/play_state.h"

#include <gtest/gtest.h>

namespace {

using maker::advance;
using maker::PlayKey;
using maker::playKeyOf;
using maker::PlayState;
using maker::press;

TEST(PlayState, Frames_GoRoundBothWays) {
    PlayState state;
    advance(state, 3);
    advance(state, 3);
    EXPECT_EQ(state.frame, 2);
    advance(state, 3);
    EXPECT_EQ(state.frame, 0);
    press(state, PlayKey::REVERSE, 3);
    advance(state, 3);
    EXPECT_EQ(state.frame, 2);
}

TEST(PlayState, Step_HoldsAndFollowsTheDirection) {
    PlayState state;
    press(state, PlayKey::ON, 5);
    EXPECT_TRUE(state.held);
    EXPECT_EQ(state.frame, 1);
    advance(state, 5);
    EXPECT_EQ(state.frame, 1);
    press(state, PlayKey::BACK, 5);
    press(state, PlayKey::BACK, 5);
    EXPECT_EQ(state.frame, 4);
    press(state, PlayKey::REVERSE, 5);
    press(state, PlayKey::ON, 5);
    EXPECT_EQ(state.frame, 3);
    press(state, PlayKey::HOLD, 5);
    EXPECT_FALSE(state.held);
}

TEST(PlayState, SingleFrame_Stands) {
    PlayState state;
    advance(state, 1);
    press(state, PlayKey::BACK, 1);
    EXPECT_EQ(state.frame, 0);
}

TEST(PlayState, Facts_ComeAndGo) {
    PlayState state;
    press(state, PlayKey::FACTS, 1);
    EXPECT_TRUE(state.facts);
    press(state, PlayKey::FACTS, 1);
    EXPECT_FALSE(state.facts);
}

TEST(PlayState, Keys_AreSdls) {
    EXPECT_EQ(playKeyOf(27), PlayKey::LEAVE);
    EXPECT_EQ(playKeyOf('x'), PlayKey::LEAVE);
    EXPECT_EQ(playKeyOf(' '), PlayKey::HOLD);
    EXPECT_EQ(playKeyOf(275), PlayKey::ON);
    EXPECT_EQ(playKeyOf(276), PlayKey::BACK);
    EXPECT_EQ(playKeyOf(9), PlayKey::FACTS);
    EXPECT_EQ(playKeyOf('n'), PlayKey::NEXT_CLIP);
    EXPECT_EQ(playKeyOf('w'), std::nullopt);
    EXPECT_EQ(playKeyOf(0), std::nullopt);
}

}  // namespace
