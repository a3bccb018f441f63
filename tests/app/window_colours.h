#pragma once
// What a window of 24 bits stores for each RGB565 colour: the one place that knows. Red, green and
// blue stand in the top bits of their bytes and zeros below them: 0xFFFF is 0xF8FCF8. With
// VELMORA_COLOURS=spread in the environment the bits are spread over the whole byte instead, so
// that 0xFFFF is 0xFFFFFF: the layer over SDL 2 does so.

#include <cstdint>
#include <optional>

namespace app {

uint32_t storedColour(uint16_t colour);
// The colour that is stored as that; nothing for a pixel that no colour becomes.
std::optional<uint16_t> colourStored(uint32_t pixel);

}  // namespace app
