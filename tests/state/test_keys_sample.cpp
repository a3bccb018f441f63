// Keyboard, mouse and events, sampled from scripted SDL.
#include <algorithm>

#include "state/stage.h"

namespace {

struct Binding {
    SDLKey key;
    std::vector<int> slots;
};

// clang-format off
const std::vector<Binding> kBindings = {
    {SDLK_a, {0}},      {SDLK_z, {1}},       {SDLK_x, {2}},     {SDLK_s, {3}},
    {SDLK_q, {4, 22}},  {SDLK_w, {5, 23}},   {SDLK_RETURN, {6}}, {SDLK_UP, {8}},
    {SDLK_RIGHT, {9}},  {SDLK_DOWN, {10}},   {SDLK_LEFT, {11}}, {SDLK_f, {12}},
    {SDLK_1, {13}},     {SDLK_2, {14}},      {SDLK_3, {15}},    {SDLK_4, {16}},
    {SDLK_5, {17}},     {SDLK_6, {18}},      {SDLK_TAB, {19}},  {SDLK_SPACE, {20}},
    {SDLK_BACKSPACE, {21}}, {SDLK_e, {24}},  {SDLK_r, {25}},    {SDLK_t, {26}},
    {SDLK_y, {27}},     {SDLK_u, {28}},      {SDLK_i, {29}},    {SDLK_o, {30}},
};
// clang-format on

class KeysSample : public StageTest {
protected:
    static void hold(SDLKey key, bool down = true) { scripted().keysDown[key] = down ? 1 : 0; }
    static void post(const SDL_Event& event) { scripted().events.push_back(event); }
    static void sample() { keys->updateGKeys(); }
};

TEST_F(KeysSample, Slot_Cycles0120) {
    const int expected[] = {0, 1, 2, 2, 0, 1, 0};
    const bool down[] = {false, true, true, true, false, true, false};
    for (int frame = 0; frame < 7; ++frame) {
        hold(SDLK_x, down[frame]);
        sample();
        EXPECT_EQ(keys->gKeys[KEY_X], expected[frame]) << frame;
    }
}

TEST_F(KeysSample, EveryKey_DrivesItsSlotsAndNoOther) {
    for (const Binding& each : kBindings) {
        hold(each.key);
        sample();
        for (int slot = 0; slot < kInputSlots; ++slot) {
            const bool own =
                std::find(each.slots.begin(), each.slots.end(), slot) != each.slots.end();
            EXPECT_EQ(keys->gKeys[slot], own ? 1 : 0) << "key " << each.key << ", slot " << slot;
        }
        hold(each.key, false);
        sample();
    }
}

TEST_F(KeysSample, OtherKeys_DriveNothing) {
    for (int key = 0; key < SDLK_LAST; ++key) {
        const bool bound = std::any_of(kBindings.begin(), kBindings.end(),
                                       [&](const Binding& each) { return each.key == key; });
        hold(static_cast<SDLKey>(key), !bound);
    }
    sample();
    EXPECT_EQ(std::count(std::begin(keys->gKeys), std::end(keys->gKeys), 0), kInputSlots);
}

TEST_F(KeysSample, quirk_q_and_w_drive_two_slots) {
    hold(SDLK_q);
    sample();
    EXPECT_EQ(keys->gKeys[4], 1);
    EXPECT_EQ(keys->gKeys[22], 1);
    hold(SDLK_w);
    sample();
    EXPECT_EQ(keys->gKeys[4], 2);
    EXPECT_EQ(keys->gKeys[22], 2);
    EXPECT_EQ(keys->gKeys[5], 1);
    EXPECT_EQ(keys->gKeys[23], 1);
}

TEST_F(KeysSample, AnyKeyCount_SumOfTheWatchedSlots) {
    const SDLKey watched[] = {SDLK_UP, SDLK_RIGHT, SDLK_DOWN,   SDLK_LEFT, SDLK_a,
                              SDLK_z,  SDLK_x,     SDLK_s,      SDLK_q,    SDLK_w,
                              SDLK_1,  SDLK_2,     SDLK_RETURN, SDLK_TAB};
    for (const SDLKey key : watched) {
        hold(key);
        sample();
        EXPECT_EQ(keys->anyKeyCount, 1) << key;
        sample();
        EXPECT_EQ(keys->anyKeyCount, 2) << key;
        hold(key, false);
        sample();
        EXPECT_EQ(keys->anyKeyCount, 0) << key;
    }
    for (const SDLKey key : watched) {
        hold(key);
    }
    sample();
    EXPECT_EQ(keys->anyKeyCount, 14);
}

TEST_F(KeysSample, AnyKeyCount_OthersDoNotCount) {
    for (const SDLKey key :
         {SDLK_3, SDLK_4, SDLK_5, SDLK_6, SDLK_SPACE, SDLK_BACKSPACE, SDLK_e, SDLK_o, SDLK_f}) {
        hold(key);
    }
    sample();
    EXPECT_EQ(keys->anyKeyCount, 0);
}

TEST_F(KeysSample, F_TogglesFullScreenOncePerPress) {
    for (const int state : {STATE_INTRO, STATE_HOME, STATE_PLAYLISTS, STATE_MIX, STATE_OPTIONS}) {
        all->state = state;
        scripted().modeCalls.clear();
        hold(SDLK_f);
        sample();
        sample();
        sample();
        EXPECT_EQ(scripted().modeCalls.size(), 1u) << state;
        hold(SDLK_f, false);
        sample();
        EXPECT_EQ(scripted().modeCalls.size(), 1u) << state;
    }
    EXPECT_NE(screen[1]->flags & SDL_FULLSCREEN, 0u);  // five presses
}

TEST_F(KeysSample, MouseClick_OneFrameThenHeldUntilReleased) {
    post(mouseButton(SDL_MOUSEBUTTONDOWN, 400, 300));
    sample();
    EXPECT_EQ(keys->mouseClick, 1);
    EXPECT_EQ(keys->mouseHeld, 0);
    EXPECT_EQ(keys->mouseX, 80);
    EXPECT_EQ(keys->mouseY, 120);
    for (int frame = 0; frame < 3; ++frame) {
        sample();
        EXPECT_EQ(keys->mouseClick, 0);
        EXPECT_EQ(keys->mouseHeld, 1);
    }
    post(mouseButton(SDL_MOUSEBUTTONUP, 500, 300));
    sample();
    EXPECT_EQ(keys->mouseClick, 0);
    EXPECT_EQ(keys->mouseHeld, 0);
    EXPECT_EQ(keys->mouseX, 80);  // the release does not move the pointer
}

TEST_F(KeysSample, ReleaseInTheNextFrame_OneFrameOfClickOnly) {
    post(mouseButton(SDL_MOUSEBUTTONDOWN, 400, 300));
    sample();
    EXPECT_EQ(keys->mouseClick, 1);
    post(mouseButton(SDL_MOUSEBUTTONUP, 400, 300));
    sample();
    EXPECT_EQ(keys->mouseClick, 0);
    EXPECT_EQ(keys->mouseHeld, 0);
}

TEST_F(KeysSample, PressAndReleaseInOneFrame_OneFrameOfClickThenNothing) {
    post(mouseButton(SDL_MOUSEBUTTONDOWN, 400, 300));
    post(mouseButton(SDL_MOUSEBUTTONUP, 400, 300));
    sample();
    EXPECT_EQ(keys->mouseClick, 1);
    EXPECT_EQ(keys->mouseHeld, 0);
    for (int frame = 0; frame < 2; ++frame) {
        sample();
        EXPECT_EQ(keys->mouseClick, 0);
        EXPECT_EQ(keys->mouseHeld, 0);
    }
}

// The second press of a quick double click may still be down.
TEST_F(KeysSample, PressReleasePressInOneFrame_ClickThenHeld) {
    post(mouseButton(SDL_MOUSEBUTTONDOWN, 400, 300));
    post(mouseButton(SDL_MOUSEBUTTONUP, 400, 300));
    post(mouseButton(SDL_MOUSEBUTTONDOWN, 400, 300));
    sample();
    EXPECT_EQ(keys->mouseClick, 1);
    sample();
    EXPECT_EQ(keys->mouseClick, 0);
    EXPECT_EQ(keys->mouseHeld, 1);
}

// A release alone, as after a press that another window took.
TEST_F(KeysSample, ReleaseWithoutPress_NoClick) {
    post(mouseButton(SDL_MOUSEBUTTONUP, 400, 300));
    sample();
    EXPECT_EQ(keys->mouseClick, 0);
    post(mouseButton(SDL_MOUSEBUTTONDOWN, 400, 300));
    sample();
    sample();
    EXPECT_EQ(keys->mouseHeld, 1);
}

TEST_F(KeysSample, KeyDown_OneFrameThenHeldAndRepeatsAreNotNew) {
    post(keyEvent(SDL_KEYDOWN, SDLK_k));
    sample();
    EXPECT_EQ(keys->keyDown, 1);
    EXPECT_EQ(keys->keyHeld, 0);
    EXPECT_EQ(keys->lastKeySym, SDLK_k);
    sample();
    EXPECT_EQ(keys->keyDown, 0);
    EXPECT_EQ(keys->keyHeld, 1);
    post(keyEvent(SDL_KEYDOWN, SDLK_l));
    sample();
    EXPECT_EQ(keys->keyDown, 0);
    EXPECT_EQ(keys->keyHeld, 1);
    EXPECT_EQ(keys->lastKeySym, SDLK_l);
    post(keyEvent(SDL_KEYUP, SDLK_k));
    sample();
    EXPECT_EQ(keys->keyDown, 0);
    EXPECT_EQ(keys->keyHeld, 0);
    EXPECT_EQ(keys->lastKeySym, 0);
}

TEST_F(KeysSample, MouseMotion_PictureCoordinates) {
    post(mouseMoved(320, 180));
    sample();
    EXPECT_EQ(keys->mouseX, 0);
    EXPECT_EQ(keys->mouseY, 0);
    post(mouseMoved(0, 0));
    sample();
    EXPECT_EQ(keys->mouseX, -320);
    EXPECT_EQ(keys->mouseY, -180);
    post(mouseMoved(1279, 719));
    sample();
    EXPECT_EQ(keys->mouseX, 959);
    EXPECT_EQ(keys->mouseY, 539);
}

// The offset is that of the application resolution at the moment of the event.
TEST_F(KeysSample, MouseAfterAChangeOfResolution_NewOffset) {
    all->applyResolution(1024, 768);
    post(mouseMoved(192, 204));
    sample();
    EXPECT_EQ(keys->mouseX, 0);
    EXPECT_EQ(keys->mouseY, 0);
    all->applyResolution(637, 357);  // -3 / 2 is -1
    post(mouseMoved(0, 0));
    sample();
    EXPECT_EQ(keys->mouseX, 1);
    EXPECT_EQ(keys->mouseY, 1);
}

TEST_F(KeysSample, Queue_DrainedInOrder) {
    post(mouseMoved(320, 180));
    post(plainEvent(SDL_ACTIVEEVENT));
    post(mouseMoved(330, 185));
    post(keyEvent(SDL_KEYDOWN, SDLK_k));
    sample();
    EXPECT_TRUE(scripted().events.empty());
    EXPECT_EQ(keys->mouseX, 10);
    EXPECT_EQ(keys->mouseY, 5);
    EXPECT_EQ(keys->keyDown, 1);
}

// Middle and right do what left does.
TEST_F(KeysSample, OtherButtons_ClickAndHoldLikeTheLeftOne) {
    for (const int button : {SDL_BUTTON_MIDDLE, SDL_BUTTON_RIGHT}) {
        SDL_Event down = mouseButton(SDL_MOUSEBUTTONDOWN, 400, 300);
        down.button.button = static_cast<uint8_t>(button);
        post(mouseMoved(0, 0));
        post(down);
        sample();
        EXPECT_EQ(keys->mouseClick, 1) << button;
        EXPECT_EQ(keys->mouseHeld, 0) << button;
        EXPECT_EQ(keys->mouseX, 80) << button;
        EXPECT_EQ(keys->mouseY, 120) << button;
        sample();
        EXPECT_EQ(keys->mouseClick, 0) << button;
        EXPECT_EQ(keys->mouseHeld, 1) << button;
        SDL_Event up = mouseButton(SDL_MOUSEBUTTONUP, 400, 300);
        up.button.button = static_cast<uint8_t>(button);
        post(up);
        sample();
        EXPECT_EQ(keys->mouseClick, 0) << button;
        EXPECT_EQ(keys->mouseHeld, 0) << button;
    }
}

TEST_F(KeysSample, Quit_EndsInTheSameFrame) {
    post(plainEvent(SDL_QUIT));
    sample();
    EXPECT_EQ(isExit, 0);
}

TEST_F(KeysSample, JoyButtonEvent_CountsOnly) {
    post(plainEvent(SDL_JOYBUTTONDOWN));
    post(plainEvent(SDL_JOYBUTTONDOWN));
    sample();
    EXPECT_EQ(_debugInt, 2);
    EXPECT_EQ(std::count(std::begin(keys->gKeys), std::end(keys->gKeys), 0), kInputSlots);
}

}  // namespace
