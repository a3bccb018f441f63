// The filter letters of the mix, and what they take from the arrows.
#include "state/stage.h"

namespace {

class KeysMixFilters : public StageTest {
protected:
    KeysMixFilters() {
        all->state = STATE_MIX;
        all->subState = SUB_PERFORMING;
        mix->nbDecks = 5;
        for (int slot = 0; slot < 5; ++slot) {
            pretendClip(slot, 20);
        }
        mix->layer[1] = {2, 7, PLAY_FORWARD};
    }

    static void act(const std::vector<int>& pressed, const std::vector<int>& held = {}) {
        setKeys(pressed, held);
        keys->actionsMix();
    }
    static FilterSlot& slotOf(int layer, int index) { return _filters->slots[layer][index]; }
};

TEST_F(KeysMixFilters, EachLetter_SelectsItsSlot) {
    for (int letter = 0; letter < 9; ++letter) {
        for (const bool pressed : {true, false}) {
            _filters->selected = (letter + 1) % 9;
            mix->filterKeyHeld = 0;
            if (pressed) {
                act({22 + letter});
            } else {
                act({}, {22 + letter});
            }
            EXPECT_EQ(_filters->selected, letter);
            EXPECT_EQ(mix->filterKeyHeld, 2);
        }
    }
}

TEST_F(KeysMixFilters, QAndO_SelectSlot8) {
    act({}, {22, 30});
    EXPECT_EQ(_filters->selected, 8);
    act({30, 24, 23});
    EXPECT_EQ(_filters->selected, 8);
    act({}, {24, 23});
    EXPECT_EQ(_filters->selected, 2);
}

TEST_F(KeysMixFilters, NoLetter_SelectionStaysAndTheMarkIsCleared) {
    act({}, {26});
    act({});
    EXPECT_EQ(_filters->selected, 4);
    EXPECT_EQ(mix->filterKeyHeld, 0);
}

TEST_F(KeysMixFilters, LetterWithArrow_SetsTheDirection) {
    const struct {
        int key, direction;
    } cases[] = {{KEY_UP, 0}, {KEY_RIGHT, 1}, {KEY_DOWN, 2}, {KEY_LEFT, 3}};
    act({24});
    for (const auto& each : cases) {
        slotOf(1, 2).dir = 9;
        act({}, {24, each.key});
        EXPECT_EQ(slotOf(1, 2).dir, 9);
        act({each.key}, {24});
        EXPECT_EQ(slotOf(1, 2).dir, each.direction) << each.key;
        EXPECT_EQ(mix->layer[1].deck, 2);
        EXPECT_EQ(mix->activeLayer, 1);
    }
}

// Up, right, down, left: the last pressed one of the row wins.
TEST_F(KeysMixFilters, SeveralArrows_InOrder) {
    act({24});
    act({KEY_UP, KEY_RIGHT, KEY_DOWN, KEY_LEFT}, {24});
    EXPECT_EQ(slotOf(1, 2).dir, 3);
    act({KEY_UP, KEY_DOWN}, {24});
    EXPECT_EQ(slotOf(1, 2).dir, 2);
    act({KEY_UP, KEY_RIGHT}, {24});
    EXPECT_EQ(slotOf(1, 2).dir, 1);
}

TEST_F(KeysMixFilters, Direction_OfTheActiveLayerOnly) {
    mix->activeLayer = 0;
    act({24});
    act({KEY_LEFT}, {24});
    EXPECT_EQ(slotOf(0, 2).dir, 3);
    EXPECT_EQ(slotOf(1, 2).dir, 0);
    EXPECT_EQ(slotOf(0, 1).dir, 0);
}

TEST_F(KeysMixFilters, Backspace_SwitchesTheSlotOnAndOff) {
    act({24});
    act({KEY_BACKSPACE}, {24});
    EXPECT_EQ(slotOf(1, 2).on, 1);
    act({}, {24, KEY_BACKSPACE});
    EXPECT_EQ(slotOf(1, 2).on, 1);
    act({KEY_BACKSPACE}, {24});
    EXPECT_EQ(slotOf(1, 2).on, 0);
    EXPECT_EQ(slotOf(0, 2).on, 0);
}

TEST_F(KeysMixFilters, BackspaceWithoutLetter_DoesNothing) {
    _filters->selected = 2;
    act({KEY_BACKSPACE});
    EXPECT_EQ(slotOf(1, 2).on, 0);
}

TEST_F(KeysMixFilters, ControllerArrows_DoNotTouchTheFilter) {
    act({24});
    act({PAD_RIGHT, PAD_DOWN}, {24});
    EXPECT_EQ(slotOf(1, 2).dir, 0);
    EXPECT_EQ(mix->layer[1].deck, 2);
    EXPECT_EQ(mix->activeLayer, 1);
}

// The mark that the deck change reads is that of the frame before.
TEST_F(KeysMixFilters, LetterAndArrowInTheSameFrame_ChangeTheDeckToo) {
    act({24, KEY_RIGHT});
    EXPECT_EQ(mix->layer[1].deck, 3);
    EXPECT_EQ(slotOf(1, 2).dir, 1);
    act({KEY_RIGHT}, {24});
    EXPECT_EQ(mix->layer[1].deck, 3);
}

TEST_F(KeysMixFilters, ArrowInTheFrameOfTheRelease_StillNotTheDecks) {
    act({24});
    act({KEY_RIGHT});
    EXPECT_EQ(mix->layer[1].deck, 2);
    EXPECT_EQ(slotOf(1, 2).dir, 0);
    act({KEY_RIGHT});
    EXPECT_EQ(mix->layer[1].deck, 3);
}

// "w" is a control and the letter of slot 1 at once.
TEST_F(KeysMixFilters, W_BlocksTheControlsAndSelectsSlot1) {
    mix->fade = 3;
    act({KEY_Z, KEY_S, KEY_W, 23}, {KEY_A});
    EXPECT_EQ(mix->layer[1].direction, PLAY_FORWARD);
    EXPECT_EQ(mix->flash, 0);
    EXPECT_EQ(mix->fade, 2);
    EXPECT_EQ(_filters->selected, 1);
    EXPECT_EQ(mix->filterKeyHeld, 2);
}

TEST_F(KeysMixFilters, ModeKeys_WorkWhileALetterIsHeld) {
    act({24});
    act({KEY_2}, {24});
    EXPECT_EQ(mix->mode, MODE_BLEND);
    EXPECT_EQ(mix->filterKeyHeld, 2);
}

}  // namespace
