// The performer's keys: decks, direction, transitions, modes, layers, panel, over-menu.
#include "state/stage.h"

namespace {

class KeysMix : public StageTest {
protected:
    KeysMix() {
        all->state = STATE_MIX;
        all->subState = SUB_PERFORMING;
        mix->nbDecks = 5;
        for (int slot = 0; slot < 5; ++slot) {
            pretendClip(slot, 20);
        }
        mix->layer[0] = {1, 11, PLAY_FORWARD};
        mix->layer[1] = {0, 7, PLAY_FORWARD};
    }

    static void act(const std::vector<int>& pressed, const std::vector<int>& held = {}) {
        setKeys(pressed, held);
        keys->actionsMix();
    }
};

TEST_F(KeysMix, Left_PreviousDeckFromItsStart) {
    for (const int slot : {KEY_LEFT, PAD_LEFT}) {
        mix->layer[1] = {3, 7, PLAY_FORWARD};
        act({slot});
        EXPECT_EQ(mix->layer[1].deck, 2);
        EXPECT_EQ(mix->layer[1].frame, 0);
    }
}

TEST_F(KeysMix, LeftOnDeck0_LastDeck) {
    act({KEY_LEFT});
    EXPECT_EQ(mix->layer[1].deck, 4);
    EXPECT_EQ(mix->layer[1].frame, 0);
}

TEST_F(KeysMix, Right_NextDeckAndWrap) {
    for (const int slot : {KEY_RIGHT, PAD_RIGHT}) {
        mix->layer[1] = {3, 7, PLAY_FORWARD};
        act({slot});
        EXPECT_EQ(mix->layer[1].deck, 4);
        EXPECT_EQ(mix->layer[1].frame, 0);
        mix->layer[1].frame = 9;
        act({slot});
        EXPECT_EQ(mix->layer[1].deck, 0);
        EXPECT_EQ(mix->layer[1].frame, 0);
    }
}

TEST_F(KeysMix, DeckChange_OnTheActiveLayerOnly) {
    mix->activeLayer = 0;
    act({KEY_RIGHT});
    EXPECT_EQ(mix->layer[0].deck, 2);
    EXPECT_EQ(mix->layer[0].frame, 0);
    EXPECT_EQ(mix->layer[1].deck, 0);
    EXPECT_EQ(mix->layer[1].frame, 7);
}

TEST_F(KeysMix, DeckChange_LeavesDirectionAndHold) {
    for (const int slot : {KEY_LEFT, KEY_RIGHT, PAD_LEFT, PAD_RIGHT}) {
        mix->layer[1] = {2, 7, PLAY_BACKWARD};
        act({slot}, {KEY_SPACE});
        EXPECT_EQ(mix->layer[1].frame, 0) << slot;
        EXPECT_EQ(mix->layer[1].direction, PLAY_BACKWARD) << slot;
        EXPECT_EQ(mix->hold, 1) << slot;
        mix->lecture();
        EXPECT_EQ(mix->layer[1].frame, 0) << slot;
    }
}

TEST_F(KeysMix, LeftAndRight_BackWhereItWas) {
    mix->layer[1].deck = 0;
    act({KEY_LEFT, KEY_RIGHT});
    EXPECT_EQ(mix->layer[1].deck, 0);
    EXPECT_EQ(mix->layer[1].frame, 0);
}

TEST_F(KeysMix, OneDeck_StartsItAgain) {
    mix->nbDecks = 1;
    act({KEY_LEFT});
    EXPECT_EQ(mix->layer[1].deck, 0);
    EXPECT_EQ(mix->layer[1].frame, 0);
    mix->layer[1].frame = 5;
    act({KEY_RIGHT});
    EXPECT_EQ(mix->layer[1].deck, 0);
    EXPECT_EQ(mix->layer[1].frame, 0);
}

TEST_F(KeysMix, NoDecks_NothingToChangeTo) {
    mix->nbDecks = 0;
    act({KEY_LEFT});
    act({KEY_RIGHT});
    act({PAD_LEFT, PAD_RIGHT});
    EXPECT_EQ(mix->layer[1].deck, 0);
    EXPECT_EQ(mix->layer[1].frame, 7);
}

TEST_F(KeysMix, HeldArrows_ChangeTheDeckOnce) {
    act({KEY_RIGHT});
    act({}, {KEY_RIGHT});
    act({}, {KEY_RIGHT});
    EXPECT_EQ(mix->layer[1].deck, 1);
}

TEST_F(KeysMix, Speed_XHeldOnWithUpOrDown) {
    const struct {
        std::vector<int> pressed, held;
        int expected;
    } cases[] = {
        {{}, {}, 25},
        {{KEY_UP}, {KEY_X}, 40},
        {{}, {KEY_X, KEY_UP}, 40},
        {{}, {KEY_X, KEY_DOWN}, 10},
        {{}, {KEY_X, KEY_UP, KEY_DOWN}, 10},
        {{KEY_X, KEY_UP}, {}, 25},  // x has only just gone down
        {{}, {KEY_X, KEY_UP, KEY_W}, 25},
        {{KEY_W}, {KEY_X, KEY_DOWN}, 25},
        {{}, {KEY_UP}, 25},
        {{}, {KEY_X}, 25},
    };
    for (const auto& each : cases) {
        mix->targetFps = 77;
        act(each.pressed, each.held);
        EXPECT_EQ(mix->targetFps, each.expected) << &each - cases;
    }
}

TEST_F(KeysMix, Reverse_ByKeyOrController) {
    act({KEY_Z});
    EXPECT_EQ(mix->layer[1].direction, PLAY_BACKWARD);
    EXPECT_EQ(mix->layer[0].direction, PLAY_FORWARD);
    act({}, {KEY_Z});
    EXPECT_EQ(mix->layer[1].direction, PLAY_BACKWARD);
    act({PAD_CONFIRM});
    EXPECT_EQ(mix->layer[1].direction, PLAY_FORWARD);
}

TEST_F(KeysMix, ReverseBlocked_ByWAndByTheModifier) {
    act({KEY_Z, KEY_W});
    act({KEY_Z}, {KEY_W});
    act({PAD_CONFIRM, PAD_BLOCK_REVERSE});
    act({PAD_CONFIRM}, {PAD_BLOCK_REVERSE});
    EXPECT_EQ(mix->layer[1].direction, PLAY_FORWARD);
    // Each blocks its own side only.
    act({KEY_Z}, {PAD_BLOCK_REVERSE});
    EXPECT_EQ(mix->layer[1].direction, PLAY_BACKWARD);
    act({PAD_CONFIRM}, {KEY_W});
    EXPECT_EQ(mix->layer[1].direction, PLAY_FORWARD);
}

TEST_F(KeysMix, ReverseByBothInOneFrame_Cancels) {
    act({KEY_Z, PAD_CONFIRM});
    EXPECT_EQ(mix->layer[1].direction, PLAY_FORWARD);
}

TEST_F(KeysMix, Flash_Sets15UnlessWIsDown) {
    act({KEY_S}, {KEY_W});
    act({KEY_S, KEY_W});
    EXPECT_EQ(mix->flash, 0);
    act({}, {KEY_S});
    EXPECT_EQ(mix->flash, 0);
    act({KEY_S});
    EXPECT_EQ(mix->flash, 15);
    mix->flash = 4;
    act({KEY_S});
    EXPECT_EQ(mix->flash, 15);
}

TEST_F(KeysMix, Fade_UpTo15WhileHeldDownTo0After) {
    act({KEY_A});
    EXPECT_EQ(mix->fade, 1);
    for (int frame = 2; frame <= 15; ++frame) {
        act({}, {KEY_A});
        EXPECT_EQ(mix->fade, frame);
    }
    act({}, {KEY_A});
    EXPECT_EQ(mix->fade, 15);
    for (int frame = 14; frame >= 0; --frame) {
        act({});
        EXPECT_EQ(mix->fade, frame);
    }
    act({});
    EXPECT_EQ(mix->fade, 0);
}

TEST_F(KeysMix, FadeWithW_GoesDown) {
    mix->fade = 6;
    act({}, {KEY_A, KEY_W});
    EXPECT_EQ(mix->fade, 5);
    act({KEY_W}, {KEY_A});
    EXPECT_EQ(mix->fade, 4);
}

TEST_F(KeysMix, Tab_TogglesThePanelWhenAlone) {
    keys->anyKeyCount = 1;
    act({KEY_TAB});
    EXPECT_EQ(mix->showUI, 1);
    act({}, {KEY_TAB});
    EXPECT_EQ(mix->showUI, 1);
    act({KEY_TAB});
    EXPECT_EQ(mix->showUI, 0);
    keys->anyKeyCount = 2;
    act({KEY_TAB});
    EXPECT_EQ(mix->showUI, 0);
    keys->anyKeyCount = 3;
    act({KEY_TAB}, {KEY_A});
    EXPECT_EQ(mix->showUI, 0);
}

TEST_F(KeysMix, ControllerEntry13_TogglesThePanel) {
    act({PAD_SHOW_UI});
    EXPECT_EQ(mix->showUI, 1);
    act({}, {PAD_SHOW_UI});
    EXPECT_EQ(mix->showUI, 1);
    act({PAD_SHOW_UI});
    EXPECT_EQ(mix->showUI, 0);
    keys->anyKeyCount = 1;  // both at once cancel
    act({KEY_TAB, PAD_SHOW_UI});
    EXPECT_EQ(mix->showUI, 0);
}

TEST_F(KeysMix, ModeKeys_ChooseTheirModes) {
    const struct {
        int key, mode;
    } cases[] = {{KEY_1, 0}, {KEY_2, 2}, {KEY_3, 1}, {KEY_4, 4}, {KEY_5, 3}, {KEY_6, 6}};
    for (const auto& each : cases) {
        mix->mode = MODE_NOTHING;
        act({}, {each.key});
        EXPECT_EQ(mix->mode, MODE_NOTHING);
        act({each.key});
        EXPECT_EQ(mix->mode, each.mode) << each.key;
    }
}

TEST_F(KeysMix, SeveralModeKeys_LastOfTheRowWins) {
    act({KEY_1, KEY_2, KEY_3, KEY_4, KEY_5, KEY_6});
    EXPECT_EQ(mix->mode, MODE_HALF_HALF);
    act({KEY_5, KEY_4, KEY_1});
    EXPECT_EQ(mix->mode, MODE_KEY);
    act({KEY_1, KEY_2});
    EXPECT_EQ(mix->mode, MODE_BLEND);
}

TEST_F(KeysMix, LayerChoice_UpIsTopDownIsBottom) {
    act({KEY_DOWN});
    EXPECT_EQ(mix->activeLayer, 0);
    act({KEY_UP});
    EXPECT_EQ(mix->activeLayer, 1);
    act({PAD_DOWN});
    EXPECT_EQ(mix->activeLayer, 0);
    act({PAD_UP});
    EXPECT_EQ(mix->activeLayer, 1);
}

// Key up, key down, controller up, controller down: the last one wins.
TEST_F(KeysMix, SeveralLayerChoices_InOrder) {
    act({KEY_UP, KEY_DOWN});
    EXPECT_EQ(mix->activeLayer, 0);
    act({KEY_DOWN, PAD_UP});
    EXPECT_EQ(mix->activeLayer, 1);
    act({KEY_UP, PAD_UP, PAD_DOWN});
    EXPECT_EQ(mix->activeLayer, 0);
}

TEST_F(KeysMix, Hold_WhileSpaceOrController) {
    for (const int slot : {KEY_SPACE, PAD_HOLD}) {
        act({slot});
        EXPECT_EQ(mix->hold, 1);
        act({}, {slot});
        EXPECT_EQ(mix->hold, 1);
        act({});
        EXPECT_EQ(mix->hold, 0);
    }
}

TEST_F(KeysMix, Return_OpensTheOverMenuAndHidesThePanel) {
    mix->showUI = 1;
    act({KEY_RETURN});
    EXPECT_EQ(all->subState, SUB_OVERMENU);
    EXPECT_EQ(mix->showUI, 0);
    EXPECT_EQ(all->state, STATE_MIX);
}

TEST_F(KeysMix, ControllerEntries12And13_OpenTheOverMenu) {
    mix->showUI = 1;
    act({PAD_HOLD, PAD_SHOW_UI});  // entry 12 has only just gone down
    EXPECT_EQ(all->subState, SUB_PERFORMING);
    act({}, {PAD_HOLD});
    EXPECT_EQ(all->subState, SUB_PERFORMING);
    act({}, {PAD_SHOW_UI});
    EXPECT_EQ(all->subState, SUB_PERFORMING);
    mix->showUI = 1;
    act({PAD_SHOW_UI}, {PAD_HOLD});
    EXPECT_EQ(all->subState, SUB_OVERMENU);
    EXPECT_EQ(mix->showUI, 0);
    EXPECT_EQ(mix->hold, 1);
    all->subState = SUB_PERFORMING;
    act({}, {PAD_HOLD, PAD_SHOW_UI});
    EXPECT_EQ(all->subState, SUB_OVERMENU);
}

}  // namespace
