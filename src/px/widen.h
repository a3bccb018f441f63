#pragma once
// RGB565 pixels as displays of 32 bits a pixel store them: a byte for each of red, green and blue,
// red above green above blue, and the top byte zero. Each field stands at the top of its byte with
// zeros below, as SDL's blitter puts it: white becomes 0x00F8FCF8.

#include <cstdint>

namespace px {

inline uint32_t widened(uint16_t pixel) {
    return (pixel & 0xF800u) << 8 | (pixel & 0x07E0u) << 5 | (pixel & 0x001Fu) << 3;
}

// Makes `wide` the `count` pixels widened. False when they stood there already: then nothing is
// written. The two do not overlap.
bool widenChanged(uint32_t* wide, const uint16_t* pixels, int count);

namespace fast {

// The same, several pixels at a time.
#ifdef VELMORA_HIGHWAY
bool widenChanged(uint32_t* wide, const uint16_t* pixels, int count);
#else
using px::widenChanged;
#endif

}  // namespace fast

}  // namespace px
