#include "tools/clip/merge.h"

#include <cstdlib>

#include "common/rgb565.h"

namespace maker {

namespace {

constexpr int kQualitySteps = 3;  // of quality for one step of tolerance

bool nearColours(uint16_t a, uint16_t b, int tolerance) {
    return std::abs(px::red8Of(a) - px::red8Of(b)) <= tolerance &&
           std::abs(px::green8Of(a) - px::green8Of(b)) <= tolerance &&
           std::abs(px::blue8Of(a) - px::blue8Of(b)) <= tolerance;
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
