#include "tools/clip/encoder/lookalikes.h"

#include <algorithm>

namespace maker {

namespace {

constexpr size_t kCorners = 4;
constexpr int kShelfBits = 14;
constexpr int kMostComparisons = 32;  // of a search; only noise has so many pictures alike

// The walks that one record can always be painted along.
constexpr std::array<uint8_t, 6> kTurns{0, 1, 2, 3, 6, 7};

// Brightness weighs green twice.
constexpr int32_t kStep = 16 * 4 * 12;  // pixels, weight of the channels, levels

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

size_t shelfOf(const std::array<int32_t, kCorners>& levels, uint32_t alpha) {
    uint32_t key = alpha;
    for (const int32_t level : levels) {
        key = key * 23 + static_cast<uint32_t>(level);
    }
    return (key * 2654435761U) >> (32 - kShelfBits);
}

// Each corner at its own level, or at the one next to it, as the bits of `probe` say.
std::array<int32_t, kCorners> levelsNear(const std::array<int32_t, kCorners>& sums, int probe) {
    std::array<int32_t, kCorners> levels;
    for (size_t i = 0; i < kCorners; ++i) {
        const int32_t next = sums[i] % kStep < kStep / 2 ? -1 : 1;
        levels[i] = sums[i] / kStep + ((probe >> i & 1) != 0 ? next : 0);
    }
    return levels;
}

// How far the corners of any picture on that shelf are at least, squared.
int64_t leastDifference(const std::array<int32_t, kCorners>& sums, int probe) {
    int64_t sum = 0;
    for (size_t i = 0; i < kCorners; ++i) {
        const int64_t above = sums[i] % kStep;
        const int64_t away = above < kStep / 2 ? above + 1 : kStep - above;
        sum += (probe >> i & 1) != 0 ? away * away : 0;
    }
    return sum;
}

int64_t squaredDifference(const std::array<int32_t, kCorners>& a,
                          const std::array<int32_t, kCorners>& b) {
    int64_t sum = 0;
    for (size_t i = 0; i < kCorners; ++i) {
        const int64_t difference = a[i] - b[i];
        sum += difference * difference;
    }
    return sum;
}

}  // namespace

struct Lookalikes::Search {
    const SourceTile& wanted;
    CornerSums sums;
    uint32_t alpha;
    int64_t limit;
    int comparisons = 0;
    std::optional<Match> best = std::nullopt;
};

Lookalikes::Lookalikes() : shelves_(size_t{1} << kShelfBits), counts_(shelves_.size()) {}

Lookalikes::CornerSums Lookalikes::sumsOf(const ColourPlanes& colours) {
    constexpr size_t kHalf = clip::kTileSize / 2;
    CornerSums sums{};
    for (size_t i = 0; i < clip::kTilePixels; ++i) {
        const size_t corner = i / clip::kTileSize / kHalf * 2 + i % clip::kTileSize / kHalf;
        sums[corner] += colours[0][i] + 2 * colours[1][i] + colours[2][i];
    }
    return sums;
}

void Lookalikes::lookAlong(size_t walk, Search& search) const {
    constexpr int kProbes = 1 << kCorners;
    constexpr int64_t kSquaredWeights = 16 * (1 + 4 + 1);
    CornerSums sums;
    for (size_t i = 0; i < kCorners; ++i) {
        sums[i] = search.sums[kCornerOf[walk][i]];
    }
    ColourPlanes turned;
    bool isTurned = false;
    for (int probe = 0; probe < kProbes; ++probe) {
        if (leastDifference(sums, probe) >= search.limit * kSquaredWeights) {
            continue;
        }
        for (const Place& place : shelves_[shelfOf(levelsNear(sums, probe), search.alpha)]) {
            // No picture is nearer than its corners are.
            if (squaredDifference(place.sums, sums) >= search.limit * kSquaredWeights) {
                continue;
            }
            if (!isTurned) {
                turned = readAlong(search.wanted.colours, walk);
                isTurned = true;
            }
            if (++search.comparisons > kMostComparisons) {
                return;
            }
            const Picture& picture = pictures_[place.picture];
            const int64_t distance = squaredDistance(turned, picture.colours, search.limit);
            if (distance < search.limit && picture.tile.alpha == search.wanted.alpha) {
                search.limit = distance;
                search.best = {place.picture, walk, distance};
            }
        }
    }
}

std::optional<Lookalikes::Match> Lookalikes::nearest(const SourceTile& wanted,
                                                     int64_t limit) const {
    Search search{wanted, sumsOf(wanted.colours), alphaKey(wanted.alpha), limit};
    for (const uint8_t walk : kTurns) {
        lookAlong(walk, search);
    }
    return search.best;
}

size_t Lookalikes::add(const Tile& tile) {
    const size_t number = pictures_.size();
    const Picture& picture = pictures_.emplace_back(Picture{tile, planesOf(tile)});
    const CornerSums sums = sumsOf(picture.colours);
    CornerSums levels;
    std::transform(sums.begin(), sums.end(), levels.begin(),
                   [](int32_t sum) { return sum / kStep; });
    const size_t shelf = shelfOf(levels, alphaKey(tile.alpha));
    const Place place{static_cast<uint32_t>(number), sums};
    if (shelves_[shelf].size() < kPerShelf) {
        shelves_[shelf].push_back(place);
    } else {
        shelves_[shelf][counts_[shelf] % kPerShelf] = place;
    }
    ++counts_[shelf];
    return number;
}

}  // namespace maker
