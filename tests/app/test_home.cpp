// From the intro to the home screen, and around on it.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include "app/screens.h"
#include "app/stage.h"

namespace {

using app::Shot;
using app::Stage;

constexpr int kIntroPictures = 50;
constexpr int kShortestFrameMs = 39;
constexpr int kLogoPixels = 1000;  // that it lights at least

enum Item { MIX, EDIT, OPTIONS, FULL_SCREEN, QUIT };

void expectSelected(Stage& stage, int item, const char* how) {
    EXPECT_EQ(app::homeSelection(stage.look()), item) << how;
}

// White pixels where the words "MIX" and "QUIT" stand, at 1280 x 720.
int whiteInMix(const Shot& shot) {
    return app::countOf(shot, {320 + 277, 180 + 79, 60, 14}, app::kWhite);
}
int whiteInQuit(const Shot& shot) {
    return app::countOf(shot, {320 + 381, 180 + 183, 60, 14}, app::kWhite);
}

}  // namespace

TEST(Intro, RunsFor50Frames_ThenHome) {
    Stage stage;
    const long long started = app::nowMs();
    stage.start();
    const Shot intro = stage.await(
        [](const Shot& shot) {
            return app::countOf(shot, {0, 0, 1280, 720}, 0) < 1280 * 720 - kLogoPixels;
        },
        "the logo");
    // The logo stands at (160, 60) of the picture: nothing is lit to the left or above.
    EXPECT_EQ(app::countOf(intro, {0, 0, 480, 720}, 0), 480 * 720);
    EXPECT_EQ(app::countOf(intro, {0, 0, 1280, 240}, 0), 1280 * 240);

    stage.await([](const Shot& shot) { return app::homeSelection(shot) == MIX; }, "home");
    EXPECT_GE(app::nowMs() - started, kIntroPictures * kShortestFrameMs);
    // 50 of the intro and the first of home; looking may come late.
    EXPECT_GT(stage.picturesBegun(), kIntroPictures);
    EXPECT_LT(stage.picturesBegun(), kIntroPictures + 25);
}

TEST(Home, ArrowKeys_WalkTheTwoRows) {
    struct Step {
        unsigned long key;
        int item;
        const char* how;
    };
    constexpr Step kWalk[] = {
        {XK_Up, MIX, "up from MIX"},
        {XK_Left, MIX, "left from MIX"},
        {XK_Right, EDIT, "right from MIX"},
        {XK_Right, EDIT, "right from EDIT"},
        {XK_Up, EDIT, "up from EDIT"},
        {XK_Down, QUIT, "down from EDIT"},
        {XK_Down, QUIT, "down from QUIT"},
        {XK_Right, QUIT, "right from QUIT"},
        {XK_Left, FULL_SCREEN, "left from QUIT"},
        {XK_Down, FULL_SCREEN, "down from FULL SCREEN"},
        {XK_Left, OPTIONS, "left from FULL SCREEN"},
        {XK_Left, OPTIONS, "left from OPTIONS"},
        {XK_Up, OPTIONS, "up from OPTIONS"},
        {XK_Down, OPTIONS, "down from OPTIONS"},
        {XK_Right, FULL_SCREEN, "right from OPTIONS"},
        {XK_Up, MIX, "up from FULL SCREEN"},
        {XK_Down, FULL_SCREEN, "down from MIX"},
        {XK_Right, QUIT, "right from FULL SCREEN"},
        {XK_Up, EDIT, "up from QUIT"},
        {XK_Left, MIX, "left from EDIT"},
    };
    Stage stage;
    stage.startAtHome();
    EXPECT_GT(whiteInMix(stage.look()), 20);
    EXPECT_EQ(whiteInQuit(stage.look()), 0);
    for (const Step& step : kWalk) {
        stage.tap(step.key);
        expectSelected(stage, step.item, step.how);
        if (step.item == QUIT) {
            EXPECT_GT(whiteInQuit(stage.look()), 20);
            EXPECT_EQ(whiteInMix(stage.look()), 0);
        }
    }
}

// The square of "MIX" goes from (273, 75) to (367, 169) in the picture, ends included.
TEST(Home, ClickInMixSquare_EntersMixWithOverMenu) {
    constexpr int kX = 320;
    constexpr int kY = 180;
    Stage stage;
    stage.folder.addPlaylist("ONE", {"none.m19"});
    stage.folder.writePlaylists();
    stage.startAtHome();
    for (const app::Box outside : {app::Box{272, 100, 0, 0}, app::Box{368, 100, 0, 0},
                                   app::Box{273, 74, 0, 0}, app::Box{273, 170, 0, 0}}) {
        stage.click(kX + outside.x, kY + outside.y);
        expectSelected(stage, MIX, "a click beside the square");
    }
    stage.click(kX + 273, kY + 169);
    EXPECT_TRUE(app::overMenuShown(stage.look(), 1));
    EXPECT_EQ(app::overMenuSelection(stage.look(), 1), 0);
    // Back and in again by key.
    stage.tap(XK_z);
    expectSelected(stage, MIX, "back from the mix screen");
    stage.tap(XK_x);
    EXPECT_TRUE(app::overMenuShown(stage.look(), 1));
}

TEST(Home, PlaylistAndOptionsScreens_OpenByKeyAndClickAndLeaveByZ) {
    Stage stage;
    stage.startAtHome();
    stage.tap(XK_Right);
    stage.tap(XK_x);
    expectSelected(stage, -1, "the playlist screen");
    stage.tap(XK_z);
    expectSelected(stage, EDIT, "back from the playlist screen");
    // A click opens the other screen and leaves the selection where it is.
    stage.click(320 + 200, 180 + 200);
    expectSelected(stage, -1, "the options screen");
    stage.tap(XK_z);
    expectSelected(stage, EDIT, "back from the options screen");
    EXPECT_EQ(stage.closeWindow(), 1);
}
