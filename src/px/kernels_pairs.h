#pragma once
// Keying by alpha on pairs of pixels (pairs.h), which have instructions for it that vectors have
// not. On 32-bit Arm alone.

#include <cstdint>

namespace px::pairs {

// The rule of MODE_KEY for whole groups of pixels, in place; returns how many pixels that were.
int keyByAlpha(uint16_t* bottom, const uint16_t* top, const uint8_t* alpha, int count);

}  // namespace px::pairs
