#include <gtest/gtest.h>

#include <string>

#include "tools/control/stage/gestures.h"

namespace control {

namespace {

int firstOf(int) {
    return 0;
}

// Letters Q to O hold the filters 1 to 9: MIRROR on Q, SCROLL on W, INVERT on E and so on.
StageFiles files() {
    StageFiles files;
    for (size_t slot = 0; slot < files.filters.size(); ++slot) {
        files.filters[slot] = static_cast<int>(slot) + 1;
    }
    files.tracks = {3, 2, 5, 1};
    return files;
}

StageModel mixing() {
    StageModel stage;
    stage.screen = Screen::MIX;
    stage.selected = 0;
    return stage;
}

// "Up | Q+Backspace | . | Down": the steps, a point for one with nothing down.
std::string stepsOf(const Gesture& gesture) {
    std::string all;
    for (const KeySet step : gesture) {
        std::string one;
        for (size_t i = 0; i < kKeys; ++i) {
            if ((step & setOf(keyAt(i))) != 0) {
                one += (one.empty() ? "" : "+") + std::string(kKeyNames[i]);
            }
        }
        all += (all.empty() ? "" : " | ") + (one.empty() ? "." : one);
    }
    return all;
}

std::string played(const std::string& name, StageModel& stage, const StageFiles& from = files(),
                   int (*lot)(int) = firstOf) {
    const auto action = actionNamed(name);
    EXPECT_TRUE(action) << name;
    const Played result = gestureOf(*action, stage, from, lot);
    return result.why.empty() ? stepsOf(result.gesture) : "no: " + result.why;
}

std::string playedOnMix(const std::string& name) {
    StageModel stage = mixing();
    return played(name, stage);
}

}  // namespace

TEST(Gestures, Clip_IsAnArrow) {
    EXPECT_EQ(playedOnMix("next"), "Right");
    EXPECT_EQ(playedOnMix("previous"), "Left");
    EXPECT_EQ(playedOnMix("top.next"), "Right");
}

TEST(Gestures, OtherLayer_IsChosenAndLeftAgain) {
    StageModel stage = mixing();
    EXPECT_EQ(played("bottom.next", stage), "Down | Right | Up");
    EXPECT_EQ(stage.active, 1);
    stage.active = 0;
    EXPECT_EQ(played("top.reverse", stage), "Up | Z | Down");
    EXPECT_TRUE(stage.backwards[1]);
    EXPECT_FALSE(stage.backwards[0]);
    EXPECT_EQ(stage.active, 0);
}

TEST(Gestures, Layer_IsPressedEvenWhereItIs) {
    StageModel stage = mixing();
    EXPECT_EQ(played("top", stage), "Up");
    EXPECT_EQ(played("bottom", stage), "Down");
    EXPECT_EQ(stage.active, 0);
}

TEST(Gestures, Modes_AreTheDigitsOfThePanel) {
    StageModel stage = mixing();
    EXPECT_EQ(played("mode.none", stage), "1");
    EXPECT_EQ(played("mode.blend", stage), "2");
    EXPECT_EQ(stage.mode, MODE_BLEND);
    EXPECT_EQ(played("mode.add", stage), "3");
    EXPECT_EQ(played("mode.multiply", stage), "4");
    EXPECT_EQ(played("mode.alpha", stage), "5");
    EXPECT_EQ(stage.mode, MODE_KEY);
    EXPECT_EQ(played("mode.half", stage), "6");
}

TEST(Gestures, OtherKeys_AreOnePressEach) {
    StageModel stage = mixing();
    EXPECT_EQ(played("flash", stage), "S");
    EXPECT_EQ(played("reverse", stage), "Z");
    EXPECT_EQ(played("panel", stage), "Tab");
    EXPECT_TRUE(stage.panel);
    EXPECT_EQ(played("fullscreen", stage), "F");
}

TEST(Gestures, FilterToggle_IsAChordOfItsLetter) {
    StageModel stage = mixing();
    EXPECT_EQ(played("filter.mirror.toggle", stage), "Q+Backspace");
    EXPECT_TRUE(stage.filters[1][0].on);
    EXPECT_EQ(played("filter.mirror.toggle", stage), "Q+Backspace");
    EXPECT_FALSE(stage.filters[1][0].on);
    EXPECT_EQ(played("filter.snow.toggle", stage), "O+Backspace");
}

TEST(Gestures, FilterOnOtherLayer_LeavesAGapBehindTheLetter) {
    StageModel stage = mixing();
    EXPECT_EQ(played("bottom.filter.mirror.toggle", stage), "Down | Q+Backspace | . | Up");
    EXPECT_TRUE(stage.filters[0][0].on);
    EXPECT_FALSE(stage.filters[1][0].on);
}

TEST(Gestures, FilterOnAndOff_PressOnlyWhereItChangesSomething) {
    StageModel stage = mixing();
    EXPECT_EQ(played("filter.hue.off", stage), "");
    EXPECT_EQ(played("filter.hue.on", stage), "Y+Backspace");
    EXPECT_EQ(played("filter.hue.on", stage), "");
    EXPECT_EQ(played("bottom.filter.hue.off", stage), "");
    EXPECT_EQ(played("filter.hue.off", stage), "Y+Backspace");
}

TEST(Gestures, FilterDirection_HasTheLetterDownAStepBefore) {
    StageModel stage = mixing();
    EXPECT_EQ(played("filter.hue.left", stage), "Y | Y+Left");
    EXPECT_EQ(stage.filters[1][5].direction, DIRECTION_LEFT);
    EXPECT_EQ(played("bottom.filter.hue.up", stage), "Down | Y | Y+Up | . | Up");
}

TEST(Gestures, FilterOnTwoLetters_IsOneFilter) {
    StageFiles twice = files();
    twice.filters = {3, 1, 1, 1, 0, 0, 0, 0, 0};
    StageModel stage = mixing();
    EXPECT_EQ(played("filter.mirror.on", stage, twice), "W+Backspace");
    // The leftmost that is on gives the direction.
    stage.filters[1][1].on = false;
    stage.filters[1][2].on = true;
    stage.filters[1][3].on = true;
    EXPECT_EQ(played("filter.mirror.right", stage, twice), "E | E+Right");
    EXPECT_EQ(played("filter.mirror.toggle", stage, twice), "E+Backspace | . | R+Backspace");
    EXPECT_FALSE(stage.filters[1][2].on);
    EXPECT_FALSE(stage.filters[1][3].on);
}

TEST(Gestures, FilterOnNoLetter_SaysSo) {
    StageFiles none = files();
    none.filters[5] = FILTER_NONE;
    StageModel stage = mixing();
    const StageModel before = stage;
    EXPECT_EQ(played("bottom.filter.hue.on", stage, none),
              "no: HUE is on no letter; OPTIONS in the menu puts it on one");
    EXPECT_EQ(stage, before);
}

TEST(Gestures, PlaylistFromTheMix_OpensTheListAndGoesThere) {
    StageModel stage = mixing();
    stage.mode = MODE_ADD;
    stage.active = 0;
    stage.backwards = {true, true};
    stage.filters[1][0].on = true;
    stage.panel = true;
    EXPECT_EQ(played("playlist 3", stage), "Return | Down | . | Down | X");
    EXPECT_EQ(stage.active, 1);
    EXPECT_EQ(stage.mode, MODE_TOP);
    EXPECT_FALSE(stage.backwards[0] || stage.backwards[1]);
    EXPECT_FALSE(stage.panel);
    EXPECT_TRUE(stage.filters[1][0].on);
    EXPECT_EQ(played("playlist 2", stage), "Return | Up | X");
    EXPECT_EQ(played("playlist 2", stage), "Return | X");
}

TEST(Gestures, PlaylistWithTheChoiceUnknown_GoesToTheTopFirst) {
    StageModel stage = mixing();
    stage.selected.reset();
    EXPECT_EQ(played("playlist 2", stage), "Return | Up | . | Up | . | Up | Down | X");
    EXPECT_EQ(stage.selected, 1);
    // Playlists were deleted meanwhile: the choice may be anywhere.
    stage.selected = 9;
    EXPECT_EQ(played("playlist 1", stage), "Return | Up | . | Up | . | Up | X");
}

TEST(Gestures, PlaylistFromTheMenu_GoesThroughMix) {
    StageModel stage = freshStage();
    EXPECT_EQ(played("playlist 2", stage), "Right | Up | Left | X | Down | X");
    EXPECT_EQ(stage.screen, Screen::MIX);
}

TEST(Gestures, PlaylistThatIsNotThere_SaysSo) {
    StageModel stage = mixing();
    const StageModel before = stage;
    EXPECT_EQ(played("playlist 5", stage), "no: there is no playlist 5; Velmora has 4");
    EXPECT_EQ(stage, before);
}

TEST(Gestures, List_OpensAndCloses) {
    StageModel stage = mixing();
    stage.panel = true;
    EXPECT_EQ(played("list", stage), "Return");
    EXPECT_EQ(stage.screen, Screen::LIST);
    EXPECT_FALSE(stage.panel);
    EXPECT_EQ(played("flash", stage), "no: the list of playlists is open");
    EXPECT_EQ(played("playlist 2", stage), "Down | X");
    stage.screen = Screen::LIST;
    EXPECT_EQ(played("list", stage), "Return");
    EXPECT_EQ(stage.screen, Screen::MIX);
}

TEST(Gestures, Home_FromEverywhere) {
    StageModel stage = mixing();
    EXPECT_EQ(played("home", stage), "Return | Z");
    EXPECT_EQ(stage.screen, Screen::HOME);
    EXPECT_EQ(played("home", stage), "");
    EXPECT_EQ(played("next", stage), "no: Velmora shows its menu");
    stage.screen = Screen::LIST;
    EXPECT_EQ(played("home", stage), "Z");
    stage.screen = Screen::UNSURE;
    EXPECT_EQ(played("home", stage), "Return | Z | Return | Z");
}

TEST(Gestures, PlaylistWhereTheScreenIsUnsure_GoesThroughTheMenu) {
    StageModel stage = mixing();
    stage.screen = Screen::UNSURE;
    stage.selected.reset();
    EXPECT_EQ(played("list", stage), "Return");
    EXPECT_EQ(stage.screen, Screen::UNSURE);
    EXPECT_EQ(played("playlist 1", stage),
              "Return | Z | Return | Z | Right | Up | Left | X | Up | . | Up | . | Up | X");
    EXPECT_EQ(stage.screen, Screen::MIX);
}

TEST(Gestures, ListFromTheMenu_EntersMix) {
    StageModel stage = freshStage();
    EXPECT_EQ(played("list", stage), "Right | Up | Left | X");
    EXPECT_EQ(stage.screen, Screen::LIST);
}

TEST(Gestures, Random_IsOneToThreeClipsAway) {
    StageModel stage = mixing();
    EXPECT_EQ(played("random", stage, files(), [](int) { return 0; }), "Right");
    EXPECT_EQ(played("random", stage, files(), [](int) { return 1; }), "Left");
    EXPECT_EQ(played("random", stage, files(), [](int n) { return n - 1; }), "Left | . | Left");
    stage.selected = 2;
    EXPECT_EQ(played("random", stage, files(), [](int n) { return n - 1; }),
              "Left | . | Left | . | Left");
    stage.selected.reset();
    EXPECT_EQ(played("random", stage, files(), [](int n) { return n - 2; }),
              "Right | . | Right | . | Right");
    // The only clip of its playlist.
    stage.selected = 3;
    EXPECT_EQ(played("random", stage), "");
}

}  // namespace control
