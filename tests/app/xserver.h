#pragma once
// A private X server without a screen of its own (Xvfb) on a free display number. Once it is made
// it answers; a server that does not come up is replaced by another, several times.

#include <string>

#include "app/child.h"

namespace app {

// Bits a pixel where a test does not insist: VELMORA_DEPTH of the environment, else what it says.
int usualDepth(int otherwise = 16);

struct Screen {
    int width = 1280;
    int height = 720;
    int depth = usualDepth();
    bool sharedMemory = true;  // the server has MIT-SHM
};

class XServer {
public:
    explicit XServer(Screen screen);  // throws std::runtime_error when none came up

    const std::string& display() const { return display_; }  // ":7"

private:
    bool tryStart(Screen screen);

    Child child_;
    std::string display_;
};

}  // namespace app
