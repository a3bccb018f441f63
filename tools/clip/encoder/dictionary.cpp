#include "tools/clip/encoder/dictionary.h"

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <unordered_map>

namespace maker {

namespace {

constexpr uint64_t kHashFactor = 0x9E3779B97F4A7C15;  // odd, its bits evenly mixed

static_assert(std::has_unique_object_representations_v<Tile> && sizeof(Tile) % 8 == 0);

// Of each distinct tile, from 0 in the order of first arrival.
using TileNumbers = std::unordered_map<Tile, uint32_t, uint64_t (*)(const Tile&)>;

uint32_t numberOf(const Tile& tile, TileNumbers& numbers) {
    return numbers.try_emplace(tile, static_cast<uint32_t>(numbers.size())).first->second;
}

Placement classify(const Tile& tile, TileNumbers& pictures) {
    if (allAre(tile.alpha, 0) && allAre(tile.colours, 0)) {
        return {Fill::EMPTY, 0};
    }
    if (allAre(tile.colours, tile.colours[0]) && allAre(tile.alpha, clip::kAlphaOpaque)) {
        return {Fill::FLAT, tile.colours[0]};
    }
    return {Fill::PICTURE, numberOf(tile, pictures)};
}

// Whether reading the picture along walk a gives less than along walk b.
bool readsLess(const Sequence& picture, size_t a, size_t b) {
    for (size_t step = 0; step < clip::kTilePixels; ++step) {
        const uint16_t left = picture[kWalkPixels[a][step]];
        const uint16_t right = picture[kWalkPixels[b][step]];
        if (left != right) {
            return left < right;
        }
    }
    return false;
}

size_t leastWalk(const Sequence& picture) {
    size_t least = 0;
    for (size_t walk = 1; walk < kWalks; ++walk) {
        if (readsLess(picture, walk, least)) {
            least = walk;
        }
    }
    return least;
}

}  // namespace

uint64_t hashTile(const Tile& tile) {
    uint64_t words[sizeof(Tile) / 8];
    std::memcpy(words, &tile, sizeof(tile));
    uint64_t hash = 0;
    for (const uint64_t word : words) {
        hash = (hash ^ word) * kHashFactor;
        hash ^= hash >> 29;
    }
    return hash;
}

BlockTiles collectTiles(std::span<const Tile> tiles) {
    TileNumbers numbers(0, hashTile);
    BlockTiles block;
    block.placements.reserve(tiles.size());
    for (const Tile& tile : tiles) {
        const size_t known = numbers.size();
        block.placements.push_back(classify(tile, numbers));
        if (numbers.size() > known) {
            block.pictures.push_back(tile);
        }
    }
    return block;
}

std::vector<Shape> groupShapes(const std::vector<Tile>& pictures) {
    TileNumbers numbers(0, hashTile);
    std::vector<Shape> shapes;
    for (size_t picture = 0; picture < pictures.size(); ++picture) {
        const Tile& tile = pictures[picture];
        const size_t walk = leastWalk(tile.colours);
        const Tile key{readAlong(tile.colours, walk), tile.alpha};
        const uint32_t number = numberOf(key, numbers);
        if (number == shapes.size()) {
            shapes.push_back({key.colours, key.alpha, {}});
            shapes.back().members.fill(kNoPicture);
        }
        shapes[number].members[walk] = static_cast<uint32_t>(picture);
    }
    return shapes;
}

}  // namespace maker
