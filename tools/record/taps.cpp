// Between the program and SDL: the linker leads the program's calls of these functions here
// (--wrap), and from here they go on to SDL.
#include "tools/record/taps.h"

#include <SDL.h>

#include "core/globals.h"

namespace {

maker::Recorder* recorder = nullptr;
SDL_EventFilter programs = nullptr;  // filter of events

// SDL asks before it queues an event; what is refused has been told to the program as well.
int listen(const SDL_Event* event) {
    recorder->hear(*event);
    return programs(event);
}

}  // namespace

namespace maker {

void tapInto(Recorder& listener) {
    recorder = &listener;
}

}  // namespace maker

extern "C" {

Uint8* __real_SDL_GetKeyState(int* count);
int __real_SDL_PollEvent(SDL_Event* event);
void __real_SDL_SetEventFilter(SDL_EventFilter filter);
Uint8 __real_SDL_JoystickGetButton(SDL_Joystick* joystick, int button);

Uint8* __wrap_SDL_GetKeyState(int* count) {
    Uint8* const down = __real_SDL_GetKeyState(count);
    recorder->frameBegins(fps, down);
    return down;
}

int __wrap_SDL_PollEvent(SDL_Event* event) {
    const int found = __real_SDL_PollEvent(event);
    if (found == 0) {
        recorder->allRead();
    }
    return found;
}

void __wrap_SDL_SetEventFilter(SDL_EventFilter filter) {
    programs = filter;
    __real_SDL_SetEventFilter(listen);
}

Uint8 __wrap_SDL_JoystickGetButton(SDL_Joystick* joystick, int button) {
    const Uint8 down = __real_SDL_JoystickGetButton(joystick, button);
    recorder->padAsked(button, down != 0);
    return down;
}

}  // extern "C"
