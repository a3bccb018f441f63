#include "tools/clip/encoder/source_block.h"

#include <algorithm>

#include "common/rgb565.h"
#include "tools/clip/encoder/quantise.h"
#include "tools/clip/encoder/tile_math.h"

namespace maker {

namespace {

constexpr size_t kBytesPerPixel = 4;

void cutTile(const uint8_t* corner, bool alpha, SourceTile& tile) {
    for (size_t i = 0; i < clip::kTilePixels; ++i) {
        const size_t y = i / clip::kTileSize;
        const size_t x = i % clip::kTileSize;
        const uint8_t* pixel = corner + (y * kFrameWidth + x) * kBytesPerPixel;
        const uint8_t level = alpha ? alphaLevel(pixel[3]) : uint8_t{clip::kAlphaOpaque};
        tile.alpha[i] = level;
        for (size_t c = 0; c < kChannels; ++c) {
            tile.colours[c][i] = level == 0 ? uint8_t{0} : pixel[c];
        }
    }
}

}  // namespace

void appendTiles(const uint8_t* rgba, int height, bool alpha, std::vector<SourceTile>& tiles) {
    for (int top = 0; top < height; top += clip::kTileSize) {
        for (int left = 0; left < kFrameWidth; left += clip::kTileSize) {
            const size_t at = static_cast<size_t>(top) * kFrameWidth + static_cast<size_t>(left);
            cutTile(rgba + at * kBytesPerPixel, alpha, tiles.emplace_back());
        }
    }
}

void appendPicture(const uint8_t* rgba, int height, bool alpha, SourceBlock& block) {
    appendTiles(rgba, height, alpha, block.tiles);
    block.tileCount = static_cast<size_t>(clip::tilesFor(height));
    ++block.frames;
}

SourceBlock sampleOf(const SourceBlock& block) {
    const size_t count = block.tileCount / kSampleEvery / clip::kCodesPerWord * clip::kCodesPerWord;
    SourceBlock sample{block.frames, count, {}};
    for (size_t i = 0; i < block.tiles.size(); ++i) {
        const size_t position = i % block.tileCount;
        if (position % kSampleEvery == 0 && position / kSampleEvery < count) {
            sample.tiles.push_back(block.tiles[i]);
        }
    }
    return sample;
}

ColourPlanes planesOf(const Tile& tile) {
    ColourPlanes planes{};
    for (size_t i = 0; i < clip::kTilePixels; ++i) {
        planes[0][i] = static_cast<uint8_t>(px::red8Of(tile.colours[i]));
        planes[1][i] = static_cast<uint8_t>(px::green8Of(tile.colours[i]));
        planes[2][i] = static_cast<uint8_t>(px::blue8Of(tile.colours[i]));
    }
    return planes;
}

Tile roundedTile(const SourceTile& tile) {
    Tile rounded;
    rounded.alpha = tile.alpha;
    for (size_t i = 0; i < clip::kTilePixels; ++i) {
        rounded.colours[i] =
            nearestColour(tile.colours[0][i], tile.colours[1][i], tile.colours[2][i]);
    }
    return rounded;
}

int64_t squaredDistance(const ColourPlanes& a, const ColourPlanes& b, int64_t limit) {
    return tileMath().squaredDistance(a, b,
                                      static_cast<int32_t>(std::min(limit, int64_t{INT32_MAX})));
}

}  // namespace maker
