#include "px/widen.h"

bool px::widenChanged(uint32_t* wide, const uint16_t* pixels, int count) {
    bool changed = false;
    for (int i = 0; i < count; ++i) {
        if (wide[i] != widened(pixels[i])) {
            wide[i] = widened(pixels[i]);
            changed = true;
        }
    }
    return changed;
}
