#include "core/filters.h"

#include <cstdlib>

#include "core/globals.h"
#include "px/fx.h"
#include "px/operations.h"

void c_filters::initFilters() {
    for (FilterSlot(&layerSlots)[kFilterSlots] : slots) {
        for (FilterSlot& slot : layerSlots) {
            slot = {FILTER_NONE, 0, 0, 0};
        }
    }
    selected = 0;
}

FilterSlot* c_filters::activeSlot(int layer, int id) {
    for (FilterSlot& slot : slots[layer]) {
        if (slot.id == id && slot.on != 0) {
            return &slot;
        }
    }
    return nullptr;
}

int c_filters::isFilterFXOn(int layer, int id) {
    return activeSlot(layer, id) != nullptr ? 1 : 0;
}

int c_filters::getFilterDir(int layer, int id) {
    const FilterSlot* slot = activeSlot(layer, id);
    return slot != nullptr ? slot->dir : 0;
}

int c_filters::getFilterCoef(int layer, int id) {
    const FilterSlot* slot = activeSlot(layer, id);
    return slot != nullptr ? slot->coef : 0;
}

void c_filters::setFilterCoef(int layer, int id, int value) {
    FilterSlot* slot = activeSlot(layer, id);
    if (slot != nullptr) {
        slot->coef = value;
    }
}

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
