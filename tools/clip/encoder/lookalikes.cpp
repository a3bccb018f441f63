#include "tools/clip/encoder/lookalikes.h"

#include <algorithm>

namespace maker {

namespace {

constexpr size_t kShelves = 1 << 14;
constexpr size_t kCorners = 4;  // top left, top right, bottom left, bottom right

// The walks that one record can always be painted along.
constexpr std::array<uint8_t, 6> kTurns{0, 1, 2, 3, 6, 7};

using CornerLevels = std::array<uint32_t, kCorners>;

CornerLevels cornersOf(const ColourPlanes& colours) {
    constexpr size_t kHalf = clip::kTileSize / 2;
    constexpr uint32_t kStep = 16 * 4 * 12;  // pixels, weight of the channels, levels
    CornerLevels levels{};
    for (size_t i = 0; i < clip::kTilePixels; ++i) {
        const size_t corner = i / clip::kTileSize / kHalf * 2 + i % clip::kTileSize / kHalf;
        levels[corner] += static_cast<uint32_t>(colours[0][i] + 2 * colours[1][i] + colours[2][i]);
    }
    for (uint32_t& level : levels) {
        level /= kStep;
    }
    return levels;
}

uint32_t alphaKey(const AlphaTile& alpha) {
    uint32_t key = 0;
    for (const uint8_t level : alpha) {
        key = key * 31 + level;
    }
    return key;
}

// corner[walk][i]: which corner of a picture stands at corner i of the picture read along the walk.
constexpr auto makeCornerTable() {
    std::array<std::array<uint8_t, kCorners>, kWalks> table{};
    for (size_t walk = 0; walk < kWalks; ++walk) {
        for (size_t corner = 0; corner < kCorners; ++corner) {
            const size_t step = corner / 2 * 7 * clip::kTileSize + corner % 2 * 7;
            const size_t pixel = kWalkPixels[walk][step];
            table[walk][corner] =
                static_cast<uint8_t>(pixel / clip::kTileSize / 4 * 2 + pixel % clip::kTileSize / 4);
        }
    }
    return table;
}

constexpr auto kCornerOf = makeCornerTable();

size_t shelfOf(const CornerLevels& levels, size_t walk, uint32_t alpha) {
    uint32_t key = alpha;
    for (const uint8_t corner : kCornerOf[walk]) {
        key = key * 23 + levels[corner];
    }
    return (key * 2654435761U) >> 18;
}
static_assert(kShelves == size_t{1} << (32 - 18));

}  // namespace

Lookalikes::Lookalikes() : shelves_(kShelves) {}

Lookalikes::Match Lookalikes::nearest(const SourceTile& wanted) const {
    const CornerLevels levels = cornersOf(wanted.colours);
    const uint32_t alpha = alphaKey(wanted.alpha);
    Match match;
    const Picture* best = nullptr;
    size_t bestWalk = 0;
    for (const uint8_t walk : kTurns) {
        const Shelf& shelf = shelves_[shelfOf(levels, walk, alpha)];
        const size_t count = std::min<size_t>(shelf.count, kPerShelf);
        if (count == 0) {
            continue;
        }
        const ColourPlanes turned = readAlong(wanted.colours, walk);
        for (size_t i = 0; i < count; ++i) {
            const Picture& picture = pictures_[shelf.pictures[i]];
            const int64_t distance = squaredDistance(turned, picture.colours);
            if ((best == nullptr || distance < match.distance) &&
                picture.tile.alpha == wanted.alpha) {
                best = &picture;
                bestWalk = walk;
                match.distance = distance;
            }
        }
    }
    if (best != nullptr) {
        match.found = true;
        match.tile = {paintAlong(best->tile.colours, bestWalk), best->tile.alpha};
    }
    return match;
}

void Lookalikes::add(const Tile& tile) {
    Picture& picture = pictures_.emplace_back(Picture{tile, planesOf(tile)});
    const size_t number = shelfOf(cornersOf(picture.colours), 0, alphaKey(tile.alpha));
    Shelf& shelf = shelves_[number];
    shelf.pictures[shelf.count++ % kPerShelf] = static_cast<uint32_t>(pictures_.size() - 1);
}

}  // namespace maker
