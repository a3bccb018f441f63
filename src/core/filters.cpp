#include "core/filters.h"

void c_filters::initFilters() {
    for (FilterSlot(&layerSlots)[kFilterSlots] : slots) {
        for (FilterSlot& slot : layerSlots) {
            slot = {FILTER_NONE, 0, 0, 0};
        }
    }
    selected = 0;
}

const char* c_filters::getFilterName(int id) {
    return filterOf(id).name;
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
