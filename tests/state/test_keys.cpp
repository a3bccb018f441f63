// Set-up of the input state, mouse rectangles, and which handler a screen gets.
#include "input/keys.h"

#include "state/stage.h"

namespace {

class Keys : public StageTest {};

TEST_F(Keys, Init_ClearsSlotsAndEdges) {
    for (int32_t& slot : keys->gKeys) {
        slot = KEY_HELD;
    }
    keys->anyKeyCount = keys->mouseClick = keys->mouseHeld = 3;
    keys->keyDown = keys->keyHeld = 3;
    keys->lastKeySym = SDLK_k;
    keys->mouseX = -5;
    keys->mouseY = 77;
    keys->initKeys();
    for (const int32_t slot : keys->gKeys) {
        EXPECT_EQ(slot, 0);
    }
    EXPECT_EQ(keys->anyKeyCount, 0);
    EXPECT_EQ(keys->mouseClick, 0);
    EXPECT_EQ(keys->mouseHeld, 0);
    EXPECT_EQ(keys->keyDown, 0);
    EXPECT_EQ(keys->keyHeld, 0);
    // These keep their values.
    EXPECT_EQ(keys->lastKeySym, SDLK_k);
    EXPECT_EQ(keys->mouseX, -5);
    EXPECT_EQ(keys->mouseY, 77);
}

TEST_F(Keys, InitController_EveryEntryUnassigned) {
    for (int32_t& button : keys->padButton) {
        button = 3;
    }
    keys->initController();
    for (const int32_t button : keys->padButton) {
        EXPECT_EQ(button, 99);
    }
}

TEST_F(Keys, MouseInRectangle_BothEndsIncluded) {
    keys->mouseX = 15;
    keys->mouseY = 15;
    EXPECT_EQ(keys->isMouseXYIn(10, 10, 5, 5), 1);
    EXPECT_EQ(keys->isMouseXYIn(15, 15, 0, 0), 1);
    keys->mouseX = 16;
    EXPECT_EQ(keys->isMouseXYIn(10, 10, 5, 5), 0);
    keys->mouseX = 10;
    keys->mouseY = 10;
    EXPECT_EQ(keys->isMouseXYIn(10, 10, 5, 5), 1);
    keys->mouseY = 9;
    EXPECT_EQ(keys->isMouseXYIn(10, 10, 5, 5), 0);
    keys->mouseY = 16;
    EXPECT_EQ(keys->isMouseXYIn(10, 10, 5, 5), 0);
    keys->mouseX = 9;
    keys->mouseY = 12;
    EXPECT_EQ(keys->isMouseXYIn(10, 10, 5, 5), 0);
}

TEST_F(Keys, VideoOutActions_ChangeNothing) {
    setKeys({KEY_X, KEY_Z, KEY_RETURN});
    keys->actionsVideoOut();
    EXPECT_EQ(all->state, STATE_INTRO);
    EXPECT_EQ(isExit, 1);
}

// A key that each handler answers in its own way: Return opens the over-menu in the mix and closes
// it in the over-menu; x opens the selected item on the home screen; z leaves the others.
TEST_F(Keys, Actions_IntroHasNone) {
    all->state = STATE_INTRO;
    setKeys({KEY_X, KEY_Z, KEY_RETURN, KEY_RIGHT});
    keys->actions();
    EXPECT_EQ(all->state, STATE_INTRO);
    EXPECT_EQ(all->subState, SUB_OVERMENU);
    EXPECT_EQ(_home->selected, HOME_MIX);
}

TEST_F(Keys, Actions_HomeMovesTheSelection) {
    all->state = STATE_HOME;
    setKeys({KEY_RIGHT});
    keys->actions();
    EXPECT_EQ(_home->selected, HOME_EDIT);
}

TEST_F(Keys, Actions_MixBySubState) {
    all->state = STATE_MIX;
    all->subState = SUB_OVERMENU;
    setKeys({KEY_RETURN});
    keys->actions();
    EXPECT_EQ(all->subState, SUB_PERFORMING);
    keys->actions();
    EXPECT_EQ(all->subState, SUB_OVERMENU);
    for (const int other : {0, 3}) {
        all->subState = other;
        keys->actions();
        EXPECT_EQ(all->subState, other);
    }
}

TEST_F(Keys, Actions_PlaylistsLeaveForHome) {
    all->state = STATE_PLAYLISTS;
    setKeys({KEY_Z});
    keys->actions();
    EXPECT_EQ(all->state, STATE_HOME);
}

TEST_F(Keys, Actions_OptionsPage0LeavesForHomeOtherPagesDoNot) {
    setKeys({KEY_Z});
    for (const int page : {2, 1, 0}) {
        all->state = STATE_OPTIONS;
        _options->page = page;
        keys->actions();
        EXPECT_EQ(all->state, page == 0 ? STATE_HOME : STATE_OPTIONS) << page;
    }
}

TEST_F(Keys, Actions_OptionsPage1LeavesForPage0ByItsBackButton) {
    all->state = STATE_OPTIONS;
    _options->page = 1;
    keys->mouseX = 600;
    keys->mouseY = 380;
    keys->mouseClick = 1;
    keys->actions();
    EXPECT_EQ(_options->page, 0);
    EXPECT_EQ(all->state, STATE_OPTIONS);
}

TEST_F(Keys, Actions_UnknownStateHasNone) {
    all->state = 5;
    setKeys({KEY_X, KEY_Z, KEY_RETURN, KEY_RIGHT});
    keys->actions();
    EXPECT_EQ(all->state, 5);
    EXPECT_EQ(_home->selected, HOME_MIX);
}

}  // namespace
