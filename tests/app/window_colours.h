#pragma once
// What a window of 24 bits stores for each RGB565 colour: the one place that knows. Red, green and
// blue stand in the top bits of their bytes and zeros below them: 0xFFFF is 0xF8FCF8.

#include <cstddef>
#include <cstdint>

namespace app {

uint32_t storedColour(uint16_t colour);
// The colours of a row of such pixels. Answers the place of the first pixel that no colour becomes,
// `count` when there is none; black stands for every such pixel.
size_t coloursStored(const uint32_t* pixels, size_t count, uint16_t* colours);

}  // namespace app
