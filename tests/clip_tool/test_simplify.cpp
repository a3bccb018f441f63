// The lossy stages: what a quality is worth, how long a tile is held, which runs stand for it,
// which palette, which picture drawn before.
#include "tools/clip/encoder/simplify.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

#include "clip_tool/pictures.h"
#include "tools/clip/encoder/clusters.h"
#include "tools/clip/encoder/holds.h"
#include "tools/clip/encoder/lookalikes.h"
#include "tools/clip/encoder/quantise.h"
#include "tools/clip/encoder/run_fit.h"

namespace {

using maker::ColourPlanes;
using maker::Rate;
using maker::SourceBlock;
using maker::SourceTile;
using maker::Tile;

SourceTile grey(int level) {
    SourceTile tile;
    for (auto& plane : tile.colours) {
        plane.fill(static_cast<uint8_t>(level));
    }
    tile.alpha.fill(15);
    return tile;
}

// One position over several frames.
SourceBlock film(const std::vector<SourceTile>& tiles) {
    return {static_cast<int>(tiles.size()), 1, tiles};
}

TEST(Rate, LowerQuality_IsDearerAndSeesLess) {
    double before = 0;
    int limit = 0;
    for (int quality = 99; quality >= 0; --quality) {
        const Rate rate = maker::rateOf(quality);
        EXPECT_GT(rate.perByte, before);
        EXPECT_GE(rate.visibleLimit(), limit);
        before = rate.perByte;
        limit = rate.visibleLimit();
    }
    EXPECT_EQ(maker::rateOf(100).perByte, 0);
    EXPECT_LE(maker::rateOf(99).visibleLimit(), 25);
}

TEST(Holds, StillTile_IsOneHold) {
    const SourceBlock block = film(std::vector<SourceTile>(16, grey(90)));
    const std::vector<maker::Hold> holds = maker::findHolds(block, {10, 6});
    ASSERT_EQ(holds.size(), 1u);
    EXPECT_EQ(holds[0].from, 0);
    EXPECT_EQ(holds[0].to, 16);
    EXPECT_EQ(holds[0].colours, grey(90).colours);
}

// Stripes, whose picture is not cheap, with noise that moves every pixel up and down by 2. What is
// held is what stands still below the noise.
TEST(Holds, Noise_IsAveraged) {
    SourceTile stripes = grey(60);
    for (size_t i = 0; i < 64; i += 2) {
        stripes.colours[1][i] = stripes.colours[1][63 - i] = static_cast<uint8_t>(100 + i);
    }
    std::vector<SourceTile> tiles;
    for (size_t f = 0; f < 8; ++f) {
        tiles.push_back(stripes);
        for (size_t i = 0; i < 64; ++i) {
            const int moved = stripes.colours[1][i] + ((f + i) % 2 == 0 ? -2 : 2);
            tiles.back().colours[1][i] = static_cast<uint8_t>(moved);
        }
    }
    const std::vector<maker::Hold> holds = maker::findHolds(film(tiles), {50, 6});
    ASSERT_EQ(holds.size(), 1u);
    EXPECT_EQ(holds[0].colours, stripes.colours);
}

TEST(Holds, Jump_IsCutWhereItHappens) {
    std::vector<SourceTile> tiles(5, grey(20));
    tiles.insert(tiles.end(), 7, grey(200));
    const std::vector<maker::Hold> holds = maker::findHolds(film(tiles), {10, 6});
    ASSERT_EQ(holds.size(), 2u);
    EXPECT_EQ(holds[0].to, 5);
    EXPECT_EQ(holds[1].from, 5);
    EXPECT_EQ(holds[1].to, 12);
    EXPECT_EQ(holds[1].colours, grey(200).colours);
}

// A rate that would pay for any error: the limit alone keeps a spark of one pixel.
TEST(Holds, VisibleSpark_IsNotAveragedAway) {
    std::vector<SourceTile> tiles(3, grey(20));
    tiles[1].colours[0][30] = 255;
    const Rate dear{1000, 6};  // limit 24 + 6 x sqrt(1000) = 213
    EXPECT_EQ(dear.visibleLimit(), 213);
    const std::vector<maker::Hold> holds = maker::findHolds(film(tiles), dear);
    ASSERT_EQ(holds.size(), 3u);
    EXPECT_EQ(holds[1].colours[0][30], 255);
    tiles[1].colours[0][30] = 20 + 213;
    EXPECT_EQ(maker::findHolds(film(tiles), {1e6, 1e-4}).size(), 3u);  // limit 84
}

TEST(Holds, OtherAlpha_EndsAHold) {
    std::vector<SourceTile> tiles(4, grey(50));
    tiles[2].alpha[9] = tiles[3].alpha[9] = 14;
    const std::vector<maker::Hold> holds = maker::findHolds(film(tiles), {1000, 6});
    ASSERT_EQ(holds.size(), 2u);
    EXPECT_EQ(holds[1].from, 2);
}

TEST(Holds, Order_IsByFrameThenPosition) {
    SourceBlock block{2, 2, {grey(0), grey(10), grey(250), grey(10)}};
    const std::vector<maker::Hold> holds = maker::findHolds(block, {1, 6});
    ASSERT_EQ(holds.size(), 3u);
    EXPECT_EQ(holds[0].position, 0);
    EXPECT_EQ(holds[1].position, 1);
    EXPECT_EQ(holds[1].to, 2);
    EXPECT_EQ(holds[2].position, 0);
    EXPECT_EQ(holds[2].from, 1);
}

std::vector<maker::FittedRun> fittedRuns(const SourceTile& tile, double price) {
    const maker::RunFits fits({tile.colours, grey(0).colours}, price);
    maker::FittedRuns runs;
    const size_t count = fits.take(0, runs);
    return {runs.begin(), runs.begin() + static_cast<long>(count)};
}

// 10 pixels of one grey, 54 of another: two colours, the second in runs of at most 16.
TEST(RunFit, CleanEdge_IsFoundExactly) {
    SourceTile tile = grey(40);
    for (auto& plane : tile.colours) {
        std::fill(plane.begin() + 10, plane.end(), uint8_t{200});
    }
    const std::vector<maker::FittedRun> runs = fittedRuns(tile, 100);
    ASSERT_EQ(runs.size(), 5u);  // 10, and 54 = 16 + 16 + 16 + 6 in some order
    EXPECT_EQ(runs[0].length, 10);
    EXPECT_EQ(runs[0].colour, (std::array<int, 3>{40, 40, 40}));
    EXPECT_EQ(runs[4].colour, (std::array<int, 3>{200, 200, 200}));
    EXPECT_EQ(runs[4].from + runs[4].length, 64);
}

// Every second pixel differs by 2 from the next in three channels: joining two costs 3 x 2 x 1.
TEST(RunFit, Price_DecidesWhatIsJoined) {
    SourceTile tile = grey(100);
    for (auto& plane : tile.colours) {
        for (size_t i = 0; i < 64; i += 2) {
            plane[i] = 102;
        }
    }
    EXPECT_EQ(fittedRuns(tile, 2).size(), 64u);
    const std::vector<maker::FittedRun> joined = fittedRuns(tile, 60);
    ASSERT_EQ(joined.size(), 4u);
    EXPECT_EQ(joined[1].from, 16);
    EXPECT_EQ(joined[1].colour, (std::array<int, 3>{101, 101, 101}));
}

// Four runs cost their price, and so does a fifth for a pixel that differs by more.
TEST(RunFit, SecondSequence_HasItsOwnCost) {
    const maker::RunFits fits({grey(0).colours, grey(255).colours}, 50);
    EXPECT_EQ(fits.cost(0), 200);
    EXPECT_EQ(fits.cost(1), 200);
    SourceTile edge = grey(40);
    edge.colours[0][0] = 90;
    EXPECT_EQ(maker::RunFits({grey(0).colours, edge.colours}, 50).cost(1), 250);
}

TEST(RunFit, DearestPrice_StillCoversTheTile) {
    pictures::Random random(5);
    SourceTile tile = grey(0);
    for (auto& plane : tile.colours) {
        for (uint8_t& value : plane) {
            value = random.below(2) == 0 ? 0 : 255;  // the largest errors there are
        }
    }
    const std::vector<maker::FittedRun> runs = fittedRuns(tile, 1e30);
    ASSERT_EQ(runs.size(), 4u);
    int next = 0;
    for (const maker::FittedRun& run : runs) {
        EXPECT_EQ(run.from, next);
        next += run.length;
    }
    EXPECT_EQ(next, 64);
}

TEST(Clusters, FewColours_AreAllInThePalette) {
    maker::ColourCounts counts;
    SourceTile tile = grey(0);
    for (size_t i = 0; i < 64; ++i) {
        tile.colours[0][i] = static_cast<uint8_t>(i % 2 == 0 ? 255 : 0);
    }
    counts.add(tile.colours, 3);
    const maker::PaletteColours palette = maker::clusterColours(counts);
    EXPECT_TRUE(std::find(palette.begin(), palette.end(), 0xF800) != palette.end());
    EXPECT_TRUE(std::find(palette.begin(), palette.end(), 0x0000) != palette.end());
    EXPECT_EQ(std::count(palette.begin(), palette.end(), 0xF800), 1);
}

// 4096 colours, 16 levels a channel: every one lies near an entry. 256 entries share them out 16
// each, which is a cube of some 2.5 levels of 17 a side; its farthest corner lies 37 away.
TEST(Clusters, ManyColours_LieNearAnEntry) {
    maker::ColourCounts counts;
    for (int red = 0; red < 16; ++red) {
        for (int green = 0; green < 16; ++green) {
            SourceTile tile = grey(0);
            for (size_t i = 0; i < 64; ++i) {
                tile.colours[0][i] = static_cast<uint8_t>(red * 17);
                tile.colours[1][i] = static_cast<uint8_t>(green * 17);
                tile.colours[2][i] = static_cast<uint8_t>(i % 16 * 17);
            }
            counts.add(tile.colours, 1);
        }
    }
    const maker::PaletteColours palette = maker::clusterColours(counts);
    maker::NearestEntry nearest(palette);
    double sum = 0;
    for (int colour = 0; colour < 4096; ++colour) {
        const int channels[] = {colour / 256 * 17, colour / 16 % 16 * 17, colour % 16 * 17};
        const uint8_t entry =
            nearest.of(maker::nearestColour(channels[0], channels[1], channels[2]));
        for (size_t c = 0; c < 3; ++c) {
            const int error = nearest.channel(c, entry) - channels[c];
            sum += error * error;
        }
    }
    // A cube of 42.5 a side spreads by 3 x 42.5^2 / 12 = 452 on the mean.
    EXPECT_LT(sum / 4096, 600);
}

TEST(Clusters, NearestEntry_IsTheNearest) {
    maker::PaletteColours palette{};
    palette[7] = 0xF800;
    palette[9] = 0x07E0;
    maker::NearestEntry nearest(palette);
    EXPECT_EQ(nearest.of(0xF000), 7);
    EXPECT_EQ(nearest.of(0x0700), 9);
    EXPECT_EQ(nearest.of(0x0001), 0);
    EXPECT_EQ(nearest.of(0xF000), 7);  // asked again
    EXPECT_EQ(nearest.channel(0, 7), 255);
}

Tile slope(int from) {
    Tile tile{};
    tile.alpha.fill(15);
    for (size_t i = 0; i < 64; ++i) {
        tile.colours[i] = maker::nearestColour(from + static_cast<int>(i), static_cast<int>(i), 0);
    }
    return tile;
}

SourceTile sourceOf(const Tile& tile) {
    return {maker::planesOf(tile), tile.alpha};
}

constexpr int64_t kAnyDistance = std::numeric_limits<int64_t>::max() / 1000;

TEST(Lookalikes, SamePicture_IsFoundInEveryTurn) {
    maker::Lookalikes known;
    EXPECT_EQ(known.add(slope(20)), 0u);
    EXPECT_EQ(known.add(slope(60)), 1u);
    for (const int walk : {0, 1, 2, 3, 6, 7}) {
        Tile turned = slope(60);
        turned.colours = maker::paintAlong(slope(60).colours, walk);
        const auto match = known.nearest(sourceOf(turned), kAnyDistance);
        ASSERT_TRUE(match) << "walk " << walk;
        EXPECT_EQ(match->picture, 1u);
        EXPECT_EQ(match->distance, 0);
        EXPECT_EQ(maker::paintAlong(known.tile(1).colours, match->walk), turned.colours);
    }
}

// 12 levels of brightness are a shelf: wherever a picture stands, one that is a little brighter or
// darker is found.
TEST(Lookalikes, PictureOnTheNextShelf_IsFound) {
    for (int level = 60; level < 84; ++level) {
        maker::Lookalikes known;
        Tile tile = slope(60);
        tile.colours.fill(maker::nearestColour(level, level, level));
        known.add(tile);
        EXPECT_TRUE(known.nearest(grey(level + 4), kAnyDistance)) << level;
        EXPECT_TRUE(known.nearest(grey(level - 4), kAnyDistance)) << level;
    }
}

TEST(Lookalikes, OtherAlphaOrOtherBrightness_IsNotFound) {
    maker::Lookalikes known;
    known.add(slope(60));
    Tile clear = slope(60);
    clear.alpha[3] = 4;
    EXPECT_FALSE(known.nearest(sourceOf(clear), kAnyDistance));
    EXPECT_FALSE(known.nearest(sourceOf(slope(190)), kAnyDistance));
}

// One pixel differs by 5.
TEST(Lookalikes, LimitThatIsTheDistance_FindsNothing) {
    maker::Lookalikes known;
    Tile tile = slope(60);
    tile.colours.fill(maker::nearestColour(99, 99, 99));
    known.add(tile);
    SourceTile wanted = sourceOf(tile);
    wanted.colours[0][7] = static_cast<uint8_t>(wanted.colours[0][7] + 5);
    EXPECT_FALSE(known.nearest(wanted, 25));
    const auto match = known.nearest(wanted, 26);
    ASSERT_TRUE(match);
    EXPECT_EQ(match->distance, 25);
}

TEST(Lookalikes, Shelf_KeepsTheLatest) {
    maker::Lookalikes known;
    Tile tile = slope(60);
    for (size_t i = 0; i < 40; ++i) {  // too alike to be filed apart
        tile = slope(60);
        tile.colours[i] = 0x001F;
        known.add(tile);
    }
    EXPECT_EQ(known.nearest(sourceOf(tile), kAnyDistance)->distance, 0);
    Tile first = slope(60);
    first.colours[0] = 0x001F;
    EXPECT_GT(known.nearest(sourceOf(first), kAnyDistance)->distance, 0);
}

TEST(Simplify, FlatTile_TakesOneColour) {
    const SourceBlock block = film({grey(90), grey(30)});
    const std::vector<Tile> shown = maker::Simplifier(block, {10, 6}).show();
    // 90 of 255 is 10.9 of 31 and 22.2 of 63.
    EXPECT_EQ(shown[0].colours[5], 11 << 11 | 22 << 5 | 11);
}

TEST(Simplify, EmptyTile_StaysEmpty) {
    SourceTile empty = grey(0);
    empty.alpha.fill(0);
    const SourceBlock block = film({empty});
    EXPECT_EQ(maker::Simplifier(block, {10, 6}).show()[0], Tile{});
}

// Left half dark, right half as bright as asked: a picture that no flat colour stands for.
SourceTile edge(int bright) {
    SourceTile tile = grey(100);
    for (auto& plane : tile.colours) {
        for (size_t i = 0; i < 64; ++i) {
            plane[i] = i % 8 < 4 ? 20 : static_cast<uint8_t>(bright);
        }
    }
    return tile;
}

// All four show one record, whose bright half is their mean, 202. The first of them alone would
// have it at 198.
TEST(Simplify, TilesThatShowOneRecord_ShowTheirMean) {
    const SourceBlock block{1, 4, {edge(198), edge(206), edge(202), edge(202)}};
    const std::vector<Tile> shown = maker::Simplifier(block, {1000, 6}).show();
    EXPECT_EQ(shown[0], shown[1]);
    EXPECT_EQ(shown[0], shown[2]);
    EXPECT_EQ(shown[0].colours[7], maker::nearestColour(202, 202, 202));
    const SourceBlock alone{1, 1, {edge(198)}};
    EXPECT_EQ(maker::Simplifier(alone, {1000, 6}).show()[0].colours[7],
              maker::nearestColour(198, 198, 198));
}

// The second is the first turned upside down and a little brighter.
TEST(Simplify, MirroredLookalike_IsDrawnMirrored) {
    SourceTile upright = edge(198);
    upright.colours[0][0] = 90;  // tells top from bottom
    SourceTile other = edge(202);
    other.colours[0][56] = 90;
    const SourceBlock block{1, 2, {upright, other}};
    const std::vector<Tile> shown = maker::Simplifier(block, {200, 6}).show();
    for (size_t i = 0; i < 64; ++i) {
        EXPECT_EQ(shown[1].colours[i], shown[0].colours[(7 - i / 8) * 8 + i % 8]) << i;
    }
    EXPECT_NE(shown[1].colours[56], shown[1].colours[0]);
}

TEST(Simplify, DearerRate_TakesFewerPictures) {
    // A faint edge and a strong one, each in one frame of its own position.
    const SourceBlock block{1, 2, {edge(50), edge(250)}};
    const auto isFlat = [](const Tile& tile) { return tile.colours[0] == tile.colours[7]; };
    const std::vector<Tile> both = maker::Simplifier(block, {10, 6}).show();
    EXPECT_FALSE(isFlat(both[0]));
    EXPECT_FALSE(isFlat(both[1]));
    const std::vector<Tile> one = maker::Simplifier(block, {2e4, 6}).show();
    EXPECT_TRUE(isFlat(one[0]));
    EXPECT_FALSE(isFlat(one[1]));
}

TEST(Simplify, AlphaAtAnyRate_IsKeptExactly) {
    SourceTile tile = grey(100);
    pictures::Random random(2);
    for (uint8_t& level : tile.alpha) {
        level = static_cast<uint8_t>(1 + random.below(15));
    }
    const SourceBlock block = film({tile, grey(100)});
    const std::vector<Tile> shown = maker::Simplifier(block, {1e6, 6}).show();
    EXPECT_EQ(shown[0].alpha, tile.alpha);
    EXPECT_EQ(shown[1].alpha, grey(100).alpha);
}

}  // namespace
