#include "tools/play/play_window.h"

#include <SDL.h>

#include <algorithm>
#include <cstdlib>

#include "common/limits.h"
#include "common/video_drivers.h"
#include "tools/base/errors.h"

namespace maker {

namespace {

constexpr int kDepth = 32;

bool startSdl() {
    setenv(kLettersVariable, kNoLetters, 1);
    char driver[32] = {};
    return SDL_Init(SDL_INIT_VIDEO) == 0 && SDL_VideoDriverName(driver, sizeof driver) != nullptr &&
           showsPictures(driver);
}

// The colours of the program's own window (px/widen.h).
uint32_t shown(const SDL_PixelFormat* format, const uint8_t* rgb) {
    constexpr int kFiveBits = 0xF8;
    constexpr int kSixBits = 0xFC;
    return SDL_MapRGB(format, static_cast<uint8_t>(rgb[0] & kFiveBits),
                      static_cast<uint8_t>(rgb[1] & kSixBits),
                      static_cast<uint8_t>(rgb[2] & kFiveBits));
}

}  // namespace

PlayWindow::PlayWindow() {
    if (!startSdl()) {
        SDL_Quit();
        throw ToolError("there is no display to play on");
    }
    const SDL_VideoInfo* const display = SDL_GetVideoInfo();
    const bool large = display->current_w >= kHdmiWidth && display->current_h >= kHdmiHeight;
    factor_ = large ? 2 : 1;
    open(0);
}

PlayWindow::~PlayWindow() {
    SDL_Quit();
}

void PlayWindow::open(unsigned flags) {
    surface_ = SDL_SetVideoMode(kFrameWidth * factor_, kFrameHeight * factor_, kDepth, flags);
    if (surface_ == nullptr) {
        throw ToolError(std::string("there is no window to be had: ") + SDL_GetError());
    }
}

void PlayWindow::setTitle(const std::string& title) {
    SDL_WM_SetCaption(title.c_str(), title.c_str());
}

void PlayWindow::toggleFullScreen() {
    open(surface_->flags ^ SDL_FULLSCREEN);
}

void PlayWindow::show(const Picture& picture) {
    if (SDL_MUSTLOCK(surface_) && SDL_LockSurface(surface_) != 0) {
        return;
    }
    for (int y = 0; y < surface_->h; ++y) {
        auto* to = reinterpret_cast<uint32_t*>(static_cast<uint8_t*>(surface_->pixels) +
                                               static_cast<ptrdiff_t>(y) * surface_->pitch);
        const int row = y / factor_;
        if (row >= picture.height) {
            std::fill_n(to, surface_->w, 0U);
            continue;
        }
        for (int x = 0; x < surface_->w; ++x) {
            const uint8_t* from = picture.at(x / factor_, row);
            to[x] = shown(surface_->format, from);
        }
    }
    if (SDL_MUSTLOCK(surface_)) {
        SDL_UnlockSurface(surface_);
    }
    SDL_UpdateRect(surface_, 0, 0, 0, 0);
}

}  // namespace maker
