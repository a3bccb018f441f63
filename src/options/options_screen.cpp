// The options screen.
#include <unistd.h>

#include <climits>

#include "common/geometry.h"
#include "core/all.h"
#include "core/display.h"
#include "core/globals.h"
#include "options/options.h"
#include "ui/picture.h"
#include "ui/ttf.h"

namespace {

constexpr uint16_t kPageColour = 0x2104;  // 0x222222
constexpr Point kTitle = {7, 10};
constexpr Point kHelp = {7, 40};

}  // namespace

void c_options::initOptions() {
    const Point offset = pictureOffset(all->appW, all->appH);
    offsetX = offset.x;
    offsetY = offset.y;
    page = 0;
    controllerPicture = loadPicture("data/ps3-controller.png");
    dragging = 0;
    draggedFilter = 0;
    waitingButton = 0;
    char directory[PATH_MAX];
    homeDir = getcwd(directory, sizeof directory) != nullptr ? directory : "";
    file = nullptr;
    topbar = 0;
    fps = 0;
    anchorEntry = 0;
    lireXML();
    lireXMLController();
    all->checkComposite();
}

void c_options::draw(SDL_Surface* surface, SDL_Surface*) {
    SDL_FillRect(surface, nullptr, 0);
    SDL_Rect picture = {static_cast<int16_t>(offsetX), static_cast<int16_t>(offsetY), kFrameWidth,
                        kFrameHeight};
    SDL_FillRect(surface, &picture, surfaceColour(surface, kPageColour));
    ttf->drawTextH(surface, "OPTIONS", static_cast<short>(offsetX + kTitle.x),
                   static_cast<short>(offsetY + kTitle.y), static_cast<int>(_colorR), 1);
    ttf->drawTextH(surface, "Z : BACK", static_cast<short>(offsetX + kHelp.x),
                   static_cast<short>(offsetY + kHelp.y), static_cast<int>(_colorW), 0);
}

void c_options::quitOptions() {
    saveXML();
    updateResolution();
    all->state = STATE_HOME;
    page = 0;
    waitingButton = 0;
}
