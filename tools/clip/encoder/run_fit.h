#pragma once
// A tile approximated by runs: the cut of its 64 pixels into stretches of one colour each that
// costs the least squared error plus price of runs, found over all cuts into runs of at most 16 by
// dynamic programming.

#include <array>
#include <cstdint>

#include "tools/clip/encoder/source_block.h"
#include "tools/clip/encoder/tile_math.h"

namespace maker {

struct FittedRun {
    int from;
    int length;
    std::array<int, kChannels> colour;  // the mean of its pixels, rounded, 0 to 255
};

using FittedRuns = std::array<FittedRun, clip::kTilePixels>;

RunSums sumsOf(const ColourPlanes& planes);

// Two sequences, their planes in the order in which the runs go.
class RunFits {
public:
    // `runPrice` is in squared error.
    RunFits(const std::array<ColourPlanes, 2>& planes, double runPrice);

    // Squared error and price of the runs.
    double cost(size_t sequence) const { return costs_[sequence].best.back(); }

    // Gives their number.
    size_t take(size_t sequence, FittedRuns& runs) const;

private:
    std::array<RunSums, 2> sums_;
    std::array<RunCosts, 2> costs_;
};

}  // namespace maker
