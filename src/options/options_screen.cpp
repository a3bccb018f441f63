// The options screen: its state, and what both pages draw.
#include "common/geometry.h"
#include "core/all.h"
#include "core/display.h"
#include "core/filters.h"
#include "core/globals.h"
#include "draw/painter.h"
#include "input/keys.h"
#include "layout/options_layout.h"
#include "options/options.h"

namespace {

constexpr uint32_t kPageRgb = 0x222222;
constexpr layout::Area kBackInAtlas = {0, 96, 64, 24};
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
    all->placed = &offset;
    offset = pictureOffset(all->appW, all->appH);
    page = 0;
    controllerPicture = loadPicture("data/ps3-controller.png");
    dragging = 0;
    draggedFilter = 0;
    waitingButton = 0;
    homeDir = workingDirectory();
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
    painterOn(surface).fill(0, 0, kFrameWidth, kFrameHeight, kPageRgb);
    if (page == 0) {
        drawScreen0(surface, texture);
    } else if (page == 1) {
        drawScreen1(surface, texture);
    }
}

void c_options::drawDrag(SDL_Surface* surface) {
    Painter painter = painterOn(surface);
    const c_keys& input = *keys;
    painter.fill(input.mouseX - kDragLeft, input.mouseY, kDragWidth, kDragHeight, _colorB);
    painter.text(_filters->getFilterName(draggedFilter), input.mouseX + kDragText, input.mouseY,
                 _colorN);
}

void c_options::drawBack(Painter& painter, SDL_Surface* texture) {
    painter.piece(texture, kBackInAtlas.x, kBackInAtlas.y, kBackInAtlas.w, kBackInAtlas.h,
                  layout::kBackPiece.x, layout::kBackPiece.y);
}

void c_options::drawNotice(Painter& painter, Point at) const {
    if (notice != nullptr) {
        painter.text(notice, at.x, at.y, _colorO);
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
