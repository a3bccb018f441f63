#pragma once
// The intro's flash and fade on rows of RGB565 pixels: no SDL, no globals.

#include <cstdint>

namespace px {

// Adds 2 x step to red and blue and 4 x step to green of every pixel that is not 0, each held in
// its range.
void brightenLit(uint16_t* pixels, int count, int step);

}  // namespace px
