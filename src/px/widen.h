#pragma once
// RGB565 pixels as displays of 32 bits a pixel store them: a byte for each of red, green and blue,
// red above green above blue, and the top byte zero. Each field stands at the top of its byte with
// zeros below, as SDL's blitter puts it: white becomes 0x00F8FCF8.

#include <cstdint>

namespace px {

inline uint32_t widened(uint16_t pixel) {
    return (pixel & 0xF800u) << 8 | (pixel & 0x07E0u) << 5 | (pixel & 0x001Fu) << 3;
}

// The plain way of Operations::widenChanged.
bool widenChanged(uint32_t* wide, const uint16_t* pixels, int count);

}  // namespace px
