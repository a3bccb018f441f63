#pragma once
// A tile approximated by runs: the cut of its 64 pixels into stretches of one colour each that
// costs the least squared error plus price of runs, found over all cuts into runs of at most 16 by
// dynamic programming.

#include <array>
#include <cstdint>

#include "tools/clip/encoder/source_block.h"

namespace maker {

struct FittedRun {
    int from;
    int length;
    std::array<int, kChannels> colour;  // the mean of its pixels, rounded, 0 to 255
};

struct RunFit {
    std::array<FittedRun, clip::kTilePixels> runs;
    int count = 0;
};

// `planes` are in the order in which the runs go; `runPrice` is in squared error.
void fitRuns(const ColourPlanes& planes, float runPrice, RunFit& fit);

}  // namespace maker
