#pragma once
// SDL without a display, a clock or hands, for this program alone: what the program asks of SDL's
// video mode, time, keys, events and controller is answered from here. Surfaces, blits and pictures
// are the library's own. Time stands still but for frames: each look at the clock finds the next
// one due.

#include <SDL.h>

#include <functional>
#include <string>

namespace maker {

struct HeadlessStage {
    int width = 0;  // of the display
    int height = 0;
    bool hasPad = false;
    std::string padName;
    int rate = 25;  // what the program finds that it runs at, 0 to 25 frames a second
    std::function<void()> keysSampled;              // is called just before, once a frame
    std::function<void()> eventsRead;               // likewise
    std::function<void(const SDL_Surface*)> shown;  // a frame is done
};

// The one that there is. Set up before the program starts.
HeadlessStage& headlessStage();

// From within the calls above. SDL's queue is as long as the real one: what finds no room is lost.
void postKey(bool down, int key, uint16_t character);
void setKey(int key, bool down);  // without an event
void postPointer(int x, int y);   // in the window
void postMouse(bool down, int button);
void setPadButton(int button, bool down);
void postClose();

}  // namespace maker
