// The preview: one clip over the whole screen, loaded at once and played in a loop.
#include <cstring>

#include "common/rgb565.h"
#include "core/all.h"
#include "core/globals.h"
#include "draw/painter.h"
#include "editor/editor.h"
#include "layout/colours.h"
#include "layout/preview_place.h"
#include "moxel/moxel.h"

namespace {

constexpr int kStepBudget = 60;  // tile records a step
constexpr int kBytesPerKilobyte = 1024;
constexpr int kProgressY = 5;
constexpr int kTextX = 30;  // from the window's left edge, and kept free at its right one

bool loadWhole(c_moxel& clip) {
    int result = 1;
    while (result != LOAD_FINISHED && result != LOAD_FAILED) {
        result = clip.loopLoad(kStepBudget);
    }
    return result == LOAD_FINISHED && clip.frameCount > 0;
}

px::OutputView viewOf(const SDL_Surface* surface) {
    return {static_cast<uint16_t*>(surface->pixels), surface->w, surface->h, surface->pitch, false};
}

// Surfaces of another depth get the picture by way of one that is 16 bits deep.
void placeOn(SDL_Surface* surface, preview::AppSize app, const uint16_t* picture) {
    if (surface->format->BitsPerPixel == px::kDepth) {
        preview::place(viewOf(surface), app, picture);
        return;
    }
    SDL_Surface* standIn = SDL_CreateRGBSurface(SDL_SWSURFACE, surface->w, surface->h, px::kDepth,
                                                px::kRedMask, px::kGreenMask, px::kBlueMask, 0);
    if (standIn != nullptr) {
        preview::place(viewOf(standIn), app, picture);
        SDL_BlitSurface(standIn, nullptr, surface, nullptr);
        SDL_FreeSurface(standIn);
    }
}

}  // namespace

// Relative to ./videos/; empty where there is nothing to show.
std::string Editor::previewPath() const {
    const std::string selected = selectedText();
    const bool entry = onPage(page::TRACKS) && model.dragSource == page::RIGHT;
    return entry && !selected.empty() ? model.browsedFolder() + selected : selected;
}

void Editor::startPreview() {
    const std::string path = previewPath();
    if (model.previewClip->hasRAM != 0) {
        model.previewClip->killRAM();
    }
    if (onPage(page::BROWSE) && model.dragSource == page::LEFT) {
        return;
    }
    model.previewFrame = 0;
    model.previewClip->init(all->prefix, path);
    model.previewActive = loadWhole(*model.previewClip) ? 1 : 0;
    if (model.previewActive == 0) {
        notice = "'" + path + "' could not be loaded";
    }
}

// The pages cover the middle of the work surface only.
void Editor::endPreview() {
    model.previewActive = 0;
    SDL_FillRect(screen[0], nullptr, 0);
}

void Editor::drawPreview(SDL_Surface* surface) {
    c_moxel& clip = *model.previewClip;
    clip.renderMoxel19(1, model.previewFrame, 0);
    ++model.previewFrame;
    if (model.previewFrame >= clip.frameCount) {
        model.previewFrame = 0;
    }
    model.finRenderPreview();

    // White on black, cut where the window ends.
    const int width = preview::visibleWidth(surface->w, {all->appW, all->appH});
    const auto write = [&](const std::string& words, int x, int y) {
        Painter(surface).textOn(colours::kBlack,
                                Painter::fitting(words, width - x - kTextX).c_str(), x, y,
                                colours::kWhite);
    };
    write(clip.name, kTextX, 40);
    write(clip.alpha == 0 ? "RVB" : "RVBA", kTextX, 60);
    write("Quality " + std::to_string(clip.quality), 65, 60);
    write(std::to_string(clip.fileSize / kBytesPerKilobyte) + " kbytes", kTextX, 80);
    write(std::to_string(clip.frameCount) + " frames", kTextX, 100);
    write("X, Z or a click : back", kTextX, 120);
}

void c_playlist::finRenderPreview() {
    const int frames = previewClip->frameCount;
    // Guard: a clip without frames has no progress to show.
    if (frames == 0) {
        return;
    }
    const preview::AppSize app = {all->appW, all->appH};
    uint16_t* picture = finalTilesTracks + kFramePixels;
    memcpy(picture, moxelTiles16 + kFramePixels, kFrameBytes);
    SDL_Surface* surface = screen[0];
    const bool locked = SDL_MUSTLOCK(surface) && SDL_LockSurface(surface) == 0;
    placeOn(surface, app, picture);
    if (locked) {
        SDL_UnlockSurface(surface);
    }
    const int width = preview::visibleWidth(surface->w, app);
    Painter(surface).fill(0, kProgressY, preview::progressLength(previewFrame, frames, width), 1,
                          colours::kWhite);
}
