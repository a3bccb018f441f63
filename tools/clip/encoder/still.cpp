#include "tools/clip/encoder/still.h"

#include <array>

#include "tools/clip/encoder/noise.h"
#include "tools/clip/encoder/rate.h"
#include "tools/clip/encoder/stretch.h"

namespace maker {

namespace {

constexpr double kSamples = static_cast<double>(clip::kTilePixels) * kChannels;

// Nothing but noise changes the position's pictures. What compression adds to a still picture of a
// film is taken for noise too.
bool rests(const SourceBlock& block, size_t position, double noise, Stretch& stretch) {
    constexpr double kStill = 2;
    constexpr double kAsMuch = 1.75;  // of the noise's square: it varies from tile to tile
    const auto frames = static_cast<size_t>(block.frames);
    stretch.begin();
    for (size_t f = 0; f < frames; ++f) {
        const SourceTile& tile = block.tiles[f * block.tileCount + position];
        if (tile.alpha != block.tiles[position].alpha) {
            return false;
        }
        stretch.add(tile.colours, squaresOf(tile.colours));
    }
    const double limit =
        kSamples * static_cast<double>(frames) * (kStill + kAsMuch * noise * noise);
    return stretch.error() <= limit && !stretch.moves(Rate{0, 0, noise}.visibleLimit());
}

}  // namespace

// The means of noisy pictures differ by what is left of the noise. Compared with where it came to
// rest, so that no slow change is missed.
bool StillTracker::goesOn(const Rest& before, const Rest& now, int frames) const {
    constexpr double kStill = 1;
    constexpr double kAsMuch = 2;
    if (before.block == kMoves || before.alpha != now.alpha) {
        return false;
    }
    const double left = noise_ * noise_ * (1.0 / frames + 1.0 / clip::kFramesPerBlock);
    return static_cast<double>(squaredDistance(before.mean, now.mean)) <=
           kSamples * (kStill + kAsMuch * left);
}

// Whoever follows a block waits until that is coded: few tiles do not keep blocks from being
// coded side by side.
void StillTracker::leaveFewAlone(std::vector<int16_t>& from) const {
    constexpr int kSideBySide = 4;  // blocks
    constexpr size_t kFew = 4;      // one tile in so many
    std::array<size_t, clip::kMaxFrames / clip::kFramesPerBlock> followers{};
    for (const int16_t block : from) {
        if (block != kMoves) {
            ++followers[static_cast<size_t>(block)];
        }
    }
    for (int16_t& block : from) {
        if (block != kMoves && blocks_ - block < kSideBySide &&
            followers[static_cast<size_t>(block)] * kFew < from.size()) {
            block = kMoves;
        }
    }
}

std::vector<int16_t> StillTracker::next(const SourceBlock& block) {
    rests_.resize(block.tileCount);
    if (block.frames > 1) {
        noise_ = noiseOf(block);  // one picture does not tell
    }
    std::vector<int16_t> from(block.tileCount, kMoves);
    Stretch stretch;
    for (size_t position = 0; position < block.tileCount; ++position) {
        Rest& rest = rests_[position];
        if (!maker::rests(block, position, noise_, stretch)) {
            rest.block = kMoves;
            continue;
        }
        const Rest now{blocks_, stretch.mean(), block.tiles[position].alpha};
        if (goesOn(rest, now, block.frames)) {
            from[position] = rest.block;
        } else {
            rest = now;
        }
    }
    leaveFewAlone(from);
    ++blocks_;
    return from;
}

}  // namespace maker
