#pragma once
// Up to 16 pictures cut into tiles: what one block of a clip is coded from.
//
// Colours keep the source's 8 bits a channel, planar, so that stages which weigh differences can
// walk them in vectors. Where the alpha level is 0 the colours are black, as they will be shown.

#include <array>
#include <cstdint>
#include <vector>

#include "tools/clip/encoder/frame.h"

namespace maker {

// The colours of a tile, row by row: red, green, blue, 0 to 255.
using ColourPlanes = std::array<std::array<uint8_t, clip::kTilePixels>, kChannels>;

struct SourceTile {
    ColourPlanes colours;
    AlphaTile alpha;  // all opaque in a clip without alpha
};

struct SourceBlock {
    int frames = 0;
    size_t tileCount = 0;           // of a frame
    std::vector<SourceTile> tiles;  // frame by frame, raster order
    // As they were before the dithering, which is not what was asked to be shown; else none.
    std::vector<SourceTile> originals{};
};

// Appends the tiles of one picture of 640 x height x 4 bytes (red, green, blue, straight alpha).
void appendTiles(const uint8_t* rgba, int height, bool alpha, std::vector<SourceTile>& tiles);
void appendPicture(const uint8_t* rgba, int height, bool alpha, SourceBlock& block);

// How a sample of a block is taken: one tile in so many, which shares no divisor with the tiles of
// a row.
inline constexpr size_t kSampleEvery = 7;

// Of every frame the same few tiles, so many that their codes fill whole words.
SourceBlock sampleOf(const SourceBlock& block);

// The tile with each channel rounded to RGB565, on the scale 0 to 255 again as a display shows it.
ColourPlanes planesOf(const Tile& tile);

// The nearest RGB565 tile.
Tile roundedTile(const SourceTile& tile);

// Sum of the squared differences of all channels and pixels; once it has reached `limit`, at least
// that.
int64_t squaredDistance(const ColourPlanes& a, const ColourPlanes& b, int64_t limit = INT32_MAX);

}  // namespace maker
