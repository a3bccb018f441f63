// The filters on a layer of the mixer's working copy: each effect connected to its slot.
#include <cstdint>
#include <cstdlib>

#include "core/filters.h"
#include "core/globals.h"
#include "px/fx.h"
#include "px/operations.h"

void c_filters::run(FilterId id, int layer, int dir, int hold) {
    uint16_t* const frame = finalTilesTracks + layer * kFramePixels;
    uint8_t noise[px::kMostSnowEntries];
    px::Setting setting = {dir, 0, noise};
    if (id == FILTER_SNOW) {
        // A fresh table at every call, entry 0 first.
        for (int i = 0; i < px::snowEntries(dir); ++i) {
            noise[i] = static_cast<uint8_t>(rand() % px::kSnowLevels);
        }
    }
    if (id == FILTER_SCROLL) {
        // Without a slot the frame moves by the first step and nothing is remembered.
        setting.offset = px::nextScrollOffset(getFilterCoef(layer, id), dir, hold != 0);
        setFilterCoef(layer, id, setting.offset);
    }
    if (const px::Effect effect = px::operations().effects[id]; effect != nullptr) {
        effect(frame, setting);
    }
}

void c_filters::fx_invert(int layer) {
    run(FILTER_INVERT, layer, 0, 0);
}

void c_filters::fx_brulure(int layer, int dir) {
    run(FILTER_BURNED, layer, dir, 0);
}

void c_filters::fx_snow(int layer, int dir) {
    run(FILTER_SNOW, layer, dir, 0);
}

void c_filters::fx_zoom(int layer, int dir) {
    run(FILTER_ZOOM, layer, dir, 0);
}

void c_filters::fx_gameBoy(int layer, int dir) {
    run(FILTER_GAME_BOY, layer, dir, 0);
}

void c_filters::fx_mirror(int layer, int dir, int variant) {
    if (variant == 0) {
        run(FILTER_MIRROR, layer, dir, 0);
    }
}

void c_filters::fx_hue(int layer, int dir) {
    run(FILTER_HUE, layer, dir, 0);
}

void c_filters::fx_scroll(int layer, int dir, int hold) {
    run(FILTER_SCROLL, layer, dir, hold);
}

// Deliberate: the order is fixed, whatever slots the filters sit in; each runs on the bottom layer,
// then on the top one, in every mode. [quirk_filters_run_in_a_fixed_order_on_both_layers]
void c_filters::applyAll(int hold) {
    for (const Filter& filter : kFilters) {
        for (int layer = 0; layer < kLayers; ++layer) {
            if (isFilterFXOn(layer, filter.id) != 0) {
                run(filter.id, layer, getFilterDir(layer, filter.id), hold);
            }
        }
    }
}
