#include "tools/clip/merge.h"

#include <cstdlib>

#include "common/rgb565.h"

namespace maker {

namespace {

constexpr int kQualitySteps = 3;  // of quality for one step of tolerance

// Channels on the scale 0 to 255, the top bits repeated below.
constexpr int wide5(int channel) {
    return channel << 3 | channel >> 2;
}
constexpr int wide6(int channel) {
    return channel << 2 | channel >> 4;
}

bool nearColours(uint16_t a, uint16_t b, int tolerance) {
    return std::abs(wide5(px::redOf(a)) - wide5(px::redOf(b))) <= tolerance &&
           std::abs(wide6(px::greenOf(a)) - wide6(px::greenOf(b))) <= tolerance &&
           std::abs(wide5(px::blueOf(a)) - wide5(px::blueOf(b))) <= tolerance;
}

uint16_t meanColour(const Sequence& colours) {
    constexpr int kHalf = clip::kTilePixels / 2;
    int red = kHalf;
    int green = kHalf;
    int blue = kHalf;
    for (const uint16_t colour : colours) {
        red += px::redOf(colour);
        green += px::greenOf(colour);
        blue += px::blueOf(colour);
    }
    return px::pack(red / clip::kTilePixels, green / clip::kTilePixels, blue / clip::kTilePixels);
}

}  // namespace

int toleranceOf(int quality) {
    return (kBestQuality - quality) / kQualitySteps;
}

bool near(const Tile& a, const Tile& b, int tolerance) {
    if (a.alpha != b.alpha) {
        return false;
    }
    for (size_t i = 0; i < a.colours.size(); ++i) {
        if (!nearColours(a.colours[i], b.colours[i], tolerance)) {
            return false;
        }
    }
    return true;
}

void mergeTiles(std::span<Tile> tiles, std::span<const Tile> kept, int tolerance) {
    if (tolerance == 0) {
        return;
    }
    for (size_t i = 0; i < tiles.size(); ++i) {
        Tile& tile = tiles[i];
        if (!kept.empty() && near(tile, kept[i], tolerance)) {
            tile = kept[i];
            continue;
        }
        Tile flat = tile;
        flat.colours.fill(meanColour(tile.colours));
        if (near(tile, flat, tolerance)) {
            tile = flat;
        }
    }
}

}  // namespace maker
