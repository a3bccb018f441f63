// The filters on a layer of the mixer's working copy: the effect connected to its slot.
#include <cstdint>
#include <cstdlib>

#include "core/globals.h"
#include "mixer/filters.h"
#include "px/fx_fast.h"

namespace {

constexpr int kSnowLevels = 20;
constexpr int kLongestSnow = 497;

uint16_t* layerFrame(int layer) {
    return finalTilesTracks + layer * kFramePixels;
}

}  // namespace

void c_filters::fx_invert(int layer) {
    px::fast::invertFrame(layerFrame(layer));
}

void c_filters::fx_brulure(int layer, int dir) {
    px::fast::burnFrame(layerFrame(layer), dir);
}

// A fresh table at every call, entry 0 first.
void c_filters::fx_snow(int layer, int dir) {
    uint8_t table[kLongestSnow];
    const int entries = px::snowEntries(dir);
    for (int i = 0; i < entries; ++i) {
        table[i] = static_cast<uint8_t>(rand() % kSnowLevels);
    }
    px::fast::snowFrame(layerFrame(layer), table, entries);
}

void c_filters::fx_zoom(int layer, int dir) {
    px::fast::zoomFrame(layerFrame(layer), dir);
}

void c_filters::fx_gameBoy(int layer, int) {
    px::fast::gameBoyFrame(layerFrame(layer));
}

void c_filters::fx_mirror(int layer, int dir, int variant) {
    if (variant == 0) {
        px::fast::mirrorFrame(layerFrame(layer), dir);
    }
}

void c_filters::fx_hue(int layer, int dir) {
    px::fast::hueFrame(layerFrame(layer), dir);
}

// Without a slot the frame moves by the first step and nothing is remembered.
void c_filters::fx_scroll(int layer, int dir, int hold) {
    const int offset = px::nextScrollOffset(getFilterCoef(layer, FILTER_SCROLL), dir, hold != 0);
    px::fast::scrollFrame(layerFrame(layer), dir, offset);
    setFilterCoef(layer, FILTER_SCROLL, offset);
}

// Deliberate: the order is fixed, whatever slots the filters sit in; each runs on the bottom layer,
// then on the top one, in every mode. [quirk_filters_run_in_a_fixed_order_on_both_layers]
void c_filters::applyAll(int hold) {
    struct Step {
        FilterId id;
        void (*run)(c_filters& filters, int layer, int dir, int hold);
    };
    constexpr Step kSteps[] = {
        {FILTER_INVERT, [](c_filters& f, int layer, int, int) { f.fx_invert(layer); }},
        {FILTER_BURNED, [](c_filters& f, int layer, int dir, int) { f.fx_brulure(layer, dir); }},
        {FILTER_SNOW, [](c_filters& f, int layer, int dir, int) { f.fx_snow(layer, dir); }},
        {FILTER_ZOOM, [](c_filters& f, int layer, int dir, int) { f.fx_zoom(layer, dir); }},
        {FILTER_GAME_BOY, [](c_filters& f, int layer, int dir, int) { f.fx_gameBoy(layer, dir); }},
        {FILTER_MIRROR, [](c_filters& f, int layer, int dir, int) { f.fx_mirror(layer, dir, 0); }},
        {FILTER_HUE, [](c_filters& f, int layer, int dir, int) { f.fx_hue(layer, dir); }},
        {FILTER_SCROLL,
         [](c_filters& f, int layer, int dir, int held) { f.fx_scroll(layer, dir, held); }},
    };
    for (const Step& step : kSteps) {
        for (int layer = 0; layer < kLayers; ++layer) {
            if (isFilterFXOn(layer, step.id) != 0) {
                step.run(*this, layer, getFilterDir(layer, step.id), hold);
            }
        }
    }
}
