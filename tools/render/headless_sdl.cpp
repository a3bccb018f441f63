#include "tools/render/headless_sdl.h"

#include <SDL_syswm.h>

#include <array>
#include <bitset>
#include <cstdio>
#include <deque>
#include <vector>

#include "common/rgb565.h"

namespace maker {

namespace {

constexpr size_t kQueue = 128;  // as SDL's
constexpr int kSlowest = 1001;  // ms of a frame that is told as 0 frames a second
constexpr int kThousand = 1000;
constexpr size_t kPadButtons = 256;

HeadlessStage stage;
std::array<Uint8, SDLK_LAST> keysDown;
std::bitset<kPadButtons> padDown;
std::deque<SDL_Event> queue;
SDL_EventFilter filter = nullptr;
bool polled = false;  // in this frame
Uint32 clockMs = 0;
int pointerX = 0;
int pointerY = 0;
SDL_VideoInfo display;
SDL_Surface* video = nullptr;
char pad;  // what an opened controller points to

void post(const SDL_Event& event) {
    if ((filter == nullptr || filter(&event) != 0) && queue.size() < kQueue) {
        queue.push_back(event);
    }
}

// The program releases the video surface once, which the library ignores; the second reference
// stands for that.
void closeVideo() {
    if (video != nullptr) {
        video->refcount = 1;
        SDL_FreeSurface(video);
        video = nullptr;
    }
}

}  // namespace

HeadlessStage& headlessStage() {
    return stage;
}

void setKey(int key, bool down) {
    keysDown.at(static_cast<size_t>(key)) = down ? 1 : 0;
}

// A key that is down already repeats.
void postKey(bool down, int key, uint16_t character) {
    SDL_Event event = {};
    event.type = down ? SDL_KEYDOWN : SDL_KEYUP;
    event.key.state = down ? SDL_PRESSED : SDL_RELEASED;
    event.key.keysym.sym = static_cast<SDLKey>(key);
    event.key.keysym.unicode = character;
    setKey(key, down);
    post(event);
}

void postPointer(int x, int y) {
    pointerX = x;
    pointerY = y;
    SDL_Event event = {};
    event.type = SDL_MOUSEMOTION;
    event.motion.x = static_cast<Uint16>(x);
    event.motion.y = static_cast<Uint16>(y);
    post(event);
}

void postMouse(bool down, int button) {
    SDL_Event event = {};
    event.type = down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
    event.button.button = static_cast<Uint8>(button);
    event.button.state = down ? SDL_PRESSED : SDL_RELEASED;
    event.button.x = static_cast<Uint16>(pointerX);
    event.button.y = static_cast<Uint16>(pointerY);
    post(event);
}

void setPadButton(int button, bool down) {
    padDown.set(static_cast<size_t>(button), down);
}

void postClose() {
    SDL_Event event = {};
    event.type = SDL_QUIT;
    post(event);
}

}  // namespace maker

using namespace maker;

// These win over the library's.
extern "C" {

int SDL_Init(Uint32) {
    return 0;
}

char* SDL_VideoDriverName(char* name, int size) {
    std::snprintf(name, static_cast<size_t>(size), "headless");
    return name;
}

void SDL_Quit(void) {}

void SDL_WM_SetCaption(const char*, const char*) {}

int SDL_EnableUNICODE(int) {
    return 0;
}

int SDL_EnableKeyRepeat(int, int) {
    return 0;
}

int SDL_ShowCursor(int) {
    return 0;
}

int SDL_NumJoysticks(void) {
    return stage.hasPad ? 1 : 0;
}

const char* SDL_JoystickName(int) {
    return stage.hasPad ? stage.padName.c_str() : nullptr;
}

SDL_Joystick* SDL_JoystickOpen(int) {
    return stage.hasPad ? reinterpret_cast<SDL_Joystick*>(&pad) : nullptr;
}

Uint8 SDL_JoystickGetButton(SDL_Joystick*, int button) {
    const auto index = static_cast<size_t>(button);
    return index < padDown.size() && padDown[index] ? 1 : 0;
}

// The longest frame of this rate, and never one so short that it is not due.
Uint32 SDL_GetTicks(void) {
    const int frame = stage.rate <= 0 ? kSlowest : kThousand / stage.rate;
    clockMs += static_cast<Uint32>(frame);
    return clockMs;
}

void SDL_Delay(Uint32) {}

Uint8* SDL_GetKeyState(int* count) {
    polled = false;
    stage.keysSampled();
    if (count != nullptr) {
        *count = SDLK_LAST;
    }
    return keysDown.data();
}

int SDL_PollEvent(SDL_Event* event) {
    if (!polled) {
        polled = true;
        stage.eventsRead();
    }
    if (queue.empty()) {
        return 0;
    }
    *event = queue.front();
    queue.pop_front();
    return 1;
}

void SDL_SetEventFilter(SDL_EventFilter asked) {
    queue.clear();
    filter = asked;
}

const SDL_VideoInfo* SDL_GetVideoInfo(void) {
    display.current_w = stage.width;
    display.current_h = stage.height;
    return &display;
}

SDL_Surface* SDL_SetVideoMode(int width, int height, int, Uint32 flags) {
    closeVideo();
    video = SDL_CreateRGBSurface(SDL_SWSURFACE, width > 0 ? width : stage.width,
                                 height > 0 ? height : stage.height, px::kDepth, px::kRedMask,
                                 px::kGreenMask, px::kBlueMask, 0);
    if (video != nullptr) {
        video->refcount = 2;
        video->flags |= flags & SDL_FULLSCREEN;
    }
    return video;
}

int SDL_GetWMInfo(SDL_SysWMinfo*) {
    return 0;
}

void SDL_UpdateRect(SDL_Surface* surface, Sint32, Sint32, Uint32, Uint32) {
    stage.shown(surface);
}

}  // extern "C"
