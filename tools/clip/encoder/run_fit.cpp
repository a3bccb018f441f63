#include "tools/clip/encoder/run_fit.h"

#include <algorithm>

namespace maker {

namespace {

constexpr size_t kPixels = clip::kTilePixels;
constexpr size_t kLongest = 16;

// A tile's error is at most 64 x 3 x 128^2, so that all costs, times 16, stay in 32 bits.
constexpr float kDearestRun = 1 << 19;
constexpr int32_t kNever = 1 << 26;

// Sums over the pixels before each pixel. The first `kLongest` places stand before the tile, so
// that every pixel can look back equally far; their cost keeps them from being used.
constexpr size_t kPlaces = kLongest + kPixels + 1;

struct Sums {
    std::array<std::array<float, kPlaces>, kChannels> colours{};
    std::array<float, kPlaces> squares{};
};

constexpr std::array<float, kLongest> makeReciprocals() {
    std::array<float, kLongest> table{};
    for (size_t back = 0; back < kLongest; ++back) {
        table[back] = 1.0F / static_cast<float>(kLongest - back);
    }
    return table;
}

// Of the run lengths 16 down to 1.
constexpr std::array<float, kLongest> kReciprocals = makeReciprocals();

Sums sumsOf(const ColourPlanes& planes) {
    constexpr int kMiddle = 128;  // keeps the squares small enough for a float
    Sums sums;
    for (size_t i = 0; i < kPixels; ++i) {
        const size_t at = kLongest + i;
        int squares = 0;
        for (size_t c = 0; c < kChannels; ++c) {
            const int value = planes[c][i] - kMiddle;
            sums.colours[c][at + 1] = sums.colours[c][at] + static_cast<float>(value);
            squares += value * value;
        }
        sums.squares[at + 1] = sums.squares[at] + static_cast<float>(squares);
    }
    return sums;
}

FittedRun runOf(const ColourPlanes& planes, int from, int length) {
    FittedRun run{from, length, {}};
    for (size_t c = 0; c < kChannels; ++c) {
        int sum = length / 2;
        for (int i = from; i < from + length; ++i) {
            sum += planes[c][static_cast<size_t>(i)];
        }
        run.colour[c] = sum / length;
    }
    return run;
}

}  // namespace

// Costs are whole numbers with the run's place in the lowest bits, so that the least of them names
// the run; of equal costs the longest run is taken.
void fitRuns(const ColourPlanes& planes, float runPrice, RunFit& fit) {
    const Sums sums = sumsOf(planes);
    const int32_t price = static_cast<int32_t>(std::min(runPrice, kDearestRun));
    std::array<int32_t, kPlaces> best;
    best.fill(kNever);
    best[kLongest] = 0;
    std::array<uint8_t, kPixels + 1> lengths{};
    for (size_t to = kLongest + 1; to < kPlaces; ++to) {
        const size_t first = to - kLongest;
        int32_t least = INT32_MAX;
        for (size_t back = 0; back < kLongest; ++back) {
            const float red = sums.colours[0][to] - sums.colours[0][first + back];
            const float green = sums.colours[1][to] - sums.colours[1][first + back];
            const float blue = sums.colours[2][to] - sums.colours[2][first + back];
            const float squares = sums.squares[to] - sums.squares[first + back];
            const float error =
                squares - (red * red + green * green + blue * blue) * kReciprocals[back];
            const int32_t cost = best[first + back] + static_cast<int32_t>(error);
            least =
                std::min(least, cost * static_cast<int32_t>(kLongest) + static_cast<int32_t>(back));
        }
        best[to] = least / static_cast<int32_t>(kLongest) + price;
        lengths[to - kLongest] =
            static_cast<uint8_t>(kLongest - static_cast<size_t>(least) % kLongest);
    }
    fit.count = 0;
    for (size_t to = kPixels; to > 0; to -= lengths[to]) {
        const int length = lengths[to];
        fit.runs[static_cast<size_t>(fit.count++)] =
            runOf(planes, static_cast<int>(to) - length, length);
    }
    std::reverse(fit.runs.begin(), fit.runs.begin() + fit.count);
}

}  // namespace maker
