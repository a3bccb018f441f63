// The controller, sampled from scripted SDL.
#include <algorithm>

#include "state/stage.h"

namespace {

class KeysController : public StageTest {
protected:
    static constexpr int kSlots[14] = {31, 32, 33, 34, 35, 36, 37, 38, 41, 42, 43, 44, 45, 46};
    KeysController() { scripted().joysticks = 1; }
    static void sample() { keys->updateGKeys(); }
};

TEST_F(KeysController, EveryEntry_DrivesItsSlot) {
    for (int entry = 0; entry < 14; ++entry) {
        keys->padButton[entry] = 13 - entry;
    }
    for (int entry = 0; entry < 14; ++entry) {
        scripted().buttonsDown = {13 - entry};
        sample();
        EXPECT_EQ(keys->gKeys[kSlots[entry]], 1) << entry;
        sample();
        EXPECT_EQ(keys->gKeys[kSlots[entry]], 2) << entry;
        EXPECT_EQ(std::count(std::begin(keys->gKeys), std::end(keys->gKeys), 0), kInputSlots - 1);
        scripted().buttonsDown.clear();
        sample();
        EXPECT_EQ(keys->gKeys[kSlots[entry]], 0) << entry;
    }
    EXPECT_EQ(keys->anyKeyCount, 0);
}

TEST_F(KeysController, UnassignedEntries_NeverReportAPress) {
    sample();
    EXPECT_EQ(scripted().buttonsAsked, std::vector<int>(14, 99));
    for (const int slot : kSlots) {
        EXPECT_EQ(keys->gKeys[slot], 0);
    }
}

// A file can bring in a negative number; no controller is asked for it.
TEST_F(KeysController, NegativeEntry_IsUpAndNotAskedFor) {
    keys->padButton[0] = -1;
    keys->gKeys[PAD_UP] = KEY_HELD;
    sample();
    EXPECT_EQ(keys->gKeys[PAD_UP], 0);
    EXPECT_EQ(std::count(scripted().buttonsAsked.begin(), scripted().buttonsAsked.end(), -1), 0);
}

TEST_F(KeysController, Unplugged_SlotsStayAndNoControllerCall) {
    keys->padButton[0] = 5;
    scripted().buttonsDown = {5};
    sample();
    ASSERT_EQ(keys->gKeys[PAD_UP], 1);
    scripted().joysticks = 0;
    scripted().buttonsAsked.clear();
    sample();
    sample();
    EXPECT_EQ(keys->gKeys[PAD_UP], 1);
    EXPECT_TRUE(scripted().buttonsAsked.empty());
}

TEST_F(KeysController, NoController_SlotsStayZero) {
    scripted().joysticks = 0;
    for (int32_t& button : keys->padButton) {
        button = 0;
    }
    scripted().buttonsDown = {0};
    sample();
    for (const int slot : kSlots) {
        EXPECT_EQ(keys->gKeys[slot], 0);
    }
    EXPECT_TRUE(scripted().buttonsAsked.empty());
}

}  // namespace
