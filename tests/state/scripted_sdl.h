#pragma once
// Scripted SDL: the functions through which the program meets time, keys, events, the controller,
// the pointer and the video mode answer from here and write down what was asked. SDL itself is
// never started; surfaces, blits and fills are the library's own.
//
// Every opened video mode gives a new surface and frees the one before, so that a pointer kept over
// a mode change is found by the address sanitizer.

#include <SDL.h>

#include <array>
#include <cstdint>
#include <deque>
#include <set>
#include <string>
#include <vector>

struct ModeCall {
    int width, height, depth;
    uint32_t flags;
    bool operator==(const ModeCall&) const = default;
};

struct ScriptedSdl {
    // What SDL answers.
    uint32_t ticks = 0;                            // ms
    uint32_t ticksEachCall = 0;                    // that time passes with each look at the clock
    std::array<uint8_t, SDLK_LAST> keysDown = {};  // by SDL key symbol
    std::deque<SDL_Event> events;                  // on their way into SDL's queue of 128
    int initResult = 0;                            // of SDL_Init
    const char* videoDriver = "x11";               // null: no video
    int joysticks = 0;                             // connected
    std::set<int> buttonsDown;                     // of joystick 0
    int displayWidth = 1280;                       // the display's own size, which a mode of
    int displayHeight = 720;                       // 0 x 0 gets
    int displayDepth = 16;                         // 16 or 32 bits, for a mode of depth 0
    int padding = 0;                               // bytes after each row of the next mode
    std::deque<bool> refusals;                     // for the next mode calls: true is refused
    bool modesPrinted = false;                     // a mode call prints "mode W x H", which shows
                                                   // it among the lines of the program
    SDL_EventFilter filter = nullptr;              // set by the program
    std::deque<SDL_Event> queue;                   // SDL's own

    // What SDL was asked.
    std::vector<std::string> calls;  // the start-up calls, in order
    std::vector<ModeCall> modeCalls;
    std::vector<int> cursorCalls;  // arguments of SDL_ShowCursor
    std::vector<int> buttonsAsked;
    int eventsAsked = 0;
    int keyStatesAsked = 0;
    std::vector<uint32_t> delays;       // what was slept, ms
    std::vector<SDL_Surface*> updated;  // surfaces shown whole
};

ScriptedSdl& scripted();
void resetScript();  // back to the values above; closes the video mode

SDL_Event keyEvent(uint8_t type, SDLKey key);
SDL_Event mouseMoved(int x, int y);
SDL_Event mouseButton(uint8_t type, int x, int y);
SDL_Event plainEvent(uint8_t type);
