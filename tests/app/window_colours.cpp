#include "app/window_colours.h"

#include <cstdlib>
#include <cstring>
#include <vector>

namespace app {

namespace {

constexpr uint32_t kColours = 65536;

uint32_t joined(uint32_t red, uint32_t green, uint32_t blue) {
    return red << 16 | green << 8 | blue;
}

uint32_t shifted(uint32_t red, uint32_t green, uint32_t blue) {
    return joined(red << 3, green << 2, blue << 3);
}

// SDL 2 looks up the colour's two bytes and adds what it finds: the two halves of green are rounded
// down one by one.
uint32_t spread(uint32_t red, uint32_t green, uint32_t blue) {
    return joined(red * 255 / 31, (green & 0x38) * 255 / 63 + (green & 7) * 255 / 63,
                  blue * 255 / 31);
}

std::vector<uint32_t> makeTable() {
    const char* name = getenv("VELMORA_COLOURS");
    const auto way = name != nullptr && strcmp(name, "spread") == 0 ? spread : shifted;
    std::vector<uint32_t> table;
    for (uint32_t colour = 0; colour < kColours; ++colour) {
        table.push_back(way(colour >> 11, colour >> 5 & 63, colour & 31));
    }
    return table;
}

const std::vector<uint32_t>& table() {
    static const std::vector<uint32_t> colours = makeTable();
    return colours;
}

}  // namespace

uint32_t storedColour(uint16_t colour) {
    return table()[colour];
}

size_t coloursStored(const uint32_t* pixels, size_t count, uint16_t* colours) {
    constexpr uint32_t kColourBytes = 0xFFFFFF;  // the byte above them means nothing
    const uint32_t* const stored = table().data();
    size_t first = count;
    for (size_t i = 0; i < count; ++i) {
        const uint32_t pixel = pixels[i] & kColourBytes;
        const uint32_t colour =
            (pixel >> 8 & 0xF800) | (pixel >> 5 & 0x07E0) | (pixel >> 3 & 0x001F);
        const bool known = stored[colour] == pixel;
        colours[i] = known ? static_cast<uint16_t>(colour) : uint16_t{0};
        if (!known && first == count) {
            first = i;
        }
    }
    return first;
}

}  // namespace app
