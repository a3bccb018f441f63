#pragma once
// c_filters: which filters are on. Two layers of nine slots each; a slot holds a filter id, a
// direction and a switch. The mixer and the clips ask by layer and filter id: the first switched-on
// slot in slot order that holds the id answers. One object, the global `_filters`.

#include <cstdint>

#include "common/limits.h"
#include "px/filters.h"

struct FilterSlot {
    int32_t id;
    int32_t dir;   // 0 to 3
    int32_t on;    // non-zero: switched on
    int32_t coef;  // the scroll filter's running offset
};

class c_filters {
public:
    void initFilters();  // every slot NONE, direction 0, off, coefficient 0

    // "NONE" for an id that there is not
    const char* getFilterName(int id) { return filterOf(id).name; }
    int isFilterFXOn(int layer, int id);
    int getFilterDir(int layer, int id);               // 0 when no slot answers
    int getFilterCoef(int layer, int id);              // 0 when no slot answers
    void setFilterCoef(int layer, int id, int value);  // nothing happens when no slot answers

    // The effects rewrite one layer (0 bottom, 1 top) of finalTilesTracks in place. Each by its own
    // name; applyAll goes by kFilters.
    void fx_invert(int layer) { run(FILTER_INVERT, layer, 0, 0); }
    void fx_brulure(int layer, int dir) { run(FILTER_BURNED, layer, dir, 0); }
    void fx_snow(int layer, int dir) { run(FILTER_SNOW, layer, dir, 0); }
    void fx_zoom(int layer, int dir) { run(FILTER_ZOOM, layer, dir, 0); }
    // The direction changes nothing.
    void fx_gameBoy(int layer, int dir) { run(FILTER_GAME_BOY, layer, dir, 0); }
    // There is variant 0 only.
    void fx_mirror(int layer, int dir, int variant) {
        run(variant == 0 ? FILTER_MIRROR : FILTER_NONE, layer, dir, 0);
    }
    void fx_hue(int layer, int dir) { run(FILTER_HUE, layer, dir, 0); }
    void fx_scroll(int layer, int dir, int hold) { run(FILTER_SCROLL, layer, dir, hold); }
    void fx_glitchMap(unsigned short*, int) {}  // does nothing: GLITCH is carried out by the clips

    // Every filter that is on, in the mixer's order. `hold`: scrolling stands still.
    void applyAll(int hold);

    FilterSlot slots[kLayers][kFilterSlots];
    int32_t selected;  // the slot (0 to 8) whose letter was held last

private:
    void run(FilterId id, int layer, int dir, int hold);
    FilterSlot* activeSlot(int layer, int id);
};
