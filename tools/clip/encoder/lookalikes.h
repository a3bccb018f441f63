#pragma once
// The pictures that a block draws so far, to be found again by what they look like.
//
// Pictures are filed by the mean brightness of their four corners and by their alpha. A search
// looks on the shelf of the tile and on those of the levels next to it, and also for pictures whose
// mirror images or turns resemble the tile, as one record draws them all. It finds most near
// pictures, not every one.

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "tools/clip/encoder/source_block.h"
#include "tools/clip/encoder/walks.h"

namespace maker {

class Lookalikes {
public:
    Lookalikes();

    struct Match {
        size_t picture = 0;
        size_t walk = 0;       // along which it is painted
        int64_t distance = 0;  // squared, all channels
    };

    // The nearest of the pictures tried, when there is one nearer than `limit`.
    std::optional<Match> nearest(const SourceTile& wanted, int64_t limit) const;

    size_t add(const Tile& tile);  // its number, from 0
    size_t count() const { return pictures_.size(); }
    const Tile& tile(size_t picture) const { return pictures_[picture].tile; }

private:
    static constexpr size_t kPerShelf = 32;  // the latest ones
    static constexpr size_t kCorners = 4;    // top left, top right, bottom left, bottom right
    using CornerSums = std::array<int32_t, kCorners>;  // of brightness

    struct Picture {
        Tile tile;
        ColourPlanes colours;
    };
    struct Place {
        uint32_t picture;
        CornerSums sums;
    };
    struct Search;

    static CornerSums sumsOf(const ColourPlanes& colours);
    void lookAlong(size_t walk, Search& search) const;

    std::vector<Picture> pictures_;
    std::vector<std::vector<Place>> shelves_;
    std::vector<uint32_t> counts_;  // ever put on each
};

}  // namespace maker
