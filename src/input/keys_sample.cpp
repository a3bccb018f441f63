// Samples keyboard, controller and mouse once a frame.
#include <SDL.h>

#include "common/geometry.h"
#include "core/all.h"
#include "core/display.h"
#include "core/globals.h"
#include "input/keys.h"

namespace {

struct KeyBinding {
    int slot;
    SDLKey key;
};

// Deliberate: "q" and "w" each drive two slots, a control and a filter letter.
// [quirk_q_and_w_drive_two_slots]
constexpr KeyBinding kKeyboard[] = {
    {KEY_UP, SDLK_UP},
    {KEY_RIGHT, SDLK_RIGHT},
    {KEY_DOWN, SDLK_DOWN},
    {KEY_LEFT, SDLK_LEFT},
    {KEY_A, SDLK_a},
    {KEY_X, SDLK_x},
    {KEY_Z, SDLK_z},
    {KEY_S, SDLK_s},
    {KEY_Q, SDLK_q},
    {KEY_W, SDLK_w},
    {KEY_TAB, SDLK_TAB},
    {KEY_SPACE, SDLK_SPACE},
    {KEY_RETURN, SDLK_RETURN},
    {KEY_BACKSPACE, SDLK_BACKSPACE},
    {KEY_1, SDLK_1},
    {KEY_2, SDLK_2},
    {KEY_3, SDLK_3},
    {KEY_4, SDLK_4},
    {KEY_5, SDLK_5},
    {KEY_6, SDLK_6},
    {22, SDLK_q},
    {23, SDLK_w},
    {24, SDLK_e},
    {25, SDLK_r},
    {26, SDLK_t},
    {27, SDLK_y},
    {28, SDLK_u},
    {29, SDLK_i},
    {30, SDLK_o},
    {KEY_F, SDLK_f},
};

// Slots whose sum is anyKeyCount.
constexpr int kWatched[] = {KEY_UP, KEY_RIGHT, KEY_DOWN, KEY_LEFT, KEY_A, KEY_Z,      KEY_X,
                            KEY_S,  KEY_Q,     KEY_W,    KEY_1,    KEY_2, KEY_RETURN, KEY_TAB};

// Up, just down, down on: 0, 1, 2.
void sample(int32_t& slot, bool down) {
    if (!down) {
        slot = KEY_UP_STATE;
    } else if (slot < KEY_HELD) {
        ++slot;
    }
}

void sampleKeyboard(c_keys& input) {
    const Uint8* down = SDL_GetKeyState(nullptr);
    for (const KeyBinding& binding : kKeyboard) {
        sample(input.gKeys[binding.slot], down[binding.key] != 0);
    }
}

// An unassigned entry asks for button 99, which no controller has.
void sampleController(c_keys& input) {
    if (SDL_NumJoysticks() <= 0) {
        return;
    }
    for (int entry = 0; entry < kPadEntries; ++entry) {
        const int button = input.padButton[entry];
        sample(input.gKeys[kSlotOfPadEntry[entry]],
               button >= 0 && SDL_JoystickGetButton(joy, button) != 0);
    }
}

void countWatchedKeys(c_keys& input) {
    input.anyKeyCount = 0;
    for (const int slot : kWatched) {
        input.anyKeyCount += input.gKeys[slot];
    }
}

// A click or key press is visible for the one frame that read its event.
void promoteEdges(c_keys& input) {
    if (input.mouseClick != 0) {
        input.mouseHeld = 1;
        input.mouseClick = 0;
    }
    if (input.keyDown != 0) {
        input.keyHeld = 1;
        input.keyDown = 0;
    }
}

void moveMouse(c_keys& input, int windowX, int windowY) {
    const Point offset = pictureOffset(all->appW, all->appH);
    input.mouseX = windowX - offset.x;
    input.mouseY = windowY - offset.y;
}

void handleEvent(c_keys& input, const SDL_Event& event) {
    switch (event.type) {
        case SDL_KEYDOWN:
            if (input.keyHeld == 0) {
                input.keyDown = 1;
            }
            input.lastKeySym = event.key.keysym.sym;
            break;
        case SDL_KEYUP:
            input.keyDown = 0;
            input.keyHeld = 0;
            input.lastKeySym = 0;
            break;
        case SDL_MOUSEMOTION:
            moveMouse(input, event.motion.x, event.motion.y);
            break;
        case SDL_MOUSEBUTTONDOWN:
            input.mouseClick = 1;
            moveMouse(input, event.button.x, event.button.y);
            break;
        case SDL_MOUSEBUTTONUP:
            input.mouseClick = 0;
            input.mouseHeld = 0;
            break;
        case SDL_JOYBUTTONDOWN:
            ++_debugInt;
            break;
        case SDL_QUIT:
            isExit = 0;
            break;
        default:
            break;
    }
}

}  // namespace

void c_keys::updateGKeys() {
    sampleKeyboard(*this);
    if (pressed(KEY_F)) {
        toggleFullScreen();
    }
    sampleController(*this);
    countWatchedKeys(*this);
    promoteEdges(*this);
    while (SDL_PollEvent(&g_Event) != 0) {
        handleEvent(*this, g_Event);
    }
}
