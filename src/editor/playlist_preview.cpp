// The preview: one clip over the whole screen, loaded at once and played in a loop.
#include <cstdio>
#include <cstring>

#include "core/all.h"
#include "core/display.h"
#include "core/globals.h"
#include "draw/ttf.h"
#include "layout/page_layout.h"
#include "layout/preview_place.h"
#include "layout/textfit.h"
#include "moxel/moxel.h"
#include "playlists/playlist.h"

namespace {

constexpr int kStepBudget = 60;  // tile records a step
constexpr int kLoadFailed = 0;
constexpr int kLoadFinished = 2;
constexpr int kBytesPerKilobyte = 1024;
constexpr uint16_t kProgressColour = 65535;
constexpr int16_t kProgressY = 5;
constexpr int kTextX = 30;  // from the window's left edge, and kept free at its right one
constexpr int kSurfaceDepth = 16;

bool loadWhole(c_moxel& clip) {
    int result = 1;
    while (result != kLoadFinished && result != kLoadFailed) {
        result = clip.loopLoad(kStepBudget);
    }
    return result == kLoadFinished && clip.frameCount > 0;
}

px::OutputView viewOf(const SDL_Surface* surface) {
    return {static_cast<uint16_t*>(surface->pixels), surface->w, surface->h, surface->pitch, false};
}

preview::AppSize appSize() {
    return {all->appW, all->appH};
}

int visibleWidth(const SDL_Surface* surface) {
    return preview::visibleWidth(surface->w, appSize());
}

// White on black, cut where the window ends.
void drawLine(SDL_Surface* surface, const std::string& words, int x, int y) {
    const auto width = [](const std::string& part) { return ttf->widthOf(part.c_str(), 0); };
    const std::string fitting = fitText(words, visibleWidth(surface) - x - kTextX, width);
    ttf->texteFilled(surface, fitting.c_str(), static_cast<short>(x), static_cast<short>(y),
                     static_cast<int>(_colorW), 0, static_cast<int>(_colorN));
}

// Surfaces of another depth get the picture by way of one that is 16 bits deep.
void placeOn(SDL_Surface* surface, const uint16_t* picture) {
    const preview::AppSize app = appSize();
    if (surface->format->BitsPerPixel == kSurfaceDepth) {
        preview::place(viewOf(surface), app, picture);
        return;
    }
    SDL_Surface* standIn = SDL_CreateRGBSurface(SDL_SWSURFACE, surface->w, surface->h,
                                                kSurfaceDepth, 0xF800, 0x07E0, 0x001F, 0);
    if (standIn != nullptr) {
        preview::place(viewOf(standIn), app, picture);
        SDL_BlitSurface(standIn, nullptr, surface, nullptr);
        SDL_FreeSurface(standIn);
    }
}

}  // namespace

// Relative to ./videos/; empty where there is nothing to show.
std::string c_playlist::previewPath() const {
    if (editPage == page::BROWSE && dragSource == page::RIGHT) {
        const Famille& famille = familles[selRow];
        return selItem >= 0 && selItem < famille.nbTracks ? famille.tracks[selItem].path : "";
    }
    if (editPage == page::TRACKS && dragSource == page::LEFT) {
        const Famille& famille = familles[editFamille];
        return selRow >= 0 && selRow < famille.nbTracks ? famille.tracks[selRow].path : "";
    }
    if (editPage == page::TRACKS && dragSource == page::RIGHT) {
        return selItem >= 0 && selItem < nbEntries ? browsedFolder() + entries[selItem] : "";
    }
    return "";
}

void c_playlist::startPreview() {
    const std::string path = previewPath();
    if (previewClip->hasRAM != 0) {
        previewClip->killRAM();
    }
    if (editPage == page::BROWSE && dragSource == page::LEFT) {
        return;
    }
    previewFrame = 0;
    previewClip->init(all->prefix, path);
    previewActive = loadWhole(*previewClip) ? 1 : 0;
    if (previewActive == 0) {
        notice = "'" + path + "' could not be loaded";
    }
}

// The pages cover the middle of the work surface only.
void c_playlist::endPreview() {
    previewActive = 0;
    SDL_FillRect(screen[0], nullptr, 0);
}

void c_playlist::drawPreview(SDL_Surface* surface) {
    previewClip->renderMoxel19(1, previewFrame, 0);
    ++previewFrame;
    if (previewFrame >= previewClip->frameCount) {
        previewFrame = 0;
    }
    finRenderPreview();

    char words[32];
    drawLine(surface, previewClip->name, kTextX, 40);
    drawLine(surface, previewClip->alpha == 0 ? "RVB" : "RVBA", kTextX, 60);
    snprintf(words, sizeof words, "Quality %d", previewClip->quality);
    drawLine(surface, words, 65, 60);
    snprintf(words, sizeof words, "%ld kbytes",
             static_cast<long>(previewClip->fileSize) / kBytesPerKilobyte);
    drawLine(surface, words, kTextX, 80);
    snprintf(words, sizeof words, "%d frames", previewClip->frameCount);
    drawLine(surface, words, kTextX, 100);
    drawLine(surface, "X, Z or a click : back", kTextX, 120);
}

void c_playlist::finRenderPreview() {
    // Guard: a clip without frames has no progress to show.
    if (previewClip->frameCount == 0) {
        return;
    }
    uint16_t* picture = finalTilesTracks + kFramePixels;
    memcpy(picture, moxelTiles16 + kFramePixels, kFrameBytes);
    SDL_Surface* surface = screen[0];
    const bool locked = SDL_MUSTLOCK(surface) && SDL_LockSurface(surface) == 0;
    placeOn(surface, picture);
    if (locked) {
        SDL_UnlockSurface(surface);
    }
    const int length =
        preview::progressLength(previewFrame, previewClip->frameCount, visibleWidth(surface));
    SDL_Rect done = {0, kProgressY, static_cast<uint16_t>(length), 1};
    SDL_FillRect(surface, &done, surfaceColour(surface, kProgressColour));
}
