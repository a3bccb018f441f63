// What of alpha is given up, and what is not.
#include "tools/clip/encoder/soft_alpha.h"

#include <gtest/gtest.h>

#include <set>

#include "tools/clip/encoder/block_coder.h"

namespace {

using maker::AlphaTile;
using maker::SourceBlock;
using maker::SourceTile;

constexpr double kDear = 1000;  // a byte is worth three pixels a level off and more

// Steps of eight pixels: 1, 2, 3 ... 8.
AlphaTile ramp() {
    AlphaTile alpha;
    for (size_t i = 0; i < 64; ++i) {
        alpha[i] = static_cast<uint8_t>(1 + i / 8);
    }
    return alpha;
}

size_t levelsIn(const AlphaTile& alpha) {
    return std::set<uint8_t>(alpha.begin(), alpha.end()).size();
}

TEST(SoftAlpha, Steps_AreJoinedWhereThatPays) {
    EXPECT_EQ(maker::fittedAlpha(ramp(), {1, 6}), ramp());
    const AlphaTile fitted = maker::fittedAlpha(ramp(), {kDear, 6});
    EXPECT_EQ(levelsIn(fitted), 4u);  // runs of sixteen
    for (size_t i = 0; i < 64; ++i) {
        EXPECT_NEAR(fitted[i], ramp()[i], 1);
    }
}

// Whatever it costs: no run may be of more than three levels, the middle one shown.
TEST(SoftAlpha, NoPixel_IsMoreThanOneOff) {
    AlphaTile alpha;
    for (size_t i = 0; i < 64; ++i) {
        alpha[i] = static_cast<uint8_t>(1 + i % 14);
    }
    const AlphaTile fitted = maker::fittedAlpha(alpha, {1e9, 6});
    for (size_t i = 0; i < 64; ++i) {
        EXPECT_NEAR(fitted[i], alpha[i], 1);
    }
}

TEST(SoftAlpha, TransparentAndOpaque_Stay) {
    AlphaTile alpha{};
    for (size_t i = 0; i < 64; ++i) {
        alpha[i] = std::array<uint8_t, 8>{0, 1, 0, 1, 14, 15, 14, 15}[i / 8];
    }
    EXPECT_EQ(maker::fittedAlpha(alpha, {1e9, 6}), alpha);
}

// Frames of one tile whose first pixel has these levels, the others 7.
SourceBlock film(const std::vector<uint8_t>& levels) {
    SourceBlock block{static_cast<int>(levels.size()), 1, {}};
    for (const uint8_t level : levels) {
        SourceTile tile{};
        tile.alpha.fill(7);
        tile.alpha[0] = level;
        block.tiles.push_back(tile);
    }
    return block;
}

std::vector<int> firstLevels(const SourceBlock& block) {
    std::vector<int> levels;
    for (const SourceTile& tile : block.tiles) {
        levels.push_back(tile.alpha[0]);
    }
    return levels;
}

// The film's 44 squares a byte at quality 80: a new record takes more than the 55 of a level.
TEST(SoftAlpha, Flicker_IsHeld) {
    const maker::Rate rate = maker::rateOf(80);
    EXPECT_EQ(firstLevels(withSoftAlpha(film({4, 5, 4, 3, 5, 6, 15, 14}), rate)),
              (std::vector<int>{4, 4, 4, 4, 4, 6, 15, 14}));
    // Nearly exact, a level is worth its record.
    EXPECT_EQ(firstLevels(withSoftAlpha(film({4, 5, 4, 3}), maker::rateOf(99))),
              (std::vector<int>{4, 5, 4, 3}));
}

TEST(SoftAlpha, Clip_TakesFewerRecordsBelow100) {
    const SourceBlock block = film({4, 5, 4, 5, 4, 5, 4, 5});
    EXPECT_EQ(maker::codeBlock(block, {.quality = 80, .content = maker::Content::FOOTAGE})
                  .set.records.size(),
              1u);
    EXPECT_EQ(maker::codeBlock(block, {.quality = 100}).set.records.size(), 2u);
}

}  // namespace
