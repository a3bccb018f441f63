#pragma once
// The global objects that drawing and mixing need, and a 1280 x 720 surface to mix onto; made once,
// never freed.

#include <SDL.h>

#include "common/limits.h"
#include "core/all.h"
#include "core/filters.h"
#include "core/globals.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "options/options.h"

inline void createStage() {
    moxelTiles16 = new uint16_t[kLayers * kFramePixels]();
    moxelAlpha16 = new uint8_t[2 * kFramePixels]();
    finalTilesTracks = new uint16_t[kLayers * kFramePixels]();
    all = new c_all{};
    all->appW = kHdmiWidth;
    all->appH = kHdmiHeight;
    moxel = new c_moxel[kClipSlots];
    _filters = new c_filters{};
    _filters->initFilters();
    _options = new c_options{};
    mix = new c_mix{};
    mix->initMix();
    screen[1] =
        SDL_CreateRGBSurface(SDL_SWSURFACE, kHdmiWidth, kHdmiHeight, 16, 0xF800, 0x07E0, 0x001F, 0);
}
