#include "tools/ask/pads.h"

#include <cstdlib>

namespace ask {

namespace {

constexpr long kSettled = 300;  // milliseconds
// As many as the program knows; the layer may count more of them than it says.
constexpr int kButtons = 50;

}  // namespace

Pads::Pads() {
    // The layer over SDL 2 else hears them only while a window of its own has the keyboard.
    setenv("SDL_JOYSTICK_ALLOW_BACKGROUND_EVENTS", "1", 0);
    if (SDL_Init(SDL_INIT_JOYSTICK | SDL_INIT_NOPARACHUTE) != 0) {
        return;
    }
    for (int i = 0; i < SDL_NumJoysticks(); ++i) {
        if (SDL_Joystick* joystick = SDL_JoystickOpen(i)) {
            pads_.push_back({joystick, std::vector<bool>(kButtons)});
        }
    }
}

Pads::~Pads() {
    SDL_Quit();
}

bool Pads::pressed(long now) {
    if (pads_.empty()) {
        return false;
    }
    SDL_JoystickUpdate();
    bool any = false;
    for (Pad& pad : pads_) {
        for (int button = 0; button < kButtons; ++button) {
            const auto place = static_cast<size_t>(button);
            const bool down = SDL_JoystickGetButton(pad.joystick, button) != 0;
            any = any || (down && !pad.down[place] && now >= kSettled);
            pad.down[place] = down;
        }
    }
    return any;
}

}  // namespace ask
