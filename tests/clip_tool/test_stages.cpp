// The stages of the encoder before a record is chosen: colours, palette, walks, tiles, shapes.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "clip_tool/pictures.h"
#include "tools/clip/encoder/dictionary.h"
#include "tools/clip/encoder/palette.h"
#include "tools/clip/encoder/quantise.h"
#include "tools/clip/encoder/source_block.h"
#include "tools/clip/encoder/walks.h"
#include "tools/clip/media/scaler.h"
#include "tools/clip/media/source.h"

namespace {

using maker::Fit;
using maker::FitPlan;
using maker::Frame;
using maker::Tile;

// A picture of 8 lines of one RGBA colour.
std::vector<uint8_t> rgba(uint8_t red, uint8_t green, uint8_t blue, uint8_t alpha) {
    std::vector<uint8_t> bytes;
    for (int i = 0; i < 640 * 8; ++i) {
        bytes.insert(bytes.end(), {red, green, blue, alpha});
    }
    return bytes;
}

TEST(Quantise, Channels_GoToTheNearestLevel) {
    // 255 and 0 are the ends. Red 4 is 0.49 of a step of 31, 5 is 0.61; green 2 is 0.49 of a step
    // of 63, 3 is 0.74.
    EXPECT_EQ(maker::nearestColour(255, 255, 255), 0xFFFF);
    EXPECT_EQ(maker::nearestColour(0, 0, 0), 0);
    EXPECT_EQ(maker::nearestColour(4, 2, 4), 0);
    EXPECT_EQ(maker::nearestColour(5, 3, 5), 0x0821);
}

TEST(Quantise, Alpha_IsRoundedToSixteenLevels) {
    // A level is 17 steps of 255: 8 is nearer to 0, 9 nearer to 1.
    EXPECT_EQ(maker::alphaLevel(255), 15);
    EXPECT_EQ(maker::alphaLevel(9), 1);
    EXPECT_EQ(maker::alphaLevel(8), 0);
}

TEST(Quantise, Dither_KeepsTheMeanAndExactLevels) {
    // Red 12 lies 1.46 steps up: an 8 x 8 pattern shows level 2 in 46 % of its pixels, 29 of 64.
    // Level 1 of 31 shows as 8, level 2 as 16.
    std::vector<uint8_t> picture = rgba(12, 255, 0, 77);
    maker::dither(picture.data(), 8);
    int level2 = 0;
    for (size_t i = 0; i < 64; ++i) {
        const uint8_t* pixel = &picture[(i / 8 * 640 + i % 8) * 4];
        EXPECT_TRUE(pixel[0] == 8 || pixel[0] == 16);
        EXPECT_EQ(pixel[1], 255);
        EXPECT_EQ(pixel[2], 0);
        EXPECT_EQ(pixel[3], 77);
        level2 += pixel[0] == 16 ? 1 : 0;
    }
    EXPECT_NEAR(level2, 29, 1);
}

TEST(SourceBlock, TransparentPixel_IsBlack) {
    maker::SourceBlock block;
    maker::appendPicture(rgba(255, 9, 9, 8).data(), 8, true, block);
    maker::appendPicture(rgba(255, 9, 9, 9).data(), 8, true, block);
    EXPECT_EQ(block.tiles[0].alpha[5], 0);
    EXPECT_EQ(block.tiles[0].colours[0][5], 0);
    EXPECT_EQ(block.tiles[80].alpha[5], 1);
    EXPECT_EQ(block.tiles[80].colours[0][5], 255);
}

TEST(SourceBlock, WithoutAlpha_TheChannelIsIgnored) {
    maker::SourceBlock block;
    maker::appendPicture(rgba(255, 0, 0, 0).data(), 8, false, block);
    EXPECT_EQ(block.tiles[0].alpha[0], 15);
    EXPECT_EQ(maker::roundedTile(block.tiles[0]).colours[0], 0xF800);
}

TEST(SourceBlock, Picture_IsCutInRasterOrder) {
    std::vector<uint8_t> picture(640 * 16 * 4, 0);
    const size_t at = (9 * 640 + 17) * 4;  // tile row 1, column 2, pixel (1, 1)
    picture[at] = 1;
    picture[at + 1] = 2;
    picture[at + 2] = 3;
    maker::SourceBlock block;
    maker::appendPicture(picture.data(), 16, false, block);
    EXPECT_EQ(block.frames, 1);
    EXPECT_EQ(block.tileCount, 160u);
    ASSERT_EQ(block.tiles.size(), 160u);
    EXPECT_EQ(block.tiles[82].colours[0][9], 1);
    EXPECT_EQ(block.tiles[82].colours[1][9], 2);
    EXPECT_EQ(block.tiles[82].colours[2][9], 3);
}

TEST(SourceBlock, Planes_AreWhatADisplayShows) {
    Tile tile{};
    tile.colours[0] = 0x8410;  // 16 of 31, 32 of 63, 16 of 31: the top bits repeated below
    tile.colours[1] = 0xFFFF;
    const maker::ColourPlanes planes = maker::planesOf(tile);
    EXPECT_EQ(planes[0][0], 132);
    EXPECT_EQ(planes[1][0], 130);
    EXPECT_EQ(planes[2][0], 132);
    EXPECT_EQ(planes[1][1], 255);
}

TEST(SourceBlock, SquaredDistance_SumsAllChannels) {
    maker::ColourPlanes a{};
    maker::ColourPlanes b{};
    EXPECT_EQ(maker::squaredDistance(a, b), 0);
    a[0][0] = 3;
    b[1][5] = 4;
    a[2][63] = 255;
    EXPECT_EQ(maker::squaredDistance(a, b), 9 + 16 + 65025);
    for (auto& plane : a) {
        plane.fill(255);
    }
    for (auto& plane : b) {
        plane.fill(0);
    }
    EXPECT_EQ(maker::squaredDistance(a, b), 192 * 65025);
}

TEST(Palette, Choose_KeepsTheHeaviestColours) {
    std::vector<uint32_t> weights(65536, 0);
    for (size_t i = 0; i < 300; ++i) {
        weights[1000 + i] = i < 100 ? 1 : 5;  // the last 200 weigh more
    }
    const maker::PaletteColours palette = maker::choosePalette(weights);
    const std::set<uint16_t> colours(palette.begin(), palette.end());
    EXPECT_EQ(colours.size(), 256u);
    for (uint16_t colour = 1100; colour < 1300; ++colour) {
        EXPECT_TRUE(colours.contains(colour));
    }
    // Of equal ones the lower values stay: 1000 to 1055.
    EXPECT_TRUE(colours.contains(1055));
    EXPECT_FALSE(colours.contains(1056));
    EXPECT_TRUE(std::is_sorted(palette.begin(), palette.end()));
}

TEST(Palette, FewColours_LeaveTheRestZero) {
    std::vector<uint32_t> weights(65536, 0);
    weights[500] = 1;
    weights[70] = 9;
    const maker::PaletteColours palette = maker::choosePalette(weights);
    EXPECT_EQ(palette[0], 70);
    EXPECT_EQ(palette[1], 500);
    EXPECT_EQ(palette[2], 0);
    const maker::PaletteIndex index(palette);
    EXPECT_TRUE(index.has(500));
    EXPECT_EQ(index.of(500), 1);
    EXPECT_EQ(index.of(0), 2);
    EXPECT_FALSE(index.has(71));
}

TEST(Walks, EachWalk_VisitsEveryPixelOnce) {
    for (size_t walk = 0; walk < maker::kWalks; ++walk) {
        std::set<int> pixels;
        for (size_t step = 0; step < 64; ++step) {
            pixels.insert(maker::kWalkPixels[walk][step]);
        }
        EXPECT_EQ(pixels.size(), 64u);
        EXPECT_EQ(*pixels.rbegin(), 63);
    }
}

TEST(Walks, FirstTwoPixels_TellCornerAndDirection) {
    // Pixel number = 8 x row + column. Rows from each corner, then columns from each corner.
    const int first[8] = {0, 7, 56, 63, 0, 7, 56, 63};
    const int second[8] = {1, 6, 57, 62, 8, 15, 48, 55};
    for (size_t walk = 0; walk < maker::kWalks; ++walk) {
        EXPECT_EQ(maker::kWalkPixels[walk][0], first[walk]);
        EXPECT_EQ(maker::kWalkPixels[walk][1], second[walk]);
    }
}

TEST(Walks, Composed_LeadsToTheMember) {
    maker::Sequence sequence{};
    for (size_t i = 0; i < 64; ++i) {
        sequence[i] = static_cast<uint16_t>(i * 7);
    }
    const maker::Sequence upright = maker::paintAlong(sequence, 0);
    for (size_t g = 0; g < maker::kWalks; ++g) {
        for (size_t w = 0; w < maker::kWalks; ++w) {
            const size_t v = maker::kComposed[g][w];
            EXPECT_EQ(maker::paintAlong(maker::readAlong(upright, w), v),
                      maker::paintAlong(sequence, g));
        }
    }
}

Tile plain(uint16_t colour, uint8_t alpha) {
    Tile tile{};
    tile.colours.fill(colour);
    tile.alpha.fill(alpha);
    return tile;
}

Tile corner(uint16_t ground, uint16_t colour, size_t pixel, uint8_t alpha = 15) {
    Tile tile = plain(ground, alpha);
    tile.colours[pixel] = colour;
    return tile;
}

TEST(Dictionary, Collect_TellsFlatEmptyAndPictures) {
    const std::vector<Tile> tiles{plain(5, 15),    plain(0, 0),     plain(5, 14),
                                  corner(1, 2, 0), corner(1, 2, 0), plain(0, 15)};
    const maker::BlockTiles block = maker::collectTiles(tiles);
    using maker::Fill;
    const std::vector<maker::Placement> expected{{Fill::FLAT, 5},    {Fill::EMPTY, 0},
                                                 {Fill::PICTURE, 0}, {Fill::PICTURE, 1},
                                                 {Fill::PICTURE, 1}, {Fill::FLAT, 0}};
    EXPECT_EQ(block.placements, expected);
    EXPECT_EQ(block.pictures.size(), 2u);
}

TEST(Dictionary, Collect_ManyDifferentTilesStayApart) {
    std::vector<Tile> tiles;
    for (int i = 0; i < 20000; ++i) {
        tiles.push_back(corner(static_cast<uint16_t>(i), static_cast<uint16_t>(i + 1), 9));
    }
    const maker::BlockTiles block = maker::collectTiles(tiles);
    EXPECT_EQ(block.pictures.size(), 20000u);
    EXPECT_EQ(block.pictures[12345], tiles[12345]);
}

TEST(Dictionary, Shapes_JoinTheEightImages) {
    pictures::Random random(8);
    Tile tile = plain(0, 15);
    for (uint16_t& colour : tile.colours) {
        colour = static_cast<uint16_t>(random.below(65536));
    }
    std::vector<Tile> tiles;
    for (int way = 0; way < 8; ++way) {
        tiles.push_back(pictures::turned(tile, way));
    }
    const std::vector<maker::Shape> shapes = maker::groupShapes(tiles);
    ASSERT_EQ(shapes.size(), 1u);
    for (size_t walk = 0; walk < 8; ++walk) {
        ASSERT_NE(shapes[0].members[walk], maker::kNoPicture);
        EXPECT_EQ(maker::paintAlong(shapes[0].sequence, walk),
                  tiles[shapes[0].members[walk]].colours);
    }
}

TEST(Dictionary, Shapes_OtherAlphaIsAnotherShape) {
    EXPECT_EQ(maker::groupShapes({corner(1, 2, 0), corner(1, 2, 7)}).size(), 1u);
    EXPECT_EQ(maker::groupShapes({corner(1, 2, 0), corner(1, 2, 7, 9)}).size(), 2u);
}

void expectPlan(const FitPlan& plan, const FitPlan& expected) {
    EXPECT_EQ(plan.cutX, expected.cutX);
    EXPECT_EQ(plan.cutY, expected.cutY);
    EXPECT_EQ(plan.width, expected.width);
    EXPECT_EQ(plan.height, expected.height);
    EXPECT_EQ(plan.left, expected.left);
    EXPECT_EQ(plan.top, expected.top);
}

TEST(Fit, Cover_CutsWhatIsTooMuch) {
    // 768 x 576 is 4:3: 16:9 leaves 768 x 432, 72 lines off each end.
    expectPlan(maker::planFit(768, 576, 1, Fit::COVER), {0, 72, 640, 360, 0, 0});
    // 2:1: 640 of the 720 columns are 16:9 at 360 lines.
    expectPlan(maker::planFit(720, 360, 1, Fit::COVER), {40, 0, 640, 360, 0, 0});
    expectPlan(maker::planFit(1920, 1080, 1, Fit::COVER), {0, 0, 640, 360, 0, 0});
}

TEST(Fit, Cover_HonoursPixelAspect) {
    // 720 x 576 shown as 16:9 has pixels 64:45 wide: nothing to cut.
    expectPlan(maker::planFit(720, 576, 64.0 / 45, Fit::COVER), {0, 0, 640, 360, 0, 0});
}

TEST(Fit, Cover_ExtremeShapesKeepOnePixel) {
    expectPlan(maker::planFit(1, 5000, 1, Fit::COVER), {0, 2499, 640, 360, 0, 0});
    expectPlan(maker::planFit(5001, 1, 1, Fit::COVER), {2500, 0, 640, 360, 0, 0});
}

TEST(Fit, Contain_CentresTheWholePicture) {
    // 4:3 at 360 lines is 480 wide: bars of 80.
    expectPlan(maker::planFit(768, 576, 1, Fit::CONTAIN), {0, 0, 480, 360, 80, 0});
    // 2:1 at 640 columns is 320 high: bars of 20.
    expectPlan(maker::planFit(200, 100, 1, Fit::CONTAIN), {0, 0, 640, 320, 0, 20});
    expectPlan(maker::planFit(100000, 1, 1, Fit::CONTAIN), {0, 0, 640, 1, 0, 179});
}

TEST(Fit, Stretch_FillsTheFrame) {
    expectPlan(maker::planFit(10, 500, 3, Fit::STRETCH), {0, 0, 640, 360, 0, 0});
}

TEST(Pacer, SameRate_GivesOneForOne) {
    maker::Pacer pacer(25, 256);
    for (int i = 1; i <= 100; ++i) {
        EXPECT_EQ(pacer.due(i / 25.0), 1) << i;
    }
}

TEST(Pacer, HalfTheRate_ShowsEachFrameTwice) {
    maker::Pacer pacer(25, 256);
    EXPECT_EQ(pacer.due(0.08), 2);
    EXPECT_EQ(pacer.due(0.16), 2);
}

// 30 source frames last a second; 25.6 frames a second begin 26 frames in it, at 0 to 25 / 25.6.
TEST(Pacer, FasterSource_LosesFramesAndKeepsTheTime) {
    maker::Pacer pacer(25.6, 256);
    int frames = 0;
    for (int i = 1; i <= 30; ++i) {
        const int due = pacer.due(i / 30.0);
        EXPECT_LE(due, 1);
        frames += due;
    }
    EXPECT_EQ(frames, 26);
}

TEST(Pacer, BackwardTime_GivesNothing) {
    maker::Pacer pacer(25, 256);
    EXPECT_EQ(pacer.due(0.4), 10);
    EXPECT_EQ(pacer.due(0.2), 0);
    EXPECT_EQ(pacer.due(-5), 0);
    EXPECT_EQ(pacer.due(0.44), 1);
}

TEST(Pacer, Limit_EndsTheClip) {
    maker::Pacer pacer(25, 256);
    EXPECT_FALSE(pacer.finished());
    EXPECT_EQ(pacer.due(1e9), 256);
    EXPECT_TRUE(pacer.finished());
    EXPECT_EQ(pacer.due(2e9), 0);
}

TEST(Pacer, FramesFor_RoundsUpAndStaysInRange) {
    EXPECT_EQ(maker::framesFor(1, 25.6, 256), 26);
    EXPECT_EQ(maker::framesFor(0.04, 25, 256), 1);
    EXPECT_EQ(maker::framesFor(0, 25, 256), 0);
    EXPECT_EQ(maker::framesFor(-1, 25, 256), 0);
    EXPECT_EQ(maker::framesFor(1e300, 25, 256), 256);
}

}  // namespace
