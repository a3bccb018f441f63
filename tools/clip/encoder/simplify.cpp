#include "tools/clip/encoder/simplify.h"

#include <algorithm>
#include <limits>
#include <map>
#include <span>
#include <utility>

#include "common/rgb565.h"
#include "tools/clip/encoder/clusters.h"
#include "tools/clip/encoder/dictionary.h"
#include "tools/clip/encoder/holds.h"
#include "tools/clip/encoder/lookalikes.h"
#include "tools/clip/encoder/pattern.h"
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

constexpr size_t kNoKnown = std::numeric_limits<size_t>::max();

// What a hold shows: a picture of its own, or one of the known ones along a walk.
struct Shown {
    Tile tile{};
    size_t known = kNoKnown;
    size_t walk = 0;
    bool settled = false;  // exactly as it is
};

std::array<uint8_t, kChannels> meanOf(const SourceTile& wanted) {
    constexpr int kHalf = clip::kTilePixels / 2;
    std::array<uint8_t, kChannels> mean{};
    for (size_t c = 0; c < kChannels; ++c) {
        int sum = kHalf;
        for (const uint8_t value : wanted.colours[c]) {
            sum += value;
        }
        mean[c] = static_cast<uint8_t>(sum / clip::kTilePixels);
    }
    return mean;
}

// The tile's mean colour all over.
Tile flatOf(const SourceTile& wanted) {
    const std::array<uint8_t, kChannels> mean = meanOf(wanted);
    Tile tile;
    tile.colours.fill(nearestColour(mean[0], mean[1], mean[2]));
    tile.alpha = wanted.alpha;
    return tile;
}

// A picture under consideration, and what it costs.
struct Candidate {
    Shown shown{};
    double cost = std::numeric_limits<double>::infinity();
    double bytes = 0;  // of its record

    void offer(const Shown& other, double otherCost, double otherBytes = 0) {
        if (otherCost < cost) {
            *this = {other, otherCost, otherBytes};
        }
    }
};

// Finds the pictures of one block's holds, one after the other.
class Painter {
public:
    Painter(const Rate& rate, const PaletteColours& palette)
        : rate_(rate), palette_(palette), index_(palette), nearest_(palette) {}

    // `frames` long; `before` is what the position shows until then, null in the first frame.
    Shown paint(const SourceTile& wanted, int frames, const Shown* before);

    // Goes on showing a tile, exactly.
    Shown keep(const Tile& tile);

    // A tile that will be painted: those that may share a pattern share its price.
    void announce(const SourceTile& wanted) {
        if (rate_.dither) {
            ++patterns_[patternColourOf(wanted)].users;
        }
    }

    // The hold shows a known picture, which settle() may move nearer to all that show it, unless
    // one of them shows it exactly.
    struct User {
        const SourceTile* wanted;
        int frames;
        size_t walk;
        bool settled;
    };
    Tile settle(size_t known, const std::vector<User>& users);

private:
    double price(double bytes) const { return rate_.perByte * bytes; }
    double recordPrice(double bytes) const {
        return price(kMapEntryBytes + rate_.recordBytes + alphaBytes_ + bytes);
    }
    double errorOf(const Tile& tile) const {
        return weight_ * static_cast<double>(squaredDistance(planesOf(tile), wanted_->colours));
    }
    void offerRecord(const Tile& tile, double bytes) {
        record_.offer({tile}, recordPrice(bytes) + errorOf(tile), bytes);
    }
    void begin(const SourceTile& wanted, int frames);
    void offerFlat();
    void offerPattern();
    void offerKnown(const Shown* before);
    void offerRecords();
    void offerFit(const RunFits& fits, size_t order, size_t walk);
    void offerRuns(const std::array<size_t, 2>& walks);
    void offerPixels(bool exact);
    uint16_t runColour(const FittedRun& run);

    const Rate& rate_;
    const PaletteColours& palette_;
    PaletteIndex index_;
    NearestEntry nearest_;
    Lookalikes known_;
    std::vector<double> recordBytes_;  // of the known ones

    struct Pattern {
        size_t known = kNoKnown;
        int users = 0;  // that may show it
    };
    std::map<PatternColour, Pattern> patterns_;

    // of the tile under way
    const SourceTile* wanted_ = nullptr;
    Tile flat_{};  // its mean colour
    double weight_ = 1;
    bool opaque_ = true;
    double alphaBytes_ = 0;
    Candidate free_;    // the best picture that takes no new record
    Candidate record_;  // the best that does
};

void Painter::begin(const SourceTile& wanted, int frames) {
    wanted_ = &wanted;
    flat_ = flatOf(wanted);
    weight_ = frames * visibility(squaredDistance(planesOf(flat_), wanted.colours));
    opaque_ = allAre(wanted.alpha, clip::kAlphaOpaque);
    alphaBytes_ = opaque_ ? 0 : alphaBytes(wanted.alpha);
    free_ = {};
    record_ = {};
}

// Only an opaque tile of one colour needs no record.
void Painter::offerFlat() {
    if (opaque_) {
        free_.offer({flat_}, price(kMapEntryBytes) + errorOf(flat_));
    } else {
        offerRecord(flat_, kSmallestRecordBytes);
    }
}

// The eye takes the pattern for its mean, so that is what it differs by.
void Painter::offerPattern() {
    const PatternColour colour = patternColourOf(*wanted_);
    const Tile tile = patternTile(colour);
    if (allAre(tile.colours, tile.colours[0])) {
        return;
    }
    ColourPlanes mean{};
    for (size_t c = 0; c < kChannels; ++c) {
        mean[c].fill(meanOf(*wanted_)[c]);
    }
    const double error = weight_ * static_cast<double>(squaredDistance(mean, wanted_->colours));
    const Pattern& pattern = patterns_[colour];
    if (pattern.known != kNoKnown) {
        free_.offer({tile, pattern.known, 0, true}, price(kMapEntryBytes) + error);
        return;
    }
    const int bytes = plainBytes(plainType(tile.colours, index_));
    const double share = price(rate_.recordBytes + bytes) / std::max(pattern.users, 1);
    record_.offer({tile, kNoKnown, 0, true}, price(kMapEntryBytes) + share + error, bytes);
}

void Painter::offerKnown(const Shown* before) {
    if (before != nullptr && before->tile.alpha == wanted_->alpha) {
        free_.offer(*before, errorOf(before->tile));
    }
    const double limit = (free_.cost - price(kMapEntryBytes)) / weight_;
    const auto match = known_.nearest(*wanted_, static_cast<int64_t>(std::min(limit, 1e12)));
    if (match) {
        const Tile& known = known_.tile(match->picture);
        free_.offer(
            {{paintAlong(known.colours, match->walk), known.alpha}, match->picture, match->walk},
            price(kMapEntryBytes) + weight_ * static_cast<double>(match->distance));
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

// Runs along one walk. Their price is an estimate, so a fit that costs somewhat more than the best
// so far is looked at too.
void Painter::offerFit(const RunFits& fits, size_t order, size_t walk) {
    constexpr double kMayCost = 1.1;
    if (recordPrice(0) + weight_ * fits.cost(order) >
        kMayCost * std::min(record_.cost, free_.cost)) {
        return;
    }
    FittedRuns fitted;
    const size_t fittedCount = fits.take(order, fitted);
    Sequence sequence{};
    for (const FittedRun& run : std::span(fitted).first(fittedCount)) {
        std::fill_n(sequence.begin() + run.from, run.length, runColour(run));
    }
    std::array<Run, clip::kTilePixels> runs;
    const int count = findRuns(sequence, runs.data());
    const int bytes = smallestRunForm(runs.data(), count, index_).bytes;
    offerRecord({paintAlong(sequence, walk), wanted_->alpha}, bytes);
}

void Painter::offerRuns(const std::array<size_t, 2>& walks) {
    const RunFits fits(
        {readAlong(wanted_->colours, walks[0]), readAlong(wanted_->colours, walks[1])},
        price(kRunBytes) / weight_);
    const size_t better = fits.cost(1) < fits.cost(0) ? 1 : 0;
    for (const size_t order : {better, 1 - better}) {
        offerFit(fits, order, walks[order]);
    }
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
        offerRuns({0, 1});
    }
    if (!tooBusyForRuns(wanted_->colours, clip::kTileSize, runPrice)) {
        offerRuns({4, 5});
    }
    for (const bool exact : {false, true}) {
        const int bytes = plainBytes(exact ? clip::TYPE_RAW : clip::TYPE_PALETTE);
        if (recordPrice(bytes) < std::min(record_.cost, free_.cost)) {
            offerPixels(exact);
        }
    }
}

// The record moves to the mean of all that show it, where that is worth the bytes.
Tile Painter::settle(size_t known, const std::vector<User>& users) {
    const Tile& tile = known_.tile(known);
    if (users.size() == 1 ||
        std::any_of(users.begin(), users.end(), [](const User& user) { return user.settled; })) {
        return tile;
    }
    SourceTile mean;
    mean.alpha = tile.alpha;
    int frames = 0;
    std::array<std::array<int, clip::kTilePixels>, kChannels> sums{};
    for (const User& user : users) {
        frames += user.frames;
        const ColourPlanes colours = readAlong(user.wanted->colours, user.walk);
        for (size_t c = 0; c < kChannels; ++c) {
            for (size_t i = 0; i < clip::kTilePixels; ++i) {
                sums[c][i] += user.frames * colours[c][i];
            }
        }
    }
    for (size_t c = 0; c < kChannels; ++c) {
        for (size_t i = 0; i < clip::kTilePixels; ++i) {
            mean.colours[c][i] = static_cast<uint8_t>((sums[c][i] + frames / 2) / frames);
        }
    }
    begin(mean, users.front().frames);
    offerRecords();
    const double before = recordPrice(recordBytes_[known]) + errorOf(tile);
    return record_.cost < before ? record_.shown.tile : tile;
}

Shown Painter::paint(const SourceTile& wanted, int frames, const Shown* before) {
    if (allAre(wanted.alpha, 0)) {
        return {};
    }
    begin(wanted, frames);
    offerFlat();
    const double least = recordPrice(kSmallestRecordBytes);
    if (free_.cost > least) {
        offerKnown(before);
    }
    if (rate_.dither && opaque_) {
        offerPattern();
    }
    if (free_.cost > least) {
        offerRecords();
    }
    if (free_.cost <= record_.cost) {
        return free_.shown;
    }
    record_.shown.known = known_.add(record_.shown.tile);
    if (record_.shown.settled) {
        patterns_[patternColourOf(wanted)].known = record_.shown.known;
    }
    recordBytes_.push_back(record_.bytes);
    return record_.shown;
}

Shown Painter::keep(const Tile& tile) {
    const bool empty = allAre(tile.alpha, 0);
    if (empty ||
        (allAre(tile.alpha, clip::kAlphaOpaque) && allAre(tile.colours, tile.colours[0]))) {
        return {tile};
    }
    const auto match = known_.nearest({planesOf(tile), tile.alpha}, 1);
    if (match) {
        return {tile, match->picture, match->walk, true};
    }
    recordBytes_.push_back(0);
    return {tile, known_.add(tile), 0, true};
}

const Tile* standingAt(const StandingTiles& standing, const Hold& hold) {
    return hold.from == 0 && !standing.empty() ? standing[hold.position] : nullptr;
}

PaletteColours paletteFor(const std::vector<Hold>& holds, const StandingTiles& standing) {
    ColourCounts counts;
    for (const Hold& hold : holds) {
        const Tile* kept = standingAt(standing, hold);
        counts.add(kept != nullptr ? planesOf(*kept) : hold.colours, hold.to - hold.from);
    }
    return clusterColours(counts);
}

// The known pictures, moved to what their users want.
std::vector<Tile> settle(Painter& painter, const std::vector<Hold>& holds,
                         const std::vector<SourceTile>& wanted, const std::vector<Shown>& shows) {
    std::vector<std::vector<Painter::User>> users;
    for (size_t i = 0; i < shows.size(); ++i) {
        if (shows[i].known != kNoKnown) {
            users.resize(std::max(users.size(), shows[i].known + 1));
            users[shows[i].known].push_back(
                {&wanted[i], holds[i].to - holds[i].from, shows[i].walk, shows[i].settled});
        }
    }
    std::vector<Tile> settled(users.size());
    for (size_t known = 0; known < users.size(); ++known) {
        settled[known] = painter.settle(known, users[known]);
    }
    return settled;
}

}  // namespace

Simplifier::Simplifier(const SourceBlock& block, const Rate& rate, StandingTiles standing)
    : block_(block),
      standing_(std::move(standing)),
      rate_(rate),
      holds_(findHolds(block, rate)),
      palette_(paletteFor(holds_, standing_)) {}

std::vector<Tile> Simplifier::show() const {
    std::vector<Tile> tiles(block_.tiles.size());
    Painter painter(rate_, palette_);
    std::vector<SourceTile> wanted;
    std::vector<Shown> shows;
    std::vector<size_t> last(block_.tileCount);  // hold at each position
    wanted.reserve(holds_.size());
    for (const Hold& hold : holds_) {
        const size_t first = hold.from * block_.tileCount + hold.position;
        wanted.push_back({hold.colours, block_.tiles[first].alpha});
        painter.announce(wanted.back());
    }
    for (const Hold& hold : holds_) {
        const SourceTile& tile = wanted[shows.size()];
        const Shown* before = hold.from > 0 ? &shows[last[hold.position]] : nullptr;
        last[hold.position] = shows.size();
        const Tile* kept = standingAt(standing_, hold);
        shows.push_back(kept != nullptr ? painter.keep(*kept)
                                        : painter.paint(tile, hold.to - hold.from, before));
    }
    const std::vector<Tile> settled = settle(painter, holds_, wanted, shows);
    for (size_t i = 0; i < shows.size(); ++i) {
        const Hold& hold = holds_[i];
        Tile tile = shows[i].tile;
        if (shows[i].known != kNoKnown) {
            const Tile& known = settled[shows[i].known];
            tile = {paintAlong(known.colours, shows[i].walk), known.alpha};
        }
        for (size_t f = hold.from; f < hold.to; ++f) {
            tiles[f * block_.tileCount + hold.position] = tile;
        }
    }
    return tiles;
}

}  // namespace maker
