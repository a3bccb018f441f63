#include "px/introfade.h"

#include <algorithm>

#include "common/rgb565.h"

namespace px {

void brightenLit(uint16_t* pixels, int count, int step) {
    for (int i = 0; i < count; ++i) {
        const uint16_t p = pixels[i];
        const uint16_t lit =
            pack(std::clamp(redOf(p) + 2 * step, 0, 31), std::clamp(greenOf(p) + 4 * step, 0, 63),
                 std::clamp(blueOf(p) + 2 * step, 0, 31));
        pixels[i] = p != 0 ? lit : uint16_t{0};
    }
}

}  // namespace px
