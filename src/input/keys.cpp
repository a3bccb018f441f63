// The input state: set up, sampled once a frame, and handed to the screen shown.
#include "input/keys.h"

#include <SDL.h>

#include <algorithm>

#include "common/geometry.h"
#include "core/all.h"
#include "core/display.h"
#include "core/globals.h"

namespace {

struct KeyBinding {
    InputSlot slot;
    SDLKey key;
};

// Deliberate: "q" and "w" each drive two slots, a control and a filter letter.
// [quirk_q_and_w_drive_two_slots]
constexpr KeyBinding kKeyboard[] = {
    {KEY_UP, SDLK_UP},         {KEY_RIGHT, SDLK_RIGHT},
    {KEY_DOWN, SDLK_DOWN},     {KEY_LEFT, SDLK_LEFT},
    {KEY_A, SDLK_a},           {KEY_X, SDLK_x},
    {KEY_Z, SDLK_z},           {KEY_S, SDLK_s},
    {KEY_Q, SDLK_q},           {KEY_W, SDLK_w},
    {KEY_TAB, SDLK_TAB},       {KEY_SPACE, SDLK_SPACE},
    {KEY_RETURN, SDLK_RETURN}, {KEY_BACKSPACE, SDLK_BACKSPACE},
    {KEY_1, SDLK_1},           {KEY_2, SDLK_2},
    {KEY_3, SDLK_3},           {KEY_4, SDLK_4},
    {KEY_5, SDLK_5},           {KEY_6, SDLK_6},
    {KEY_FILTER_Q, SDLK_q},    {KEY_FILTER_W, SDLK_w},
    {KEY_FILTER_E, SDLK_e},    {KEY_FILTER_R, SDLK_r},
    {KEY_FILTER_T, SDLK_t},    {KEY_FILTER_Y, SDLK_y},
    {KEY_FILTER_U, SDLK_u},    {KEY_FILTER_I, SDLK_i},
    {KEY_FILTER_O, SDLK_o},    {KEY_F, SDLK_f},
};

constexpr int kWheelRight = 7;  // buttons 4 to 7: up, down, left, right

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
void sampleController(c_keys& input, SDL_Joystick* controller) {
    if (SDL_NumJoysticks() <= 0) {
        return;
    }
    for (int entry = 0; entry < kPadEntries; ++entry) {
        const int button = input.padButton[entry];
        sample(input.gKeys[kSlotOfPadEntry[entry]],
               button >= 0 && SDL_JoystickGetButton(controller, button) != 0);
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
        input.mouseHeld = input.clickReleased != 0 ? 0 : 1;
        input.mouseClick = 0;
        input.clickReleased = 0;
    }
    if (input.keyDown != 0) {
        input.keyHeld = 1;
        input.keyDown = 0;
    }
}

// `picture`: its top left in the window.
void moveMouse(c_keys& input, Point picture, int windowX, int windowY) {
    input.mouseX = windowX - picture.x;
    input.mouseY = windowY - picture.y;
}

void pressKey(c_keys& input, const SDL_keysym& key) {
    if (input.keyHeld == 0) {
        input.keyDown = 1;
    }
    input.lastKeySym = key.sym;
    if (input.typedCount < kTypedKeys) {
        input.typed[input.typedCount] = {key.sym, key.unicode};
        ++input.typedCount;
    }
}

void handleEvent(c_keys& input, Point picture, const SDL_Event& event) {
    switch (event.type) {
        case SDL_KEYDOWN:
            pressKey(input, event.key.keysym);
            break;
        case SDL_KEYUP:
            input.keyDown = 0;
            input.keyHeld = 0;
            input.lastKeySym = 0;
            break;
        case SDL_MOUSEBUTTONDOWN:
            input.mouseClick = 1;
            input.clickReleased = 0;
            moveMouse(input, picture, event.button.x, event.button.y);
            break;
        case SDL_MOUSEBUTTONUP:
            // A press of this frame stays a click for its one frame, however short it was.
            input.clickReleased = input.mouseClick;
            input.mouseHeld = 0;
            break;
        default:
            break;
    }
}

// The wheel, up and down and to the sides, comes as buttons.
bool isWheel(int button) {
    return button >= SDL_BUTTON_WHEELUP && button <= kWheelRight;
}

int notchOf(int button) {
    return button == SDL_BUTTON_WHEELUP ? -1 : button == SDL_BUTTON_WHEELDOWN ? 1 : 0;
}

// True for what goes into SDL's queue, which holds 128 events and drops the rest: motion, the wheel
// and what nobody reads would fill it within a frame and cost a press. Of motion the last place
// counts, of the wheel the sum.
bool belongsInQueue(c_keys& input, const SDL_Event& event) {
    switch (event.type) {
        case SDL_MOUSEMOTION:
            input.moved = 1;
            input.movedX = event.motion.x;
            input.movedY = event.motion.y;
            return false;
        case SDL_MOUSEBUTTONDOWN:
            if (isWheel(event.button.button)) {
                input.turned += notchOf(event.button.button);
                return false;
            }
            // A press brings its own place.
            input.moved = 0;
            return true;
        case SDL_MOUSEBUTTONUP:
            return !isWheel(event.button.button);
        case SDL_KEYDOWN:
        case SDL_KEYUP:
        case SDL_JOYBUTTONDOWN:
        case SDL_QUIT:
            return true;
        default:
            return false;
    }
}

// What came without taking room in the queue.
void takeMotionAndWheel(c_keys& input, Point picture) {
    if (input.moved != 0) {
        moveMouse(input, picture, input.movedX, input.movedY);
        input.moved = 0;
    }
    input.wheel = input.turned;
    input.turned = 0;
}

}  // namespace

void c_keys::initKeys() {
    std::fill(std::begin(gKeys), std::end(gKeys), KEY_UP_STATE);
    anyKeyCount = 0;
    mouseClick = 0;
    mouseHeld = 0;
    keyDown = 0;
    keyHeld = 0;
    clickReleased = 0;
    wheel = 0;
    typedCount = 0;
    writing = 0;
    moved = 0;
    turned = 0;
    SDL_SetEventFilter(
        [](const SDL_Event* event) { return belongsInQueue(*keys, *event) ? 1 : 0; });
}

void c_keys::initController() {
    std::fill(std::begin(padButton), std::end(padButton), kPadUnassigned);
}

void c_keys::updateGKeys() {
    sampleKeyboard(*this);
    if (pressed(KEY_F) && writing == 0) {
        toggleFullScreen();
    }
    sampleController(*this, joy);
    countWatchedKeys(*this);
    promoteEdges(*this);

    const Point picture = pictureOffset(all->appW, all->appH);
    typedCount = 0;
    while (SDL_PollEvent(&g_Event) != 0) {
        handleEvent(*this, picture, g_Event);
        _debugInt += g_Event.type == SDL_JOYBUTTONDOWN ? 1 : 0;
        isExit = g_Event.type == SDL_QUIT ? 0 : isExit;
    }
    takeMotionAndWheel(*this, picture);
}

void c_keys::actions() {
    switch (all->state) {
        case STATE_HOME:
            actionsHome();
            break;
        case STATE_PLAYLISTS:
            actionsEditPlaylists();
            break;
        case STATE_MIX:
            if (all->subState == SUB_PERFORMING) {
                actionsMix();
            } else if (all->subState == SUB_OVERMENU) {
                actionsOverMenu();
            }
            break;
        case STATE_OPTIONS:
            actionsOptions();
            break;
        default:
            break;
    }
}
