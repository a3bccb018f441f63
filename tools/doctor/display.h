#pragma once
// The display as the program will find it, and the screens that are plugged in where no X server
// runs yet.

#include <filesystem>
#include <string>
#include <vector>

#include "tools/doctor/remarks.h"

namespace doctor {

struct DisplayFacts {
    std::string named;   // DISPLAY or WAYLAND_DISPLAY; empty: neither is set
    std::string forced;  // SDL_VIDEODRIVER; empty: SDL chooses
    bool found = false;  // SDL has a driver
    std::string driver;  // its name
    int width = 0;       // of the screen, in pixels; 0: it did not say
    int height = 0;
    int depth = 0;  // bits a pixel

    bool visible() const;  // somebody can look at it
};

struct SdlFacts {
    int major = 0;
    int minor = 0;
    int patch = 0;
    bool overSdl2 = false;
};

struct Screen {
    std::string name;  // of the socket, such as HDMI-A-1
    bool plugged = false;
    std::string mode;  // its first, such as 1920x1080
};

// As the kernel tells them below /sys/class/drm, in alphabetical order.
std::vector<Screen> screensIn(const std::filesystem::path& folder);

// Opens the display that the environment names, as the program does, and leaves it open until
// closeDisplay(). Where none is named nothing is opened: a console would be cleared.
DisplayFacts openDisplay();
void closeDisplay();
SdlFacts linkedSdl();

void judgeDisplay(const DisplayFacts& display, const std::vector<Screen>& screens,
                  Remarks& remarks);
void judgeSdl(const SdlFacts& sdl, Remarks& remarks);

}  // namespace doctor
