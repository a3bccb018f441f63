#include "tools/clip/encoder/holds.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

#include "tools/clip/encoder/stretch.h"
#include "tools/clip/encoder/walks.h"

namespace maker {

namespace {

constexpr size_t kPixels = clip::kTilePixels;
constexpr size_t kFrames = clip::kFramesPerBlock;
constexpr double kNever = std::numeric_limits<double>::max();

// The runs of nearly one green along a walk.
int countRuns(const SourceTile& tile, size_t walk, int threshold) {
    const auto& green = tile.colours[1];
    int runs = 1;
    int start = green[kWalkPixels[walk][0]];
    for (const uint8_t pixel : kWalkPixels[walk]) {
        if (std::abs(green[pixel] - start) > threshold) {
            start = green[pixel];
            ++runs;
        }
    }
    return runs;
}

// How many bytes a new picture for this tile takes, about.
double expectedBytes(const SourceTile& tile, const Rate& rate) {
    constexpr double kRunBytes = 1.5;
    constexpr size_t kAlongRows = 0;
    constexpr size_t kAlongColumns = 4;
    const int threshold = static_cast<int>(std::sqrt(rate.perByte)) + 2;
    const int runs =
        std::min(countRuns(tile, kAlongRows, threshold), countRuns(tile, kAlongColumns, threshold));
    return runs == 1
               ? kMapEntryBytes
               : kMapEntryBytes + rate.recordBytes + std::min(kRunBytes * runs, double{kPixels});
}

// Of the block's pictures of noise every position shows a whole number: as many more of them have
// the larger one as the rate says.
size_t noiseFramesAt(const Rate& rate, size_t position, size_t frames) {
    constexpr size_t kSteps = 16;
    constexpr size_t kStride = 7;  // neighbours differ
    const double rest = static_cast<double>(position * kStride % kSteps) / kSteps;
    const auto pictures = static_cast<size_t>(rate.noisePictures + rest);
    return (frames + pictures - 1) / pictures;
}

// The holds of one position.
class Position {
public:
    Position(const SourceBlock& block, const Rate& rate, size_t position)
        : frames_(static_cast<size_t>(block.frames)),
          rate_(rate),
          limit_(rate.visibleLimit()),
          position_(position),
          noiseFrames_(noiseFramesAt(rate, position, frames_)) {
        for (size_t f = 0; f < frames_; ++f) {
            tiles_[f] = &block.tiles[f * block.tileCount + position];
            squares_[f] = squaresOf(tiles_[f]->colours);
        }
    }

    void cut(std::vector<Hold>& holds);

private:
    void extendFrom(size_t from, double newPicture);

    // What noise adds to the error of so many frames. It varies from tile to tile, and what is a
    // little more is no motion yet.
    double noiseIn(size_t frames) const {
        constexpr double kAsMuch = 1.75;
        const double noise = kAsMuch * rate_.noise * rate_.noise * kChannels * kPixels;
        return frames <= noiseFrames_ ? noise * static_cast<double>(frames - 1) : 0;
    }

    size_t frames_;
    const Rate& rate_;
    int limit_;
    size_t position_;
    size_t noiseFrames_;  // that a hold may have without showing noise anew
    std::array<const SourceTile*, kFrames> tiles_{};
    std::array<int64_t, kFrames> squares_{};
    std::array<double, kFrames + 1> best_{};   // cost of the frames before
    std::array<size_t, kFrames + 1> start_{};  // of the last hold in it
    Stretch stretch_;
};

// Tries all holds that begin at `from`, as long as cutting one into single frames would cost more.
void Position::extendFrom(size_t from, double newPicture) {
    stretch_.begin();
    for (size_t to = from + 1; to <= frames_; ++to) {
        const SourceTile& tile = *tiles_[to - 1];
        if (to > from + 1 && tile.alpha != tiles_[from]->alpha) {
            return;
        }
        stretch_.add(tile.colours, squares_[to - 1]);
        const double error = std::max(0.0, stretch_.error() - noiseIn(to - from));
        if (error > static_cast<double>(to - from) * newPicture || stretch_.moves(limit_)) {
            return;
        }
        const double cost = best_[from] + newPicture + error;
        if (cost < best_[to]) {
            best_[to] = cost;
            start_[to] = from;
        }
    }
}

void Position::cut(std::vector<Hold>& holds) {
    const double newPicture = rate_.perByte * expectedBytes(*tiles_[0], rate_);
    best_.fill(kNever);
    best_[0] = 0;
    for (size_t from = 0; from < frames_; ++from) {
        // Equal costs go to the earlier start: a still tile is held from the first frame on.
        extendFrom(from, newPicture);
    }
    for (size_t to = frames_; to > 0; to = start_[to]) {
        stretch_.begin();
        for (size_t f = start_[to]; f < to; ++f) {
            stretch_.add(tiles_[f]->colours, 0);
        }
        holds.push_back({static_cast<uint16_t>(position_), static_cast<uint8_t>(start_[to]),
                         static_cast<uint8_t>(to), stretch_.mean()});
    }
}

}  // namespace

std::vector<Hold> findHolds(const SourceBlock& block, const Rate& rate) {
    std::vector<Hold> holds;
    for (size_t position = 0; position < block.tileCount; ++position) {
        Position(block, rate, position).cut(holds);
    }
    std::stable_sort(holds.begin(), holds.end(), [](const Hold& a, const Hold& b) {
        return a.from != b.from ? a.from < b.from : a.position < b.position;
    });
    return holds;
}

}  // namespace maker
