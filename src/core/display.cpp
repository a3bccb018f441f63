#include "core/display.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "common/limits.h"
#include "common/messages.h"
#include "common/rgb565.h"
#include "core/all.h"
#include "core/globals.h"
#include "core/present.h"

namespace {

// 16-bit surface that the mixer writes when the video surface has another depth. Made when first
// needed and when its size changes, which only a new video mode brings about. Null when there is no
// memory for it.
SDL_Surface* standIn = nullptr;

// Takes what is drawn without a stand-in; the next frame asks for one again.
uint16_t nowhere[2];

SDL_Surface* standInFor(const SDL_Surface* video) {
    if (standIn == nullptr || standIn->w != video->w || standIn->h != video->h) {
        SDL_FreeSurface(standIn);
        standIn = SDL_CreateRGBSurface(SDL_SWSURFACE, video->w, video->h, px::kDepth, px::kRedMask,
                                       px::kGreenMask, px::kBlueMask, 0);
    }
    return standIn;
}

bool is16Bit(const SDL_Surface* surface) {
    return surface->format->BitsPerPixel == px::kDepth;
}

// Pixels that are copied as they are.
bool isPlain16Bit(const SDL_Surface* surface) {
    return is16Bit(surface) && surface->format->Rmask == px::kRedMask &&
           (surface->flags & (SDL_SRCCOLORKEY | SDL_SRCALPHA)) == 0 && !SDL_MUSTLOCK(surface);
}

// Without the mode that is wanted the display's own one is opened, and without that the program
// ends.
SDL_Surface* openMode(const c_all& app, uint32_t wanted, uint32_t fallback, const char* refusal) {
    SDL_Surface* video = SDL_SetVideoMode(app.appW, app.appH, px::kDepth, wanted);
    presentAnew();
    if (video != nullptr) {
        return video;
    }
    video = SDL_SetVideoMode(0, 0, 0, fallback);
    puts(refusal);
    puts(msg::kOverscanMoreInfos);
    if (video == nullptr) {
        exit(1);
    }
    return video;
}

}  // namespace

// Deliberate: the work surface keeps the size that it got at start-up.
// [quirk_work_surface_keeps_startup_size]
void updateResolution() {
    const uint32_t flags = screen[1]->flags;
    screen[1] = openMode(*all, flags, flags, msg::kNewResolutionRefused);
    clearSurfaces();
}

void clearSurfaces() {
    for (SDL_Surface* surface : screen) {
        SDL_FillRect(surface, nullptr, 0);
    }
}

void putPicture(SDL_Surface* picture, SDL_Surface* surface, int x, int y) {
    const bool inside =
        x >= 0 && y >= 0 && x + picture->w <= surface->w && y + picture->h <= surface->h;
    if (!inside || !isPlain16Bit(picture) || !isPlain16Bit(surface)) {
        SDL_Rect at = {static_cast<int16_t>(x), static_cast<int16_t>(y), 0, 0};
        SDL_BlitSurface(picture, nullptr, surface, &at);
        return;
    }
    const size_t bytes = static_cast<size_t>(picture->w) * sizeof(uint16_t);
    const auto* from = static_cast<const uint8_t*>(picture->pixels);
    auto* to = static_cast<uint8_t*>(surface->pixels) + static_cast<ptrdiff_t>(y) * surface->pitch +
               static_cast<ptrdiff_t>(x) * 2;
    for (int row = 0; row < picture->h; ++row) {
        if (memcmp(to, from, bytes) != 0) {
            memcpy(to, from, bytes);
        }
        from += picture->pitch;
        to += surface->pitch;
    }
}

void toggleFullScreen() {
    const uint32_t flags = screen[1]->flags;
    screen[1] = openMode(*all, flags ^ SDL_FULLSCREEN, flags, msg::kFullScreenRefused);
}

px::OutputView videoView() {
    const SDL_Surface* surface = is16Bit(screen[1]) ? screen[1] : standInFor(screen[1]);
    if (surface == nullptr) {
        return {nowhere, 2, 1, sizeof nowhere, all->composite != 0};
    }
    return {static_cast<uint16_t*>(surface->pixels), std::min(all->appW, surface->w),
            std::min(all->appH, surface->h), surface->pitch, all->composite != 0};
}

VideoOutput::VideoOutput() {
    if (SDL_MUSTLOCK(screen[1])) {
        SDL_LockSurface(screen[1]);
    }
}

VideoOutput::~VideoOutput() {
    if (SDL_MUSTLOCK(screen[1])) {
        SDL_UnlockSurface(screen[1]);
    }
    if (!is16Bit(screen[1])) {
        SDL_BlitSurface(standIn, nullptr, screen[1], nullptr);
    }
}

bool overSdl2() {
    constexpr int kFirstVersion = 50;
    return SDL_Linked_Version()->patch >= kFirstVersion;
}

uint32_t surfaceColour(const SDL_Surface* surface, uint16_t rgb565) {
    if (is16Bit(surface)) {
        return rgb565;
    }
    return SDL_MapRGB(surface->format, static_cast<uint8_t>(px::redOf(rgb565) * 255 / 31),
                      static_cast<uint8_t>(px::greenOf(rgb565) * 255 / 63),
                      static_cast<uint8_t>(px::blueOf(rgb565) * 255 / 31));
}

void scale2x() {
    constexpr size_t kSourceRow = 1280;
    constexpr size_t kOutputRow = 2560;
    const auto* source = static_cast<const uint8_t*>(screen[0]->pixels);
    auto* output = static_cast<uint8_t*>(screen[1]->pixels);
    for (size_t y = 0; y < kFrameHeight; ++y) {
        const auto* from = reinterpret_cast<const uint16_t*>(source + y * kSourceRow);
        auto* to = reinterpret_cast<uint16_t*>(output + 2 * y * kOutputRow);
        for (int x = 0; x < kFrameWidth; ++x) {
            to[2 * x] = from[x];
        }
        memcpy(output + (2 * y + 1) * kOutputRow, to, kOutputRow);
    }
}

float Clamp(float v, float lo, float hi) {
    if (v < lo) {
        return lo;
    }
    return v > hi ? hi : v;
}
