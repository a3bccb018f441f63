#include "state/scripted_sdl.h"

#include <cstdio>

#include "support/failing_memory.h"

namespace {

ScriptedSdl script;
SDL_VideoInfo videoInfo;
SDL_Surface* video = nullptr;
std::vector<uint8_t> videoPixels;

// main() releases the video surface once, which the real library ignores; the second reference
// stands for that.
void closeVideo() {
    if (video != nullptr) {
        video->refcount = 1;
        SDL_FreeSurface(video);
        video = nullptr;
    }
}

SDL_Surface* openVideo(int width, int height, int depth, uint32_t flags) {
    closeVideo();
    const int pitch = width * (depth / 8) + script.padding;
    videoPixels.assign(static_cast<size_t>(pitch) * static_cast<size_t>(height), 0);
    video = depth == 16 ? SDL_CreateRGBSurfaceFrom(videoPixels.data(), width, height, depth, pitch,
                                                   0xF800, 0x07E0, 0x001F, 0)
                        : SDL_CreateRGBSurfaceFrom(videoPixels.data(), width, height, depth, pitch,
                                                   0xFF0000, 0x00FF00, 0x0000FF, 0);
    video->refcount = 2;
    video->flags |= flags & SDL_FULLSCREEN;
    return video;
}

// All that came goes through the filter into a queue that drops what it has no room for.
void pumpEvents() {
    constexpr size_t kQueue = 128;
    for (const SDL_Event& event : script.events) {
        const bool passes = script.filter == nullptr || script.filter(&event) != 0;
        if (passes && script.queue.size() < kQueue) {
            script.queue.push_back(event);
        }
    }
    script.events.clear();
}

}  // namespace

ScriptedSdl& scripted() {
    return script;
}

void resetScript() {
    closeVideo();
    script = {};
}

SDL_Event plainEvent(uint8_t type) {
    SDL_Event event = {};
    event.type = type;
    return event;
}

SDL_Event keyEvent(uint8_t type, SDLKey key) {
    SDL_Event event = plainEvent(type);
    event.key.keysym.sym = key;
    return event;
}

SDL_Event mouseMoved(int x, int y) {
    SDL_Event event = plainEvent(SDL_MOUSEMOTION);
    event.motion.x = static_cast<uint16_t>(x);
    event.motion.y = static_cast<uint16_t>(y);
    return event;
}

SDL_Event mouseButton(uint8_t type, int x, int y) {
    SDL_Event event = plainEvent(type);
    event.button.button = SDL_BUTTON_LEFT;
    event.button.x = static_cast<uint16_t>(x);
    event.button.y = static_cast<uint16_t>(y);
    return event;
}

extern "C" {

int SDL_Init(Uint32 flags) {
    const OwnMemory own;
    script.calls.push_back("SDL_Init " + std::to_string(flags));
    return script.initResult;
}

char* SDL_VideoDriverName(char* name, int size) {
    if (script.videoDriver == nullptr) {
        return nullptr;
    }
    snprintf(name, static_cast<size_t>(size), "%s", script.videoDriver);
    return name;
}

void SDL_Quit(void) {
    const OwnMemory own;
    script.calls.push_back("SDL_Quit");
}

void SDL_WM_SetCaption(const char* title, const char* icon) {
    const OwnMemory own;
    script.calls.push_back(std::string("SDL_WM_SetCaption ") + title + " " + icon);
}

int SDL_EnableUNICODE(int enable) {
    const OwnMemory own;
    script.calls.push_back("SDL_EnableUNICODE " + std::to_string(enable));
    return 0;
}

int SDL_EnableKeyRepeat(int delay, int interval) {
    const OwnMemory own;
    script.calls.push_back("SDL_EnableKeyRepeat " + std::to_string(delay) + " " +
                           std::to_string(interval));
    return 0;
}

SDL_Joystick* SDL_JoystickOpen(int index) {
    const OwnMemory own;
    script.calls.push_back("SDL_JoystickOpen " + std::to_string(index));
    return nullptr;
}

int SDL_NumJoysticks(void) {
    return script.joysticks;
}

Uint8 SDL_JoystickGetButton(SDL_Joystick*, int button) {
    const OwnMemory own;
    script.buttonsAsked.push_back(button);
    return script.buttonsDown.contains(button) ? 1 : 0;
}

Uint32 SDL_GetTicks(void) {
    script.ticks += script.ticksEachCall;
    return script.ticks;
}

void SDL_Delay(Uint32 ms) {
    const OwnMemory own;
    script.delays.push_back(ms);
}

Uint8* SDL_GetKeyState(int* count) {
    ++script.keyStatesAsked;
    if (count != nullptr) {
        *count = SDLK_LAST;
    }
    return script.keysDown.data();
}

int SDL_PollEvent(SDL_Event* event) {
    ++script.eventsAsked;
    pumpEvents();
    if (script.queue.empty()) {
        return 0;
    }
    *event = script.queue.front();
    script.queue.pop_front();
    return 1;
}

void SDL_SetEventFilter(SDL_EventFilter filter) {
    script.queue.clear();  // as the library does
    script.filter = filter;
}

int SDL_ShowCursor(int toggle) {
    const OwnMemory own;
    script.cursorCalls.push_back(toggle);
    script.calls.push_back("SDL_ShowCursor " + std::to_string(toggle));
    return 0;
}

const SDL_VideoInfo* SDL_GetVideoInfo(void) {
    videoInfo.current_w = script.displayWidth;
    videoInfo.current_h = script.displayHeight;
    return &videoInfo;
}

SDL_Surface* SDL_SetVideoMode(int width, int height, int depth, Uint32 flags) {
    const OwnMemory own;
    script.modeCalls.push_back({width, height, depth, flags});
    script.calls.push_back("SDL_SetVideoMode " + std::to_string(width) + " " +
                           std::to_string(height) + " " + std::to_string(depth) + " " +
                           std::to_string(flags));
    if (script.modesPrinted) {
        printf("mode %d x %d\n", width, height);
    }
    if (!script.refusals.empty()) {
        const bool refused = script.refusals.front();
        script.refusals.pop_front();
        if (refused) {
            return nullptr;
        }
    }
    return openVideo(width == 0 ? script.displayWidth : width,
                     height == 0 ? script.displayHeight : height,
                     depth == 0 ? script.displayDepth : depth, flags);
}

void SDL_UpdateRect(SDL_Surface* surface, Sint32 x, Sint32 y, Uint32 w, Uint32 h) {
    const OwnMemory own;
    if (x == 0 && y == 0 && w == 0 && h == 0) {
        script.updated.push_back(surface);
    }
}

}  // extern "C"
