#include "core/all.h"

#include <SDL.h>

#include <cstdio>

#include "common/limits.h"
#include "common/messages.h"

void c_all::initAll() {
    const SDL_VideoInfo* display = SDL_GetVideoInfo();
    state = STATE_INTRO;
    subState = SUB_OVERMENU;
    screenW = display != nullptr ? display->current_w : 0;
    screenH = display != nullptr ? display->current_h : 0;
    appW = kHdmiWidth;
    appH = kHdmiHeight;
    composite = 0;
    placed = nullptr;
    shown = STATE_INTRO;
}

void c_all::checkComposite() {
    if (screenW < kCompositeBelow) {
        composite = 1;
    }
    if (composite == 1) {
        puts(msg::kCompositeDetected);
        appW = screenW;
        appH = screenH;
    }
}

void c_all::applyResolution(int w, int h) {
    appW = w;
    appH = h;
    if (placed != nullptr) {
        *placed = pictureOffset(w, h);
    }
}
