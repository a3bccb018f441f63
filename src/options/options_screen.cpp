// The options screen: its state, and what both pages draw.
#include <unistd.h>

#include <climits>

#include "common/geometry.h"
#include "common/rgb565.h"
#include "core/all.h"
#include "core/display.h"
#include "core/globals.h"
#include "draw/picture.h"
#include "draw/ttf.h"
#include "input/keys.h"
#include "layout/options_layout.h"
#include "mixer/filters.h"
#include "options/options.h"

namespace {

constexpr int kPageRgb = 0x222222;
constexpr SDL_Rect kBackInAtlas = {0, 96, 64, 24};
constexpr int kDragWidth = 60;
constexpr int kDragHeight = 10;
constexpr int kDragLeft = 2;   // of the mouse
constexpr int kDragText = 10;  // right of the mouse

constexpr const char* kOptionsNotSaved =
    "The options could not be saved. Going back once more leaves without saving";
constexpr const char* kButtonsNotSaved =
    "The buttons could not be saved. Going back once more leaves without saving";

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
    notice = nullptr;
    lireXML();
    lireXMLController();
    all->checkComposite();
}

void c_options::draw(SDL_Surface* surface, SDL_Surface* texture) {
    SDL_FillRect(surface, nullptr, 0);
    SDL_Rect picture = {static_cast<int16_t>(offsetX), static_cast<int16_t>(offsetY), kFrameWidth,
                        kFrameHeight};
    SDL_FillRect(surface, &picture, surfaceColour(surface, px::fromRgb(kPageRgb)));
    if (page == 0) {
        drawScreen0(surface, texture);
    } else if (page == 1) {
        drawScreen1(surface, texture);
    }
}

void c_options::drawDrag(SDL_Surface* surface) {
    SDL_Rect bar = {static_cast<int16_t>(offsetX + keys->mouseX - kDragLeft),
                    static_cast<int16_t>(offsetY + keys->mouseY), kDragWidth, kDragHeight};
    SDL_FillRect(surface, &bar, surfaceColour(surface, px::fromRgb(static_cast<int>(_colorB))));
    write(surface, _filters->getFilterName(draggedFilter), {keys->mouseX + kDragText, keys->mouseY},
          _colorN);
}

void c_options::write(SDL_Surface* surface, const char* words, Point at, uint32_t colour,
                      int font) {
    ttf->drawTextH(surface, words, static_cast<short>(offsetX + at.x),
                   static_cast<short>(offsetY + at.y), static_cast<int>(colour), font);
}

void c_options::drawPiece(SDL_Surface* surface, SDL_Surface* from, SDL_Rect piece, Point at) {
    if (from == nullptr) {
        return;
    }
    SDL_Rect to = {static_cast<int16_t>(offsetX + at.x), static_cast<int16_t>(offsetY + at.y), 0,
                   0};
    SDL_BlitSurface(from, &piece, surface, &to);
}

void c_options::drawBack(SDL_Surface* surface, SDL_Surface* texture) {
    drawPiece(surface, texture, kBackInAtlas, layout::kBackPiece);
}

void c_options::drawNotice(SDL_Surface* surface, Point at) {
    if (notice != nullptr) {
        write(surface, notice, at, _colorO);
    }
}

void c_options::quitOptions() {
    if (notice == nullptr && !saveXML()) {
        notice = kOptionsNotSaved;
        return;
    }
    notice = nullptr;
    updateResolution();
    all->state = STATE_HOME;
    page = 0;
    dragging = 0;
    waitingButton = 0;
}

void c_options::quitControllerPage() {
    if (notice == nullptr && !saveXMLController()) {
        notice = kButtonsNotSaved;
        return;
    }
    notice = nullptr;
    page = 0;
}
