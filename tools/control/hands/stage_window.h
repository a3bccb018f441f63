#pragma once
// Velmora's window on an X server: where it is, and whether keys reach it.

#include <X11/Xlib.h>

#include "common/geometry.h"

namespace control {

struct StageWindow {
    Window window = 0;  // 0: there is none to be seen
    bool focused = false;
    bool fullScreen = false;  // it has grabbed the keyboard itself
    Point picture{};          // top left of the 640 x 360 picture, on the screen
};

// Asks the server, some round trips. Windows that vanish meanwhile count as not there; whoever
// calls this has X's errors ignored.
StageWindow findStage(Display* display);

}  // namespace control
