// The joystick double: SDL's joystick calls, answered from a mapped file.
#include "app/joystick_double.h"

#include <SDL.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace {

const app::PadState* mapPad() {
    const char* path = getenv(app::kPadFileVariable);
    const int file = path != nullptr ? open(path, O_RDONLY | O_CLOEXEC) : -1;
    if (file < 0) {
        return nullptr;
    }
    struct stat status = {};
    void* bytes = MAP_FAILED;
    if (fstat(file, &status) == 0 && status.st_size >= static_cast<off_t>(sizeof(app::PadState))) {
        bytes = mmap(nullptr, sizeof(app::PadState), PROT_READ, MAP_SHARED, file, 0);
    }
    close(file);
    return bytes != MAP_FAILED ? static_cast<const app::PadState*>(bytes) : nullptr;
}

const app::PadState* pad() {
    static const app::PadState* state = mapPad();
    return state;
}

// What an opened joystick points to; nothing looks inside.
char opened;

}  // namespace

extern "C" {

int SDL_NumJoysticks(void) {
    return pad() != nullptr ? 1 : 0;
}

const char* SDL_JoystickName(int index) {
    return index == 0 && pad() != nullptr ? pad()->name : nullptr;
}

SDL_Joystick* SDL_JoystickOpen(int index) {
    return index == 0 && pad() != nullptr ? reinterpret_cast<SDL_Joystick*>(&opened) : nullptr;
}

int SDL_JoystickNumButtons(SDL_Joystick*) {
    return app::kPadButtons;
}

int SDL_JoystickNumHats(SDL_Joystick*) {
    return 0;
}

void SDL_JoystickClose(SDL_Joystick*) {}

Uint8 SDL_JoystickGetButton(SDL_Joystick* joystick, int button) {
    if (reinterpret_cast<char*>(joystick) != &opened || button < 0 || button >= app::kPadButtons) {
        return 0;
    }
    // The test changes the byte behind the compiler's back.
    return *static_cast<const volatile uint8_t*>(&pad()->buttons[button]);
}

}  // extern "C"
