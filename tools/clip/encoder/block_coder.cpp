#include "tools/clip/encoder/block_coder.h"

#include <algorithm>
#include <bitset>
#include <cmath>
#include <utility>

#include "tools/clip/encoder/noise.h"
#include "tools/clip/encoder/price_search.h"
#include "tools/clip/encoder/simplify.h"
#include "tools/clip/encoder/soft_alpha.h"

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

bool dearer(const CodingPlan& plan) {
    return plan.byteFactor > 1 || plan.recordFactor > 1;
}

// Whatever it takes.
bool mustBeExact(const CodingPlan& plan, bool fewColours) {
    return !dearer(plan) && !plan.dither &&
           (plan.quality == kBestQuality || (plan.content == Content::GRAPHICS && fewColours));
}

double errorOf(const SourceBlock& block, const std::vector<Tile>& shown) {
    const std::vector<SourceTile>& source = block.originals.empty() ? block.tiles : block.originals;
    int64_t sum = 0;
    for (size_t i = 0; i < shown.size(); ++i) {
        sum += squaredDistance(planesOf(shown[i]), source[i].colours);
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
    rate.dither = plan.dither;
    return rate;
}

// Bytes, with those that a record counts for.
double sizeOf(const CodedBlock& coded, const Rate& rate) {
    const double records = static_cast<double>(coded.set.records.size());
    return static_cast<double>(coded.set.bytes.size()) +
           records * (kMapEntryBytes + rate.recordBytes);
}

double costOf(const CodedBlock& coded, const Rate& rate) {
    return coded.squaredError + rate.perByte * sizeOf(coded, rate);
}

constexpr double kNoNoise = 0.3;  // what rounding looks like

// The source's noise is not kept at the qualities that are meant for film. From there on a tile
// that stands still shows it in more and more new pictures, and at last in every frame.
void leaveNoiseOut(const SourceBlock& block, const CodingPlan& plan, Rate& rate) {
    constexpr double kAllUpTo = 80;
    const double along =
        std::clamp((plan.quality - kAllUpTo) / (kBestQuality - kAllUpTo), 0.0, 1.0);
    rate.noise = plan.noise.value_or(plan.content == Content::GRAPHICS ? 0 : noiseOf(block));
    rate.noisePictures = std::pow(clip::kFramesPerBlock, along);
}

CodedBlock codeAt(const SourceBlock& source, const Rate& rate, const StandingTiles& standing = {}) {
    const bool soft = hasSoftAlpha(source);
    const SourceBlock softened = soft ? withSoftAlpha(source, rate) : SourceBlock{};
    const SourceBlock& block = soft ? softened : source;
    const Simplifier simplifier(block, rate, standing);
    return codeTiles(block, simplifier.show(), &simplifier.palette());
}

// A block of so many records, which is more than the limit, is coded at a higher price, all of it
// alike and none of it as the block before. Where alpha alone takes that many, the dearest stays.
CodedBlock codeDearer(const SourceBlock& block, const Rate& rate, const CodingPlan& plan,
                      size_t records) {
    const SourceBlock sample = sampleOf(block);
    const auto recordsAt = [&](double price) {
        return static_cast<double>(codeAt(sample, rate.forFewerRecords(price)).set.records.size());
    };
    // In a sample less looks alike: it counts by what the block took at the first price.
    const double scale = static_cast<double>(records) / recordsAt(1) / plan.mostRecords;
    PriceSearch search([&](double price) { return scale * recordsAt(price); });
    double price = search.find(1);
    CodedBlock coded = codeAt(block, rate.forFewerRecords(price));
    for (double step = 1.2; excess(coded, plan) > 0 && price < kDearest; step *= step) {
        price *= step;  // a sample is not exact
        coded = codeAt(block, rate.forFewerRecords(price));
    }
    return coded;
}

CodedBlock codeByRate(const SourceBlock& block, const CodingPlan& plan,
                      const StandingTiles& standing) {
    Rate rate = rateFor(plan);
    leaveNoiseOut(block, plan, rate);
    CodedBlock coded = codeAt(block, rate, standing);
    const bool limited = excess(coded, plan) > 0;
    if (limited) {
        coded = codeDearer(block, rate, plan, coded.set.records.size());
    }
    coded.noise = rate.noise >= kNoNoise ? rate.noise : 0;
    coded.limited = limited;
    return coded;
}

// Up to how many times the size of the cheaper coding exactness is worth. It grows from nothing, so
// that no quality is much larger than the one below.
double worthOfExactness(int quality) {
    constexpr double kMore = 0.3;
    return 1 + kMore * (quality - kLowestExactQuality) / (kBestQuality - kLowestExactQuality);
}

bool exactIsBetter(const CodedBlock& exact, const CodedBlock& coded, const CodingPlan& plan,
                   bool fewColours) {
    const Rate rate = rateFor(plan);
    // What the exact one is nearer to may be nothing but noise.
    return (coded.noise == 0 && costOf(exact, rate) < costOf(coded, rate)) ||
           (fewColours &&
            sizeOf(exact, rate) <= worthOfExactness(plan.quality) * sizeOf(coded, rate));
}

}  // namespace

bool alwaysExact(const CodingPlan& plan) {
    return plan.quality == kBestQuality && !dearer(plan) && !plan.dither;
}

std::vector<Tile> lastShown(const CodedBlock& coded) {
    const std::vector<Placement>& placements = coded.tiles.placements;
    const size_t count = placements.size() / static_cast<size_t>(coded.frames);
    std::vector<Tile> tiles;
    tiles.reserve(count);
    for (size_t i = placements.size() - count; i < placements.size(); ++i) {
        const Placement& placement = placements[i];
        if (placement.fill == Fill::PICTURE) {
            tiles.push_back(coded.tiles.pictures[placement.value]);
            continue;
        }
        Tile& tile = tiles.emplace_back();
        tile.colours.fill(static_cast<uint16_t>(placement.value));
        tile.alpha.fill(placement.fill == Fill::FLAT ? uint8_t{clip::kAlphaOpaque} : uint8_t{0});
    }
    return tiles;
}

CodedBlock codeBlock(const SourceBlock& block, const CodingPlan& plan,
                     const StandingTiles& standing) {
    constexpr int kNearExact = 88;  // from here on exact coding may be the cheaper one
    const std::vector<Tile> rounded = roundedTiles(block);
    const bool fewColours = plan.content != Content::FOOTAGE &&
                            plan.quality >= kLowestExactQuality && fitsPalette(rounded);
    const bool must = mustBeExact(plan, plan.content == Content::GRAPHICS && fitsPalette(rounded));
    if (!must && (dearer(plan) || plan.dither || (plan.quality < kNearExact && !fewColours))) {
        return codeByRate(block, plan, standing);
    }
    CodedBlock exact = codeTiles(block, rounded, nullptr);
    exact.exact = true;
    const bool fits = excess(exact, plan) <= 0;
    if (must && fits) {
        return exact;
    }
    CodedBlock coded = codeByRate(block, plan, standing);
    return fits && exactIsBetter(exact, coded, plan, fewColours) ? exact : coded;
}

}  // namespace maker
