#pragma once
// What the cheapest cut of a sequence into runs costs, place by place: the state of the dynamic
// programming that every way of doing it (tile_math.h) shares.

#include <array>
#include <cstdint>

#include "tools/clip/encoder/frame.h"

namespace maker {

inline constexpr size_t kLongestRun = 16;

// Sums over the pixels before each place of a sequence, of each channel less 128 and of its
// squares. The first kLongestRun places stand before the tile, so that every pixel can look back
// equally far.
inline constexpr size_t kRunPlaces = kLongestRun + clip::kTilePixels + 1;
struct RunSums {
    std::array<std::array<int32_t, kRunPlaces>, kChannels> colours{};
    std::array<int32_t, kRunPlaces> squares{};
};

// The cost of the cheapest cut before each place, and how long its last run is.
struct RunCosts {
    std::array<int32_t, kRunPlaces> best;
    std::array<uint8_t, kRunPlaces> lengths;
};

// A tile's error is at most 64 x 3 x 128^2, so that all costs, times 16, stay in 32 bits.
inline constexpr int32_t kNever = 1 << 26;

inline constexpr auto kReciprocals = [] {
    std::array<float, kLongestRun> table{};  // of the run lengths 16 down to 1
    for (size_t back = 0; back < kLongestRun; ++back) {
        table[back] = 1.0F / static_cast<float>(kLongestRun - back);
    }
    return table;
}();

inline void beginCosts(std::array<RunCosts, 2>& costs) {
    for (RunCosts& one : costs) {
        one.best.fill(kNever);
        one.best[kLongestRun] = 0;
    }
}

inline void chooseRun(RunCosts& costs, size_t place, int32_t least, int32_t price) {
    constexpr auto kLongest = static_cast<int32_t>(kLongestRun);
    costs.best[place] = least / kLongest + price;
    costs.lengths[place] = static_cast<uint8_t>(kLongest - least % kLongest);
}

}  // namespace maker
