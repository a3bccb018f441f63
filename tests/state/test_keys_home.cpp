// The home menu's keys, controller and mouse targets.
#include "state/stage.h"

namespace {

class KeysHome : public StageTest {
protected:
    KeysHome() { all->state = STATE_HOME; }

    static int selectionAfter(int start, const std::vector<int>& pressed) {
        _home->selected = start;
        setKeys(pressed);
        keys->actionsHome();
        return _home->selected;
    }

    static void confirm(int item, int slot = KEY_X) {
        _home->selected = item;
        setKeys({slot});
        keys->actionsHome();
    }

    static void click(int x, int y) {
        setKeys({});
        keys->mouseClick = 1;
        keys->mouseX = x;
        keys->mouseY = y;
        keys->actionsHome();
        keys->mouseClick = 0;
    }
};

void expectMoves(int key, int pad, const int (&next)[5]) {
    for (int item = 0; item < 5; ++item) {
        for (const int slot : {key, pad}) {
            _home->selected = item;
            setKeys({slot});
            keys->actionsHome();
            EXPECT_EQ(_home->selected, next[item]) << "item " << item << ", slot " << slot;
        }
    }
}

TEST_F(KeysHome, Right_AlongTheRows) {
    expectMoves(KEY_RIGHT, PAD_RIGHT, {1, 1, 3, 4, 4});
}

TEST_F(KeysHome, Down_FromTopToBottom) {
    expectMoves(KEY_DOWN, PAD_DOWN, {3, 4, 2, 3, 4});
}

TEST_F(KeysHome, Left_AlongTheRows) {
    expectMoves(KEY_LEFT, PAD_LEFT, {0, 0, 2, 2, 3});
}

TEST_F(KeysHome, Up_OptionsHasNothingAbove) {
    expectMoves(KEY_UP, PAD_UP, {0, 1, 2, 0, 1});
}

TEST_F(KeysHome, KeyAndControllerTogether_OneStep) {
    EXPECT_EQ(selectionAfter(2, {KEY_RIGHT, PAD_RIGHT}), 3);
    EXPECT_EQ(selectionAfter(4, {KEY_LEFT, PAD_LEFT}), 3);
}

// Right, down, left, up, each from where the one before arrived.
TEST_F(KeysHome, SeveralDirections_AppliedInOrder) {
    EXPECT_EQ(selectionAfter(0, {KEY_RIGHT, KEY_DOWN}), 4);
    EXPECT_EQ(selectionAfter(0, {KEY_DOWN, KEY_LEFT}), 2);
    EXPECT_EQ(selectionAfter(0, {KEY_RIGHT, KEY_DOWN, KEY_LEFT, KEY_UP}), 0);
    EXPECT_EQ(selectionAfter(3, {KEY_RIGHT, KEY_UP}), 1);
}

TEST_F(KeysHome, HeldKeys_DoNotAct) {
    _home->selected = HOME_MIX;
    setKeys({}, {KEY_RIGHT, KEY_X});
    keys->actionsHome();
    EXPECT_EQ(_home->selected, HOME_MIX);
    EXPECT_EQ(all->state, STATE_HOME);
}

TEST_F(KeysHome, ConfirmMix_HidesThePointer) {
    for (const int slot : {KEY_X, PAD_CONFIRM}) {
        all->state = STATE_HOME;
        scripted().cursorCalls.clear();
        confirm(HOME_MIX, slot);
        EXPECT_EQ(all->state, STATE_MIX);
        EXPECT_EQ(all->subState, SUB_OVERMENU);
        EXPECT_EQ(scripted().cursorCalls, std::vector<int>{0});
    }
}

TEST_F(KeysHome, ConfirmEdit_ResetsBothLists) {
    for (int f = 0; f < 20; ++f) {
        addFamille("f", std::vector<std::string>(f == 3 ? 30u : 1u, "a.m19"));
    }
    playlist->editFamille = 3;
    playlist->scroll[0] = {5, 9, 24, 1, 20};
    playlist->scroll[1] = {5, 9, 24, 1, 20};
    confirm(HOME_EDIT);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    EXPECT_EQ(playlist->scroll[0].pos, 0);
    EXPECT_EQ(playlist->scroll[0].active, 0);
    EXPECT_EQ(playlist->scroll[0].count, 20);
    EXPECT_EQ(playlist->scroll[1].pos, 0);
    EXPECT_EQ(playlist->scroll[1].active, 0);
    EXPECT_EQ(playlist->scroll[1].count, 30);
    EXPECT_TRUE(scripted().cursorCalls.empty());
}

TEST_F(KeysHome, ClickEdit_ResetsBothLists) {
    for (int f = 0; f < 20; ++f) {
        addFamille("f", std::vector<std::string>(f == 3 ? 30u : 1u, "a.m19"));
    }
    playlist->editFamille = 3;
    for (auto& list : playlist->scroll) {
        list.pos = 5;
        list.active = 1;
        list.count = 7;
    }
    click(420, 100);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    EXPECT_EQ(playlist->scroll[0].pos, 0);
    EXPECT_EQ(playlist->scroll[0].active, 0);
    EXPECT_EQ(playlist->scroll[0].count, 20);
    EXPECT_EQ(playlist->scroll[1].pos, 0);
    EXPECT_EQ(playlist->scroll[1].active, 0);
    EXPECT_EQ(playlist->scroll[1].count, 30);
}

TEST_F(KeysHome, ConfirmOptions_FirstPage) {
    _options->page = 1;
    confirm(HOME_OPTIONS);
    EXPECT_EQ(all->state, STATE_OPTIONS);
    EXPECT_EQ(_options->page, 0);
}

TEST_F(KeysHome, ConfirmFullScreen_SwitchesAndStays) {
    confirm(HOME_FULL_SCREEN);
    EXPECT_EQ(all->state, STATE_HOME);
    ASSERT_EQ(scripted().modeCalls.size(), 1u);
    EXPECT_NE(scripted().modeCalls[0].flags & SDL_FULLSCREEN, 0u);
}

TEST_F(KeysHome, ConfirmQuit_EndsTheProgram) {
    confirm(HOME_QUIT);
    EXPECT_EQ(isExit, 0);
    EXPECT_EQ(all->state, STATE_HOME);
}

// The selection moves first: one frame with both opens the item arrived at.
TEST_F(KeysHome, DirectionAndConfirm_OpensTheNewItem) {
    EXPECT_EQ(selectionAfter(HOME_MIX, {KEY_RIGHT, KEY_X}), HOME_EDIT);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
}

TEST_F(KeysHome, quirk_mix_by_click_keeps_the_pointer) {
    click(320, 120);
    EXPECT_EQ(all->state, STATE_MIX);
    EXPECT_TRUE(scripted().cursorCalls.empty());
    all->state = STATE_HOME;
    confirm(HOME_MIX);
    EXPECT_EQ(scripted().cursorCalls, std::vector<int>{0});
}

// What a click at a place opens, told by what it changes.
int itemAt(int x, int y) {
    all->state = STATE_HOME;
    isExit = 1;
    scripted().modeCalls.clear();
    keys->mouseClick = 1;
    keys->mouseX = x;
    keys->mouseY = y;
    keys->actionsHome();
    if (isExit == 0) {
        return HOME_QUIT;
    }
    if (!scripted().modeCalls.empty()) {
        return HOME_FULL_SCREEN;
    }
    switch (all->state) {
        case STATE_MIX:
            return HOME_MIX;
        case STATE_PLAYLISTS:
            return HOME_EDIT;
        case STATE_OPTIONS:
            return HOME_OPTIONS;
        default:
            return -1;
    }
}

TEST_F(KeysHome, ClickTargets_EndsIncluded) {
    const struct {
        int item, left, right, top, bottom;
    } targets[] = {
        {HOME_MIX, 273, 367, 75, 169},      {HOME_EDIT, 377, 471, 75, 169},
        {HOME_OPTIONS, 169, 263, 180, 274}, {HOME_FULL_SCREEN, 273, 367, 180, 274},
        {HOME_QUIT, 377, 471, 180, 274},
    };
    for (const auto& each : targets) {
        SCOPED_TRACE(each.item);
        EXPECT_EQ(itemAt(each.left, each.top), each.item);
        EXPECT_EQ(itemAt(each.right, each.bottom), each.item);
        EXPECT_EQ(itemAt(each.right, each.top), each.item);
        EXPECT_EQ(itemAt(each.left, each.bottom), each.item);
        EXPECT_EQ(itemAt(each.left - 1, each.top), -1);
        EXPECT_EQ(itemAt(each.right + 1, each.bottom), -1);
        EXPECT_EQ(itemAt(each.left, each.top - 1), -1);
        EXPECT_EQ(itemAt(each.right, each.bottom + 1), -1);
    }
}

TEST_F(KeysHome, Click_DoesNotSelect) {
    _home->selected = HOME_QUIT;
    click(420, 100);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    EXPECT_EQ(_home->selected, HOME_QUIT);
}

TEST_F(KeysHome, ClickOptions_FirstPage) {
    _options->page = 1;
    click(200, 200);
    EXPECT_EQ(all->state, STATE_OPTIONS);
    EXPECT_EQ(_options->page, 0);
}

TEST_F(KeysHome, MouseHeldOverAnItem_DoesNothing) {
    setKeys({});
    keys->mouseHeld = 1;
    keys->mouseX = 300;
    keys->mouseY = 100;
    keys->actionsHome();
    EXPECT_EQ(all->state, STATE_HOME);
}

// Where a tile is drawn it is clicked, at every resolution: 273 + 192, 180 + 204 in the window.
TEST_F(KeysHome, ClickAfterAnotherResolution_TheTileThatIsDrawnThere) {
    all->applyResolution(1024, 768);
    updateResolution();
    scripted().modeCalls.clear();
    _home->selected = HOME_FULL_SCREEN;
    runFrame();
    EXPECT_EQ(countPixels(screen[1], 465, 383, 94, 2, 0xFFFF), 2 * 94);  // its upper bar
    scripted().events = {mouseButton(SDL_MOUSEBUTTONDOWN, 465 + 40, 384 + 40)};
    runFrame();
    EXPECT_EQ(isExit, 1);
    EXPECT_EQ(all->state, STATE_HOME);
    EXPECT_EQ(scripted().modeCalls.size(), 1u);  // full screen
}

}  // namespace
