#include "core/all.h"

#include <SDL.h>

#include <cstdio>

#include "common/geometry.h"
#include "common/limits.h"
#include "common/messages.h"
#include "core/globals.h"
#include "options/options.h"

void c_all::initAll() {
    const SDL_VideoInfo* display = SDL_GetVideoInfo();
    state = STATE_INTRO;
    subState = SUB_OVERMENU;
    screenW = display != nullptr ? display->current_w : 0;
    screenH = display != nullptr ? display->current_h : 0;
    appW = kHdmiWidth;
    appH = kHdmiHeight;
    composite = 0;
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
    const Point offset = pictureOffset(w, h);
    appW = w;
    appH = h;
    _options->offsetX = offset.x;
    _options->offsetY = offset.y;
}
