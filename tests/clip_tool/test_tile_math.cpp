// The encoder's sums by every vector width of this processor against the plain loops.
#include "tools/clip/encoder/tile_math.h"

#include <gtest/gtest.h>

#include <functional>

#include "bench/vector_targets.h"
#include "clip_tool/pictures.h"
#include "tools/clip/encoder/run_fit.h"

namespace {

using maker::ColourPlanes;

void atEveryWidth(const std::function<void(const maker::TileMath& math)>& check) {
    for (const VectorTarget& target : vectorTargets()) {
        SCOPED_TRACE(target.name);
        useTarget(target);
        check(maker::tileMath());
    }
}

// Values of either end only where `range` is 2, else of the whole range.
ColourPlanes planes(pictures::Random& random, unsigned range) {
    ColourPlanes planes;
    for (auto& plane : planes) {
        for (uint8_t& value : plane) {
            value = static_cast<uint8_t>(random.below(range) * 255 / (range - 1));
        }
    }
    return planes;
}

TEST(TileMath, SquaredDistance_IsThatOfThePlainLoop) {
    atEveryWidth([](const maker::TileMath& math) {
        pictures::Random random(1);
        for (const unsigned range : {2U, 16U, 256U}) {
            for (int i = 0; i < 200; ++i) {
                const ColourPlanes a = planes(random, range);
                const ColourPlanes b = planes(random, range);
                const int32_t exact = maker::plainTileMath().squaredDistance(a, b, INT32_MAX);
                EXPECT_EQ(math.squaredDistance(a, b, INT32_MAX), exact);
                EXPECT_GE(math.squaredDistance(a, b, exact / 3), exact / 3);
                EXPECT_EQ(math.squaredDistance(a, b, exact / 3),
                          maker::plainTileMath().squaredDistance(a, b, exact / 3));
            }
        }
    });
}

// All channels as far apart as can be: 192 times 255 squared.
TEST(TileMath, LargestDistance_IsHeld) {
    ColourPlanes black{};
    ColourPlanes white;
    for (auto& plane : white) {
        plane.fill(255);
    }
    atEveryWidth([&](const maker::TileMath& math) {
        EXPECT_EQ(math.squaredDistance(black, white, INT32_MAX), 192 * 255 * 255);
    });
}

TEST(TileMath, Cuts_AreThoseOfThePlainLoop) {
    const auto cutsOf = [](const maker::TileMath& math, const std::array<maker::RunSums, 2>& sums,
                           int32_t price) {
        std::array<maker::RunCosts, 2> costs{};
        math.cutRuns(sums, price, costs);
        return costs;
    };
    atEveryWidth([&](const maker::TileMath& math) {
        pictures::Random random(2);
        for (const unsigned range : {2U, 5U, 256U}) {
            for (const int32_t price : {0, 1, 300, 20000, 1 << 19}) {
                const std::array sums = {maker::sumsOf(planes(random, range)),
                                         maker::sumsOf(planes(random, range))};
                const auto costs = cutsOf(math, sums, price);
                const auto plain = cutsOf(maker::plainTileMath(), sums, price);
                for (size_t i = 0; i < 2; ++i) {
                    EXPECT_EQ(costs[i].best, plain[i].best) << range << ' ' << price;
                    EXPECT_EQ(costs[i].lengths, plain[i].lengths) << range << ' ' << price;
                }
            }
        }
    });
}

}  // namespace
