#include "clip/paint.h"

#include <algorithm>
#include <cstring>

namespace clip {

void fillTile(uint16_t* out, uint16_t colour) {
    for (int row = 0; row < kTileSize; ++row) {
        std::fill_n(out, kTileSize, colour);
        out += kFrameWidth;
    }
}

void fillTileAlpha(uint8_t* out, uint8_t level) {
    for (int row = 0; row < kTileSize; ++row) {
        memset(out, level, kTileSize);
        out += kFrameWidth;
    }
}

void copyTileAlpha(uint8_t* out, const uint8_t* levels) {
    for (int row = 0; row < kTileSize; ++row) {
        memcpy(out, levels + row * kTileSize, kTileSize);
        out += kFrameWidth;
    }
}

}  // namespace clip
