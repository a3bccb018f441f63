#include "tools/clip/encoder/dictionary.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace maker {

namespace {

constexpr size_t kFirstSlots = 1 << 12;
constexpr uint32_t kFreeSlot = 0xFFFFFFFF;
constexpr uint64_t kHashFactor = 0x9E3779B97F4A7C15;  // odd, its bits evenly mixed

static_assert(std::has_unique_object_representations_v<Tile> && sizeof(Tile) % 8 == 0);

bool allEqual(const auto& values, auto expected) {
    return std::all_of(values.begin(), values.end(),
                       [expected](auto value) { return value == expected; });
}

Placement classify(const Tile& tile, TilePool& pool) {
    if (allEqual(tile.alpha, 0) && allEqual(tile.colours, 0)) {
        return {Fill::EMPTY, 0};
    }
    if (allEqual(tile.colours, tile.colours[0]) && allEqual(tile.alpha, clip::kAlphaOpaque)) {
        return {Fill::FLAT, tile.colours[0]};
    }
    return {Fill::PICTURE, pool.intern(tile)};
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

TilePool::TilePool() : slots_(kFirstSlots, kFreeSlot) {}

uint32_t TilePool::intern(const Tile& tile) {
    const uint64_t hash = hashTile(tile);
    const size_t mask = slots_.size() - 1;
    size_t slot = hash & mask;
    while (slots_[slot] != kFreeSlot) {
        const uint32_t number = slots_[slot];
        if (hashes_[number] == hash && tiles_[number] == tile) {
            return number;
        }
        slot = (slot + 1) & mask;
    }
    const uint32_t number = static_cast<uint32_t>(tiles_.size());
    slots_[slot] = number;
    tiles_.push_back(tile);
    hashes_.push_back(hash);
    if (tiles_.size() * 2 > slots_.size()) {
        grow();
    }
    return number;
}

void TilePool::grow() {
    slots_.assign(slots_.size() * 2, kFreeSlot);
    const size_t mask = slots_.size() - 1;
    for (size_t number = 0; number < tiles_.size(); ++number) {
        size_t slot = hashes_[number] & mask;
        while (slots_[slot] != kFreeSlot) {
            slot = (slot + 1) & mask;
        }
        slots_[slot] = static_cast<uint32_t>(number);
    }
}

BlockTiles collectTiles(std::span<const Tile> tiles) {
    TilePool pool;
    BlockTiles block;
    block.placements.reserve(tiles.size());
    for (const Tile& tile : tiles) {
        block.placements.push_back(classify(tile, pool));
    }
    block.pictures = pool.tiles();
    return block;
}

std::vector<Shape> groupShapes(const std::vector<Tile>& pictures) {
    TilePool pool;
    std::vector<Shape> shapes;
    for (size_t picture = 0; picture < pictures.size(); ++picture) {
        const Tile& tile = pictures[picture];
        const size_t walk = leastWalk(tile.colours);
        const Tile key{readAlong(tile.colours, static_cast<int>(walk)), tile.alpha};
        const uint32_t number = pool.intern(key);
        if (number == shapes.size()) {
            shapes.push_back({key.colours, key.alpha, {}});
            shapes.back().members.fill(kNoPicture);
        }
        shapes[number].members[walk] = static_cast<uint32_t>(picture);
    }
    return shapes;
}

}  // namespace maker
