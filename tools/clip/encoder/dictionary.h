#pragma once
// The distinct pictures of a block's tiles, and which of them are one shape.
//
// Every tile of a block is flat, empty, or a picture; equal pictures are kept once. Pictures that
// are mirror images or quarter turns of each other, under the same alpha as placed, make one shape:
// a run record can serve several of them. Tiles come frame by frame in raster order.

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "tools/clip/encoder/frame.h"
#include "tools/clip/encoder/walks.h"

namespace maker {

uint64_t hashTile(const Tile& tile);

enum class Fill : uint8_t { FLAT, EMPTY, PICTURE };

struct Placement {
    Fill fill;
    uint32_t value;  // FLAT: the colour; PICTURE: the number of the picture; EMPTY: 0

    bool operator==(const Placement&) const = default;
};

struct BlockTiles {
    std::vector<Tile> pictures;
    std::vector<Placement> placements;  // one for each tile of the block
};

BlockTiles collectTiles(std::span<const Tile> tiles);

inline constexpr uint32_t kNoPicture = 0xFFFFFFFF;

struct Shape {
    Sequence sequence;  // the least of the eight readings of its pictures
    AlphaTile alpha;
    std::array<uint32_t, kWalks> members;  // the picture that `sequence` gives along each walk
};

std::vector<Shape> groupShapes(const std::vector<Tile>& pictures);

}  // namespace maker
