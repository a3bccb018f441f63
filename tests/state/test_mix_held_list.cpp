// The list of playlists opened while the layers are held: what stands, for how long, and what each
// way out of the list does to it.
#include "state/stage.h"

namespace {

constexpr int kHoldButton = 4;
constexpr int kShowButton = 5;
constexpr int kConfirmButton = 6;
constexpr int kBackButton = 7;

class HeldList : public StageTest {
protected:
    HeldList() {
        placeClip("runs-360.m19", "runs.m19");    // 16 frames
        placeClip("rgb-all-360.m19", "all.m19");  // 20 frames
        addFamille("set", {"runs.m19", "all.m19"});
        loadClip(0, "runs.m19");
        loadClip(1, "all.m19");
        playlist->loadSlot = playlist->loadTrack = 2;
        playlist->loadDone = 1;
        scripted().joysticks = 1;
        keys->padButton[12] = kHoldButton;
        keys->padButton[13] = kShowButton;
        keys->padButton[6] = kConfirmButton;
        keys->padButton[5] = kBackButton;
        all->state = STATE_MIX;
        all->subState = SUB_PERFORMING;
        mix->mode = MODE_BLEND;
        mix->layer[0] = {0, 3, PLAY_FORWARD};
        mix->layer[1] = {1, 5, PLAY_FORWARD};
    }

    static void openByPad() {
        scripted().buttonsDown = {kHoldButton};
        runFrame();
        scripted().buttonsDown = {kHoldButton, kShowButton};
        runFrame();
        ASSERT_EQ(all->subState, SUB_OVERMENU);
    }
    // Down for one frame.
    static void press(SDLKey key) {
        scripted().keysDown[key] = 1;
        runFrame();
        scripted().keysDown[key] = 0;
    }
    static std::string printedByFrames(int count) {
        return printedBy([count] {
            for (int frame = 0; frame < count; ++frame) {
                runFrame();
            }
        });
    }
    static void expectFrames(int bottom, int top) {
        EXPECT_EQ(mix->layer[0].frame, bottom);
        EXPECT_EQ(mix->layer[1].frame, top);
    }
};

TEST_F(HeldList, quirk_list_opened_by_pad_holds_the_picture) {
    openByPad();
    const Picture shown = copyOf(screen[1]);
    scripted().buttonsDown.clear();
    for (int frame = 0; frame < 40; ++frame) {
        runFrame();
        ASSERT_EQ(mix->hold, 1);
        ASSERT_TRUE(samePixels(screen[1], shown.get())) << frame;
    }
    expectFrames(3, 5);
}

TEST_F(HeldList, ClosedByReturn_RunsOnWithTheNextFrame) {
    openByPad();
    scripted().buttonsDown.clear();
    runFrame();
    press(SDLK_RETURN);
    EXPECT_EQ(all->subState, SUB_PERFORMING);
    expectFrames(3, 5);
    runFrame();
    EXPECT_EQ(mix->hold, 0);
    EXPECT_EQ(all->subState, SUB_PERFORMING);
    expectFrames(4, 6);
}

TEST_F(HeldList, ClosedWithBothButtonsDown_OpensAgain) {
    openByPad();
    press(SDLK_RETURN);
    EXPECT_EQ(all->subState, SUB_PERFORMING);
    runFrame();
    EXPECT_EQ(all->subState, SUB_OVERMENU);
    expectFrames(3, 5);
}

TEST_F(HeldList, Loaded_RunsFromTheStart) {
    openByPad();
    scripted().buttonsDown = {kConfirmButton};
    printedByFrames(1);
    EXPECT_EQ(all->subState, SUB_PERFORMING);
    EXPECT_EQ(mix->hold, 0);
    scripted().buttonsDown.clear();
    printedByFrames(30);
    EXPECT_GT(mix->layer[1].frame, 0);
}

// Nothing is loaded then, and what is loaded next runs.
TEST_F(HeldList, LeftForTheMenu_NextPlaylistRuns) {
    openByPad();
    scripted().buttonsDown = {kBackButton};
    runFrame();
    EXPECT_EQ(all->state, STATE_HOME);
    scripted().buttonsDown.clear();
    press(SDLK_x);
    EXPECT_EQ(all->state, STATE_MIX);
    EXPECT_EQ(all->subState, SUB_OVERMENU);
    runFrame();
    printedBy([] { press(SDLK_x); });
    printedByFrames(30);
    EXPECT_EQ(mix->hold, 0);
    EXPECT_GT(mix->layer[1].frame, 0);
}

TEST_F(HeldList, OpenedByReturnUnderSpace_HoldsWithoutIt) {
    scripted().keysDown[SDLK_SPACE] = 1;
    press(SDLK_RETURN);
    scripted().keysDown[SDLK_SPACE] = 0;
    printedByFrames(20);
    expectFrames(3, 5);
    press(SDLK_RETURN);
    runFrame();
    expectFrames(4, 6);
}

// Frame 3 + 6 and 5 + 6.
TEST_F(HeldList, OpenedByReturnAlone_RunsOn) {
    press(SDLK_RETURN);
    scripted().keysDown[SDLK_SPACE] = 1;
    printedByFrames(5);
    expectFrames(9, 11);
}

}  // namespace
