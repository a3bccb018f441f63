// What comes as events: the wheel, typed keys, and more of them than SDL's queue holds.
#include "state/stage.h"

namespace {

SDL_Event button(uint8_t type, int number) {
    SDL_Event event = mouseButton(type, 400, 300);
    event.button.button = static_cast<uint8_t>(number);
    return event;
}

SDL_Event typedKey(SDLKey key, uint16_t character) {
    SDL_Event event = keyEvent(SDL_KEYDOWN, key);
    event.key.keysym.unicode = character;
    return event;
}

class KeysEvents : public StageTest {
protected:
    static void post(const SDL_Event& event) { scripted().events.push_back(event); }
    static void post(int count, const SDL_Event& event) {
        for (int i = 0; i < count; ++i) {
            post(event);
        }
    }
    static void turn(int number) {
        post(button(SDL_MOUSEBUTTONDOWN, number));
        post(button(SDL_MOUSEBUTTONUP, number));
    }
    static void sample() { keys->updateGKeys(); }
};

TEST_F(KeysEvents, Wheel_NeverClicks) {
    for (const int number : {4, 5, 6, 7}) {
        turn(number);
        sample();
        EXPECT_EQ(keys->mouseClick, 0) << number;
        sample();
        EXPECT_EQ(keys->mouseHeld, 0) << number;
    }
}

TEST_F(KeysEvents, WheelWhileTheButtonIsDown_TheButtonStaysDown) {
    post(button(SDL_MOUSEBUTTONDOWN, 1));
    sample();
    turn(5);
    sample();
    EXPECT_EQ(keys->mouseHeld, 1);
    EXPECT_EQ(keys->mouseClick, 0);
}

TEST_F(KeysEvents, Wheel_NotchesOfTheFrameAddUp) {
    turn(5);
    turn(5);
    turn(5);
    turn(4);
    turn(6);
    turn(7);
    sample();
    EXPECT_EQ(keys->wheel, 2);
    sample();
    EXPECT_EQ(keys->wheel, 0);
}

TEST_F(KeysEvents, OtherButtonsThanTheLeft_Click) {
    for (const int number : {1, 2, 3, 8, 9}) {
        post(button(SDL_MOUSEBUTTONDOWN, number));
        sample();
        EXPECT_EQ(keys->mouseClick, 1) << number;
        post(button(SDL_MOUSEBUTTONUP, number));
        sample();
        EXPECT_EQ(keys->mouseHeld, 0) << number;
    }
}

// SDL's queue holds 128: what need not be in it must not take the place of a press.
TEST_F(KeysEvents, MotionsBeforeAPress_ThePressCounts) {
    post(600, mouseMoved(700, 500));
    post(mouseButton(SDL_MOUSEBUTTONDOWN, 400, 300));
    sample();
    EXPECT_EQ(keys->mouseClick, 1);
    EXPECT_EQ(keys->mouseX, 80);
    EXPECT_EQ(keys->mouseY, 120);
}

TEST_F(KeysEvents, MotionsBeforeARelease_TheButtonComesUp) {
    post(mouseButton(SDL_MOUSEBUTTONDOWN, 400, 300));
    sample();
    post(600, mouseMoved(700, 500));
    post(mouseButton(SDL_MOUSEBUTTONUP, 700, 500));
    sample();
    EXPECT_EQ(keys->mouseHeld, 0);
    EXPECT_EQ(keys->mouseX, 380);
}

TEST_F(KeysEvents, MotionsBeforeTheClosing_TheProgramEnds) {
    post(600, mouseMoved(700, 500));
    post(plainEvent(SDL_QUIT));
    sample();
    EXPECT_EQ(isExit, 0);
}

TEST_F(KeysEvents, StickAndWheelBeforeAPress_ThePressCounts) {
    post(600, plainEvent(SDL_JOYAXISMOTION));
    post(600, button(SDL_MOUSEBUTTONDOWN, 5));
    post(600, plainEvent(SDL_ACTIVEEVENT));
    post(mouseButton(SDL_MOUSEBUTTONDOWN, 400, 300));
    sample();
    EXPECT_EQ(keys->mouseClick, 1);
    EXPECT_EQ(keys->wheel, 600);
}

// In the order in which they came, whatever is kept where.
TEST_F(KeysEvents, MotionAfterAPress_ThePointerIsWhereItWentLast) {
    post(mouseMoved(700, 500));
    post(mouseButton(SDL_MOUSEBUTTONDOWN, 400, 300));
    post(mouseMoved(420, 300));
    post(mouseMoved(440, 310));
    sample();
    EXPECT_EQ(keys->mouseClick, 1);
    EXPECT_EQ(keys->mouseX, 120);
    EXPECT_EQ(keys->mouseY, 130);
}

TEST_F(KeysEvents, TypedKeys_OfTheFrameInTheirOrder) {
    post(typedKey(SDLK_k, 'k'));
    post(keyEvent(SDL_KEYUP, SDLK_k));
    post(typedKey(SDLK_8, '*'));
    sample();
    ASSERT_EQ(keys->typedCount, 2);
    EXPECT_EQ(keys->typed[0].symbol, SDLK_k);
    EXPECT_EQ(keys->typed[0].character, 'k');
    EXPECT_EQ(keys->typed[1].character, '*');
    sample();
    EXPECT_EQ(keys->typedCount, 0);
}

TEST_F(KeysEvents, MoreTypedKeysThanAreKept_TheFirstOnes) {
    post(kTypedKeys + 20, typedKey(SDLK_k, 'k'));
    sample();
    EXPECT_EQ(keys->typedCount, kTypedKeys);
}

TEST_F(KeysEvents, FWhileLettersAreTyped_NoFullScreen) {
    keys->writing = 1;
    scripted().keysDown[SDLK_f] = 1;
    sample();
    EXPECT_TRUE(scripted().modeCalls.empty());
    // Still held when the page is left: not a press.
    keys->writing = 0;
    sample();
    EXPECT_TRUE(scripted().modeCalls.empty());
    scripted().keysDown[SDLK_f] = 0;
    sample();
    scripted().keysDown[SDLK_f] = 1;
    sample();
    EXPECT_EQ(scripted().modeCalls.size(), 1u);
}

}  // namespace
