#include "tools/doctor/display.h"

#include <SDL.h>

#include <cstdlib>

#include "common/video_drivers.h"
#include "core/display.h"

namespace doctor {

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

}  // namespace

DisplayFacts openDisplay() {
    DisplayFacts facts;
    facts.named = environment("DISPLAY");
    if (facts.named.empty()) {
        facts.named = environment("WAYLAND_DISPLAY");
    }
    facts.forced = environment("SDL_VIDEODRIVER");
    if (facts.named.empty() && facts.forced.empty()) {
        return facts;
    }
    setenv(kLettersVariable, kNoLetters, 1);
    char name[32] = {};
    if (SDL_InitSubSystem(SDL_INIT_VIDEO) != 0 ||
        SDL_VideoDriverName(name, sizeof name) == nullptr) {
        return facts;
    }
    facts.found = true;
    facts.driver = name;
    const SDL_VideoInfo* info = SDL_GetVideoInfo();
    facts.width = info->current_w;
    facts.height = info->current_h;
    facts.depth = info->vfmt->BitsPerPixel;
    return facts;
}

void closeDisplay() {
    SDL_QuitSubSystem(SDL_INIT_VIDEO);
}

SdlFacts linkedSdl() {
    const SDL_version* version = SDL_Linked_Version();
    return {version->major, version->minor, version->patch, overSdl2()};
}

}  // namespace doctor
