#include "app/window_colours.h"

#include <cstdlib>
#include <cstring>
#include <vector>

namespace app {

namespace {

constexpr uint32_t kColours = 65536;

// The uppermost bits once more in the place of the missing ones, or zeros.
uint32_t widened(uint32_t field, int bits, bool spread) {
    const int missing = 8 - bits;
    return field << missing | (spread ? field >> (bits - missing) : 0);
}

std::vector<uint32_t> makeTable() {
    const char* way = getenv("VELMORA_COLOURS");
    const bool spread = way != nullptr && strcmp(way, "spread") == 0;
    std::vector<uint32_t> table;
    for (uint32_t colour = 0; colour < kColours; ++colour) {
        table.push_back(widened(colour >> 11, 5, spread) << 16 |
                        widened(colour >> 5 & 63, 6, spread) << 8 |
                        widened(colour & 31, 5, spread));
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
