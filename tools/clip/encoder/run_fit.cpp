#include "tools/clip/encoder/run_fit.h"

#include <algorithm>

namespace maker {

namespace {

constexpr size_t kPixels = clip::kTilePixels;
constexpr int kMiddle = 128;             // keeps the squares of sums small enough for a float
constexpr double kDearestRun = 1 << 19;  // more than a tile's error, however it is cut

FittedRun runOf(const RunSums& sums, size_t from, size_t to) {
    const auto length = static_cast<int>(to - from);
    FittedRun run{static_cast<int>(from - kLongestRun), length, {}};
    for (size_t c = 0; c < kChannels; ++c) {
        const int sum = sums.colours[c][to] - sums.colours[c][from] + kMiddle * length;
        run.colour[c] = (sum + length / 2) / length;
    }
    return run;
}

}  // namespace

RunSums sumsOf(const ColourPlanes& planes) {
    RunSums sums;
    for (size_t i = 0; i < kPixels; ++i) {
        const size_t at = kLongestRun + i;
        int squares = 0;
        for (size_t c = 0; c < kChannels; ++c) {
            const int value = planes[c][i] - kMiddle;
            sums.colours[c][at + 1] = sums.colours[c][at] + value;
            squares += value * value;
        }
        sums.squares[at + 1] = sums.squares[at] + squares;
    }
    return sums;
}

RunFits::RunFits(const std::array<ColourPlanes, 2>& planes, double runPrice)
    : sums_{sumsOf(planes[0]), sumsOf(planes[1])} {
    tileMath().cutRuns(sums_, static_cast<int32_t>(std::min(runPrice, kDearestRun)), costs_);
}

size_t RunFits::take(size_t sequence, FittedRuns& runs) const {
    size_t count = 0;
    for (size_t to = kLongestRun + kPixels; to > kLongestRun;) {
        const size_t from = to - costs_[sequence].lengths[to];
        runs[count++] = runOf(sums_[sequence], from, to);
        to = from;
    }
    std::reverse(runs.begin(), runs.begin() + static_cast<long>(count));
    return count;
}

}  // namespace maker
