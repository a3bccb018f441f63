#include "tools/clip/encoder/tile_math.h"

#include <algorithm>

#ifdef VELMORA_HIGHWAY
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "tools/clip/encoder/tile_math.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "px/vector_choice.h"

HWY_BEFORE_NAMESPACE();
namespace maker::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

int32_t squaredDistance(const ColourPlanes& a, const ColourPlanes& b, int32_t limit) {
    const hn::CappedTag<int16_t, clip::kTilePixels> d16;
    const hn::Rebind<uint8_t, decltype(d16)> d8;
    const hn::RepartitionToWide<decltype(d16)> d32;
    int32_t sum = 0;
    for (const size_t c : {1U, 0U, 2U}) {  // green differs the most
        auto even = hn::Zero(d32);
        auto odd = hn::Zero(d32);
        for (size_t i = 0; i < clip::kTilePixels; i += hn::Lanes(d16)) {
            const auto difference = hn::Sub(hn::PromoteTo(d16, hn::LoadU(d8, a[c].data() + i)),
                                            hn::PromoteTo(d16, hn::LoadU(d8, b[c].data() + i)));
            even = hn::ReorderWidenMulAccumulate(d32, difference, difference, even, odd);
        }
        sum += hn::GetLane(hn::SumOfLanes(d32, hn::Add(even, odd)));
        if (sum >= limit) {
            break;
        }
    }
    return sum;
}

HWY_INLINE int32_t leastAt(const RunSums& sums, const RunCosts& costs, size_t to) {
    const hn::CappedTag<int32_t, kLongestRun> d;
    const hn::RebindToFloat<decltype(d)> df;
    const size_t first = to - kLongestRun;
    auto least = hn::Set(d, INT32_MAX);
    for (size_t back = 0; back < kLongestRun; back += hn::Lanes(d)) {
        const auto since = [&](const std::array<int32_t, kRunPlaces>& values) {
            return hn::Sub(hn::Set(d, values[to]), hn::LoadU(d, values.data() + first + back));
        };
        const auto red = since(sums.colours[0]);
        const auto green = since(sums.colours[1]);
        const auto blue = since(sums.colours[2]);
        const auto product =
            hn::Add(hn::Add(hn::Mul(red, red), hn::Mul(green, green)), hn::Mul(blue, blue));
        const auto mean = hn::ConvertTo(
            d, hn::Mul(hn::ConvertTo(df, product), hn::LoadU(df, kReciprocals.data() + back)));
        const auto cost = hn::Add(hn::LoadU(d, costs.best.data() + first + back),
                                  hn::Sub(since(sums.squares), mean));
        static_assert(kLongestRun == 1 << 4);
        const auto place = hn::Iota(d, static_cast<int32_t>(back));
        least = hn::Min(least, hn::Add(hn::ShiftLeft<4>(cost), place));
    }
    return hn::GetLane(hn::MinOfLanes(d, least));
}

void cutRuns(const std::array<RunSums, 2>& sums, int32_t price, std::array<RunCosts, 2>& costs) {
    beginCosts(costs);
    for (size_t to = kLongestRun + 1; to < kRunPlaces; ++to) {
        const int32_t first = leastAt(sums[0], costs[0], to);
        const int32_t second = leastAt(sums[1], costs[1], to);
        chooseRun(costs[0], to, first, price);
        chooseRun(costs[1], to, second, price);
    }
}

const TileMath* table() {
    static const TileMath kTable{hwy::TargetName(HWY_TARGET), squaredDistance, cutRuns};
    return &kTable;
}

}  // namespace maker::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif

#if !defined(VELMORA_HIGHWAY) || HWY_ONCE
namespace maker {

namespace {

int32_t squaredDistancePlain(const ColourPlanes& a, const ColourPlanes& b, int32_t limit) {
    int32_t sum = 0;  // at most 192 x 255^2
    for (const size_t c : {1U, 0U, 2U}) {
        for (size_t i = 0; i < clip::kTilePixels; ++i) {
            const int difference = a[c][i] - b[c][i];
            sum += difference * difference;
        }
        if (sum >= limit) {
            break;
        }
    }
    return sum;
}

int32_t leastAtPlain(const RunSums& sums, const RunCosts& costs, size_t to) {
    int32_t least = INT32_MAX;
    for (size_t back = 0; back < kLongestRun; ++back) {
        const size_t from = to - kLongestRun + back;
        int32_t product = 0;  // at most 3 x (16 x 128)^2, which a float holds
        for (const auto& values : sums.colours) {
            const int32_t sum = values[to] - values[from];
            product += sum * sum;
        }
        const auto mean = static_cast<int32_t>(static_cast<float>(product) * kReciprocals[back]);
        const int32_t cost = costs.best[from] + sums.squares[to] - sums.squares[from] - mean;
        least =
            std::min(least, cost * static_cast<int32_t>(kLongestRun) + static_cast<int32_t>(back));
    }
    return least;
}

void cutRunsPlain(const std::array<RunSums, 2>& sums, int32_t price,
                  std::array<RunCosts, 2>& costs) {
    beginCosts(costs);
    for (size_t to = kLongestRun + 1; to < kRunPlaces; ++to) {
        for (size_t i = 0; i < 2; ++i) {
            chooseRun(costs[i], to, leastAtPlain(sums[i], costs[i], to), price);
        }
    }
}

}  // namespace

const TileMath& plainTileMath() {
    static const TileMath kPlain{"plain", squaredDistancePlain, cutRunsPlain};
    return kPlain;
}

#ifdef VELMORA_HIGHWAY
HWY_EXPORT(table);

const TileMath& tileMath() {
    return *HWY_DYNAMIC_DISPATCH(table)();
}
#else
const TileMath& tileMath() {
    return plainTileMath();
}
#endif

}  // namespace maker
#endif
