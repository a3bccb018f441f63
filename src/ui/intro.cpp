#include "ui/intro.h"

#include "core/all.h"
#include "core/globals.h"
#include "draw/painter.h"
#include "px/introfade.h"

namespace {

constexpr int kIntroFrames = 50;
constexpr int kTurningFrame = 20;  // brighter before, darker after
constexpr int kLogoX = 160;
constexpr int kLogoY = 60;

}  // namespace

void c_intro::initIntro() {
    state = 0;
    offset = pictureOffset(all->appW, all->appH);
    logo = loadPicture("data/logo-tessaron.png");
    counter = kIntroFrames;
}

void c_intro::draw(SDL_Surface* s) {
    --counter;
    offset = pictureOffset(all->appW, all->appH);
    if (logo != nullptr) {
        Painter(s, offset).piece(logo, 0, 0, logo->w, logo->h, kLogoX, kLogoY);
    }
    auto* row = static_cast<uint8_t*>(s->pixels);
    for (int y = 0; y < s->h; ++y) {
        px::brightenLit(reinterpret_cast<uint16_t*>(row), s->w, counter - kTurningFrame);
        row += s->pitch;
    }
}
