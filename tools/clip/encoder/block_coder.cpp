#include "tools/clip/encoder/block_coder.h"

#include <algorithm>
#include <bitset>
#include <limits>

#include "tools/clip/encoder/simplify.h"

namespace maker {

namespace {

constexpr int kLowestExactQuality = 70;  // of blocks of few colours in a clip of mixed content

std::vector<Tile> roundedTiles(const SourceBlock& block) {
    std::vector<Tile> tiles;
    tiles.reserve(block.tiles.size());
    for (const SourceTile& tile : block.tiles) {
        tiles.push_back(roundedTile(tile));
    }
    return tiles;
}

bool fitsPalette(const std::vector<Tile>& tiles) {
    std::bitset<kColours> seen;
    size_t count = 0;
    for (const Tile& tile : tiles) {
        for (const uint16_t colour : tile.colours) {
            count += seen[colour] ? 0 : 1;
            seen[colour] = true;
        }
        if (count > clip::kPaletteEntries) {
            return false;
        }
    }
    return true;
}

bool wantsExact(const CodingPlan& plan, const std::vector<Tile>& rounded) {
    if (plan.byteFactor > 1 || plan.recordFactor > 1) {
        return false;
    }
    switch (plan.content) {
        case Content::GRAPHICS:
            return plan.quality == kBestQuality || fitsPalette(rounded);
        case Content::MIXED:
            return plan.quality == kBestQuality ||
                   (plan.quality >= kLowestExactQuality && fitsPalette(rounded));
        default:
            return plan.quality == kBestQuality;
    }
}

double errorOf(const SourceBlock& block, const std::vector<Tile>& shown) {
    int64_t sum = 0;
    for (size_t i = 0; i < shown.size(); ++i) {
        sum += squaredDistance(planesOf(shown[i]), block.tiles[i].colours);
    }
    return static_cast<double>(sum);
}

CodedBlock codeTiles(const SourceBlock& block, const std::vector<Tile>& shown,
                     const PaletteColours* palette) {
    CodedBlock coded;
    coded.frames = block.frames;
    coded.squaredError = errorOf(block, shown);
    coded.tiles = collectTiles(shown);
    const std::vector<Shape> shapes = groupShapes(coded.tiles.pictures);
    coded.palette = palette != nullptr ? *palette : choosePalette(weighColours(shapes));
    coded.set = chooseRecords(coded.tiles.pictures, shapes, PaletteIndex(coded.palette));
    return coded;
}

int64_t excess(const CodedBlock& coded, const CodingPlan& plan) {
    return plan.mostRecords > 0 ? static_cast<int64_t>(coded.set.records.size()) - plan.mostRecords
                                : 0;
}

Rate rateFor(const CodingPlan& plan) {
    constexpr int kNearlyExact = kBestQuality - 1;  // where a clip that should be exact begins
    Rate rate = rateOf(std::min(plan.quality, kNearlyExact));
    rate.perByte *= plan.byteFactor;
    rate.recordBytes *= plan.recordFactor;
    return rate;
}

// What a new record must save, so that `surplus` of those that were made are done without.
double thresholdFor(std::vector<double> savings, int64_t surplus) {
    const size_t rank = std::min(static_cast<size_t>(surplus), savings.size()) - 1;
    std::nth_element(savings.begin(), savings.begin() + static_cast<long>(rank), savings.end());
    return savings[rank];
}

double costOf(const CodedBlock& coded, const Rate& rate) {
    const double records = static_cast<double>(coded.set.records.size());
    return coded.squaredError + rate.perByte * (static_cast<double>(coded.set.bytes.size()) +
                                                records * (kMapEntryBytes + rate.recordBytes));
}

// Doing without a record can leave others that were like it on their own, so it takes a few rounds
// to get down to the limit, each asking for more than the surplus. Every round ends with fewer
// records, or with none that could be done without: those of infinite saving stay, limit or not.
CodedBlock codeByRate(const SourceBlock& block, const CodingPlan& plan) {
    constexpr double kMostSaving = std::numeric_limits<double>::max();
    const Simplifier simplifier(block, rateFor(plan));
    for (double leastSaving = 0;;) {
        ShownBlock shown = simplifier.show(leastSaving);
        CodedBlock coded = codeTiles(block, shown.tiles, &simplifier.palette());
        const int64_t surplus = excess(coded, plan);
        if (surplus <= 0 || shown.savings.empty() || leastSaving == kMostSaving) {
            return coded;
        }
        const int64_t more = surplus / 8 + static_cast<int64_t>(shown.savings.size()) / 100 + 1;
        leastSaving = std::min(thresholdFor(std::move(shown.savings), surplus + more), kMostSaving);
    }
}

}  // namespace

CodedBlock codeBlock(const SourceBlock& block, const CodingPlan& plan) {
    constexpr int kNearExact = 88;  // from here on exact coding may be the cheaper one
    const std::vector<Tile> rounded = roundedTiles(block);
    const bool wanted = wantsExact(plan, rounded);
    const bool dearer = plan.byteFactor > 1 || plan.recordFactor > 1;
    if (!wanted && (plan.quality < kNearExact || dearer)) {
        return codeByRate(block, plan);
    }
    CodedBlock exact = codeTiles(block, rounded, nullptr);
    exact.exact = true;
    const bool fits = excess(exact, plan) <= 0;
    if (wanted && fits) {
        return exact;
    }
    CodedBlock coded = codeByRate(block, plan);
    const Rate rate = rateFor(plan);
    return fits && costOf(exact, rate) < costOf(coded, rate) ? exact : coded;
}

}  // namespace maker
