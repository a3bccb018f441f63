#include "app/window_colours.h"

namespace app {

uint32_t storedColour(uint16_t colour) {
    const uint32_t red = colour >> 11;
    const uint32_t green = colour >> 5 & 63;
    const uint32_t blue = colour & 31;
    return red << 19 | green << 10 | blue << 3;
}

size_t coloursStored(const uint32_t* pixels, size_t count, uint16_t* colours) {
    constexpr uint32_t kColourBytes = 0xFFFFFF;  // the byte above them means nothing
    size_t first = count;
    for (size_t i = 0; i < count; ++i) {
        const uint32_t pixel = pixels[i] & kColourBytes;
        const auto colour = static_cast<uint16_t>((pixel >> 8 & 0xF800) | (pixel >> 5 & 0x07E0) |
                                                  (pixel >> 3 & 0x001F));
        const bool known = storedColour(colour) == pixel;
        colours[i] = known ? colour : uint16_t{0};
        if (!known && first == count) {
            first = i;
        }
    }
    return first;
}

}  // namespace app
