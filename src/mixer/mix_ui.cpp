// The performer's panel over the mix.
#include "mixer/mix.h"

void c_mix::drawUI() {
    if (showUI == 0) {
        return;
    }
}
