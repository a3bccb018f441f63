#include "tools/doctor/controller.h"

#include <SDL.h>

#include <cstdlib>

namespace doctor {

ControllerFacts controllersHere(const std::filesystem::path& devices) {
    ControllerFacts facts;
    facts.locked = lockedIn(devices);
    // As the launcher sets it for the program.
    setenv("SDL12COMPAT_USE_GAME_CONTROLLERS", "1", 0);
    if (SDL_InitSubSystem(SDL_INIT_JOYSTICK) != 0) {
        return facts;
    }
    facts.count = SDL_NumJoysticks();
    if (facts.count > 0) {
        const char* name = SDL_JoystickName(0);
        facts.name = name != nullptr ? name : "without a name";
        SDL_Joystick* first = SDL_JoystickOpen(0);
        facts.opens = first != nullptr;
        if (facts.opens) {
            facts.buttons = SDL_JoystickNumButtons(first);
            facts.hats = SDL_JoystickNumHats(first);
            SDL_JoystickClose(first);
        }
    }
    SDL_QuitSubSystem(SDL_INIT_JOYSTICK);
    return facts;
}

}  // namespace doctor
