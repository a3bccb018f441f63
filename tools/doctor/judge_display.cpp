#include <algorithm>
#include <fstream>

#include "common/limits.h"
#include "common/rgb565.h"
#include "common/video_drivers.h"
#include "tools/doctor/display.h"

namespace doctor {

namespace fs = std::filesystem;

namespace {

constexpr const char* kAbout = "display";

std::string lineOf(const fs::path& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    return line;
}

std::string sizeText(int width, int height) {
    return said(std::to_string(width), " x ", std::to_string(height));
}

// No X server is named: on a stage's machine it is not up yet.
void judgeScreens(const std::vector<Screen>& screens, Remarks& remarks) {
    if (screens.empty()) {
        remarks.stops(kAbout, "there is none: neither DISPLAY nor WAYLAND_DISPLAY is set",
                      "Start Velmora on the machine's own screen, not over a network.");
        return;
    }
    const auto plugged = std::ranges::find(screens, true, &Screen::plugged);
    if (plugged == screens.end()) {
        remarks.stops(kAbout, "no screen is plugged in",
                      "Plug it in and switch it on before the machine starts.");
        return;
    }
    remarks.note(kAbout, said("no X server is named; the screen at ", plugged->name,
                              plugged->mode.empty() ? "" : " has ", plugged->mode));
}

void judgeSize(const DisplayFacts& display, Remarks& remarks) {
    const std::string size = sizeText(display.width, display.height);
    if (display.width <= 0 || display.height <= 0) {
        remarks.note(kAbout, "the screen does not say how large it is");
    } else if (display.width < kCompositeBelow) {
        remarks.note(kAbout,
                     said("the screen has ", size,
                          ": it counts as a composite output, with the picture 1:1 in the middle"),
                     "If it is no composite output, switch the screen on before Velmora starts.");
    } else if (display.width < kHdmiWidth || display.height < kHdmiHeight) {
        remarks.hurts(kAbout,
                      said("the screen has ", size, ", less than the picture's ",
                           sizeText(kHdmiWidth, kHdmiHeight), ": its edges are cut off"),
                      "Set the screen to 1280 x 720, or choose 1024 x 768 in OPTIONS.");
    } else if (display.width > kHdmiWidth || display.height > kHdmiHeight) {
        remarks.note(kAbout,
                     said("the screen has ", size, ": the picture covers ",
                          sizeText(kHdmiWidth, kHdmiHeight), " of it"),
                     "Set the screen to 1280 x 720, or press F for full screen.");
    } else {
        remarks.fine(kAbout, said("the screen has ", size, ", as the picture"));
    }
}

void judgeDepth(const DisplayFacts& display, Remarks& remarks) {
    const std::string bits = std::to_string(display.depth);
    if (display.depth == px::kDepth) {
        remarks.fine(kAbout, said(bits, " bits a pixel, as Velmora draws, by ", display.driver));
    } else if (display.depth >= 24) {
        remarks.fine(kAbout, said(bits, " bits a pixel, by ", display.driver,
                                  "; what changes is converted"));
    } else {
        remarks.hurts(kAbout, said(bits, " bits a pixel are too few for Velmora's colours"),
                      "Let the X server run with 16 or 24 bits a pixel.");
    }
}

}  // namespace

std::vector<Screen> screensIn(const fs::path& folder) {
    std::vector<Screen> screens;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        const std::string status = lineOf(entry->path() / "status");
        const size_t dash = name.find('-');
        if (dash != std::string::npos && !status.empty()) {
            screens.push_back(
                {name.substr(dash + 1), status == "connected", lineOf(entry->path() / "modes")});
        }
    }
    std::ranges::sort(screens, {}, &Screen::name);
    return screens;
}

bool DisplayFacts::visible() const {
    return found && showsPictures(driver);
}

void judgeDisplay(const DisplayFacts& display, const std::vector<Screen>& screens,
                  Remarks& remarks) {
    if (!display.forced.empty() && !showsPictures(display.forced)) {
        remarks.stops(kAbout,
                      said("SDL is told to draw by \"", display.forced, "\", which nobody can see"),
                      "Take SDL_VIDEODRIVER out of the environment.");
    } else if (display.named.empty() && !display.found) {
        judgeScreens(screens, remarks);
    } else if (!display.visible()) {
        remarks.stops(kAbout, said("\"", display.named, "\" does not answer"),
                      "Start Velmora from the desktop that is on the screen, as the user whose "
                      "desktop it is.");
    } else {
        judgeSize(display, remarks);
        judgeDepth(display, remarks);
    }
}

void judgeSdl(const SdlFacts& sdl, Remarks& remarks) {
    const std::string version = said(std::to_string(sdl.major), ".", std::to_string(sdl.minor), ".",
                                     std::to_string(sdl.patch));
    if (sdl.overSdl2) {
        remarks.fine("SDL", version + ", the layer over SDL 2");
    } else {
        remarks.fine("SDL", version + ", the classic one");
    }
}

}  // namespace doctor
