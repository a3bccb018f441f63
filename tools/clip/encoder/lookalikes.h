#pragma once
// The pictures that a block draws so far, to be found again by what they look like.
//
// Pictures are filed by the mean brightness of their four corners and by their alpha. A search also
// looks for those whose mirror images or turns resemble the tile, as one record draws them all. It
// finds most near pictures, not every one.

#include <array>
#include <cstdint>
#include <vector>

#include "tools/clip/encoder/source_block.h"
#include "tools/clip/encoder/walks.h"

namespace maker {

class Lookalikes {
public:
    Lookalikes();

    struct Match {
        bool found = false;
        int64_t distance = 0;  // squared, all channels
        Tile tile{};           // turned as the search wanted it
    };

    // The nearest of the pictures tried.
    Match nearest(const SourceTile& wanted) const;

    void add(const Tile& tile);

private:
    static constexpr size_t kPerShelf = 4;  // the latest ones

    struct Picture {
        Tile tile;
        ColourPlanes colours;
    };
    struct Shelf {
        std::array<uint32_t, kPerShelf> pictures;
        uint32_t count = 0;  // ever put here
    };

    std::vector<Picture> pictures_;
    std::vector<Shelf> shelves_;
};

}  // namespace maker
