#include "tools/clip/encoder/simplify.h"

#include <algorithm>
#include <limits>

#include "common/rgb565.h"
#include "tools/clip/encoder/clusters.h"
#include "tools/clip/encoder/dictionary.h"
#include "tools/clip/encoder/holds.h"
#include "tools/clip/encoder/lookalikes.h"
#include "tools/clip/encoder/quantise.h"
#include "tools/clip/encoder/record_forms.h"
#include "tools/clip/encoder/run_fit.h"
#include "tools/clip/encoder/walks.h"

namespace maker {

namespace {

constexpr double kSmallestRecordBytes = 3;
constexpr double kRunBytes = 1.5;  // palette runs: a control byte for two, and an index each

// Blocky steps show in smooth tiles and hide in busy ones: how much more the error of a tile counts
// than that of a busy one, from the squared distance to its mean colour.
double visibility(int64_t fromMean) {
    constexpr double kSmooth = 20.0 * clip::kTilePixels;
    constexpr double kMore = 2;
    return 1 + kMore * kSmooth / (kSmooth + static_cast<double>(fromMean));
}

// Whether runs would have to be cut at so many places that pixels take no more bytes.
bool tooBusyForRuns(const ColourPlanes& colours, size_t step, double runPrice) {
    const int least = static_cast<int>(std::min(2 * runPrice, 1e6));
    int cuts = 0;
    for (size_t i = 0; i + step < clip::kTilePixels; ++i) {
        int squares = 0;
        for (size_t c = 0; c < kChannels; ++c) {
            const int difference = colours[c][i] - colours[c][i + step];
            squares += difference * difference;
        }
        cuts += squares > least ? 1 : 0;
    }
    return cuts > clip::kTilePixels / kRunBytes;
}

// A picture under consideration, and what it costs.
struct Candidate {
    Tile tile{};
    double cost = std::numeric_limits<double>::infinity();

    void offer(const Tile& other, double otherCost) {
        if (otherCost < cost) {
            *this = {other, otherCost};
        }
    }
};

// Finds the pictures of one block's holds, one after the other.
class Painter {
public:
    Painter(const Rate& rate, const PaletteColours& palette, double leastSaving)
        : rate_(rate),
          palette_(palette),
          leastSaving_(leastSaving),
          index_(palette),
          nearest_(palette) {}

    // `frames` long; `before` is what the position shows until then, null in the first frame.
    Tile paint(const SourceTile& wanted, int frames, const Tile* before);

    std::vector<double> takeSavings() { return std::move(savings_); }

private:
    double price(double bytes) const { return rate_.perByte * bytes; }
    double recordPrice(double bytes) const {
        return price(kMapEntryBytes + rate_.recordBytes + alphaBytes_ + bytes);
    }
    double errorOf(const Tile& tile) const {
        return weight_ * static_cast<double>(squaredDistance(planesOf(tile), wanted_->colours));
    }
    void offerRecord(const Tile& tile, double bytes) {
        record_.offer(tile, recordPrice(bytes) + errorOf(tile));
    }
    void offerFlat();
    void offerKnown(const Tile* before);
    void offerRecords();
    void offerRuns(bool columns);
    void offerPixels(bool exact);
    uint16_t runColour(const FittedRun& run);

    const Rate& rate_;
    const PaletteColours& palette_;
    double leastSaving_;
    PaletteIndex index_;
    NearestEntry nearest_;
    Lookalikes known_;
    std::vector<double> savings_;

    // of the tile under way
    const SourceTile* wanted_ = nullptr;
    double weight_ = 1;
    bool opaque_ = true;
    double alphaBytes_ = 0;
    Candidate free_;    // the best picture that takes no new record
    Candidate record_;  // the best that does
};

// Only an opaque tile of one colour needs no record.
void Painter::offerFlat() {
    constexpr int kHalf = clip::kTilePixels / 2;
    std::array<int, kChannels> mean{};
    for (size_t c = 0; c < kChannels; ++c) {
        int sum = kHalf;
        for (const uint8_t value : wanted_->colours[c]) {
            sum += value;
        }
        mean[c] = sum / clip::kTilePixels;
    }
    Tile tile;
    tile.colours.fill(nearestColour(mean[0], mean[1], mean[2]));
    tile.alpha = wanted_->alpha;
    weight_ *= visibility(squaredDistance(planesOf(tile), wanted_->colours));
    if (opaque_) {
        free_.offer(tile, price(kMapEntryBytes) + errorOf(tile));
    } else {
        offerRecord(tile, kSmallestRecordBytes);
    }
}

void Painter::offerKnown(const Tile* before) {
    if (before != nullptr && before->alpha == wanted_->alpha) {
        free_.offer(*before, errorOf(*before));
    }
    const Lookalikes::Match match = known_.nearest(*wanted_);
    if (match.found) {
        free_.offer(match.tile,
                    price(kMapEntryBytes) + weight_ * static_cast<double>(match.distance));
    }
}

// The palette's colour, unless the source's own saves more error than its extra byte costs.
uint16_t Painter::runColour(const FittedRun& run) {
    const uint16_t exact = nearestColour(run.colour[0], run.colour[1], run.colour[2]);
    const uint8_t entry = nearest_.of(exact);
    const int own[] = {px::red8Of(exact), px::green8Of(exact), px::blue8Of(exact)};
    int error = 0;
    for (size_t c = 0; c < kChannels; ++c) {
        const int fromEntry = nearest_.channel(c, entry) - run.colour[c];
        const int fromExact = own[c] - run.colour[c];
        error += fromEntry * fromEntry - fromExact * fromExact;
    }
    return weight_ * run.length * error > price(1) ? exact : palette_[entry];
}

void Painter::offerRuns(bool columns) {
    constexpr size_t kDown = 4;  // the walk down the columns from the left
    const size_t walk = columns ? kDown : 0;
    RunFit fit;
    fitRuns(readAlong(wanted_->colours, walk), static_cast<float>(price(kRunBytes) / weight_), fit);
    Sequence sequence{};
    for (int r = 0; r < fit.count; ++r) {
        const FittedRun& run = fit.runs[static_cast<size_t>(r)];
        std::fill_n(sequence.begin() + run.from, run.length, runColour(run));
    }
    std::array<Run, clip::kTilePixels> runs;
    const int count = findRuns(sequence, runs.data());
    const int bytes = smallestRunForm(runs.data(), count, index_).bytes;
    offerRecord({paintAlong(sequence, walk), wanted_->alpha}, bytes);
}

void Painter::offerPixels(bool exact) {
    Tile tile = roundedTile(*wanted_);
    if (!exact) {
        for (uint16_t& colour : tile.colours) {
            colour = palette_[nearest_.of(colour)];
        }
    }
    offerRecord(tile, plainBytes(exact ? clip::TYPE_RAW : clip::TYPE_PALETTE));
}

// Forms that cannot cost less than what is there already are not tried.
void Painter::offerRecords() {
    const double runPrice = price(kRunBytes) / weight_;
    if (!tooBusyForRuns(wanted_->colours, 1, runPrice)) {
        offerRuns(false);
    }
    if (!tooBusyForRuns(wanted_->colours, clip::kTileSize, runPrice)) {
        offerRuns(true);
    }
    for (const bool exact : {false, true}) {
        const int bytes = plainBytes(exact ? clip::TYPE_RAW : clip::TYPE_PALETTE);
        if (recordPrice(bytes) < std::min(record_.cost, free_.cost)) {
            offerPixels(exact);
        }
    }
}

Tile Painter::paint(const SourceTile& wanted, int frames, const Tile* before) {
    if (allAre(wanted.alpha, 0)) {
        return {};
    }
    wanted_ = &wanted;
    weight_ = frames;
    opaque_ = allAre(wanted.alpha, clip::kAlphaOpaque);
    alphaBytes_ = opaque_ ? 0 : alphaBytes(wanted.alpha);
    free_ = {};
    record_ = {};
    offerFlat();
    const double least = recordPrice(kSmallestRecordBytes) + leastSaving_;
    if (free_.cost > least) {
        offerKnown(before);
    }
    if (free_.cost > least) {
        offerRecords();
    }
    const double saving = free_.cost - record_.cost;
    if (!(saving > leastSaving_)) {
        return free_.tile;
    }
    savings_.push_back(saving);
    known_.add(record_.tile);
    return record_.tile;
}

PaletteColours paletteFor(const std::vector<Hold>& holds) {
    ColourCounts counts;
    for (const Hold& hold : holds) {
        counts.add(hold.colours, hold.to - hold.from);
    }
    return clusterColours(counts);
}

}  // namespace

Simplifier::Simplifier(const SourceBlock& block, const Rate& rate)
    : block_(block), rate_(rate), holds_(findHolds(block, rate)), palette_(paletteFor(holds_)) {}

ShownBlock Simplifier::show(double leastSaving) const {
    ShownBlock shown{std::vector<Tile>(block_.tiles.size()), {}};
    Painter painter(rate_, palette_, leastSaving);
    for (const Hold& hold : holds_) {
        const size_t first = hold.from * block_.tileCount + hold.position;
        const Tile* before = hold.from > 0 ? &shown.tiles[first - block_.tileCount] : nullptr;
        const Tile tile =
            painter.paint({hold.colours, block_.tiles[first].alpha}, hold.to - hold.from, before);
        for (size_t f = hold.from; f < hold.to; ++f) {
            shown.tiles[f * block_.tileCount + hold.position] = tile;
        }
    }
    shown.savings = painter.takeSavings();
    return shown;
}

}  // namespace maker
