// What draws the demo loops, at the edges of its picture: colours, canvas, letters, motion.
#include <gtest/gtest.h>

#include <vector>

#include "art/loops/canvas.h"
#include "art/loops/lettering.h"
#include "art/loops/motion.h"
#include "clip_tool/demo_sheet.h"

namespace {

using demo_sheet::pixelOf;
using demo_sheet::Sheet;

TEST(DemoColour, Rgb_LandsOnTheSixteenBitGrid) {
    // 0x59 = 89 is nearest to 11 of 31, and 11 widens to 01011010; 0xB1 = 177 is nearest to 44 of
    // 63, and 44 widens to 10110010.
    EXPECT_EQ(demo::rgb(0x59B1FF), (demo::Colour{0x5A, 0xB2, 0xFF, 255}));
    EXPECT_EQ(demo::rgb(0x000000), (demo::Colour{0, 0, 0, 255}));
    EXPECT_EQ(demo::rgb(0xFFFFFF), (demo::Colour{255, 255, 255, 255}));
}

TEST(DemoColour, Ramp_MeetsItsStops) {
    constexpr auto kThree = demo::ramp<5>({demo::kBlack, demo::kPink, demo::kWhite});
    EXPECT_EQ(kThree[0], demo::kBlack);
    EXPECT_EQ(kThree[2], demo::kPink);
    EXPECT_EQ(kThree[4], demo::kWhite);
}

TEST(DemoCanvas, ShapesBeyondThePicture_AreClipped) {
    Sheet sheet;
    demo::Canvas canvas(sheet.pixels());
    canvas.clear(demo::kBlack);
    canvas.rect(-50, -50, 60, 60, demo::kWhite);
    canvas.rect(630, 350, 60, 60, demo::kWhite);
    canvas.disc({640.0F, 0.0F}, 20.0F, demo::kPink);
    canvas.line({-5000.0F, 100.0F}, {5000.0F, 100.0F}, 4.0F, demo::kBlue);
    canvas.column(700, -10.0F, 900.0F, demo::kBlue);
    canvas.column(20, -10.0F, 900.0F, demo::kOrange);
    canvas.set(-1, 0, demo::kPink);
    canvas.set(0, 360, demo::kPink);
    EXPECT_TRUE(sheet.fenceWhole());
    EXPECT_EQ(pixelOf(sheet, 9, 9), demo::kWhite);
    EXPECT_EQ(pixelOf(sheet, 10, 10), demo::kBlack);
    EXPECT_EQ(pixelOf(sheet, 639, 359), demo::kWhite);
    EXPECT_EQ(pixelOf(sheet, 639, 0), demo::kPink);
    EXPECT_EQ(pixelOf(sheet, 639, 98), demo::kBlue);
    EXPECT_EQ(pixelOf(sheet, 0, 101), demo::kBlue);
    EXPECT_EQ(pixelOf(sheet, 639, 102), demo::kBlack);
    EXPECT_EQ(pixelOf(sheet, 20, 359), demo::kOrange);
}

TEST(DemoCanvas, HalfCoveredPixel_IsMixedOrHalfTransparent) {
    Sheet sheet;
    demo::Canvas canvas(sheet.pixels());
    const std::vector<demo::Point> square{{8.5F, 8}, {16, 8}, {16, 16}, {8.5F, 16}};
    canvas.clear(demo::kBlack);
    canvas.polygon(square, demo::kWhite);
    // Two of four columns of samples are covered: 255 * 2 / 4 = 127 over black.
    EXPECT_EQ(pixelOf(sheet, 8, 10), (demo::Colour{127, 127, 127, 255}));
    EXPECT_EQ(pixelOf(sheet, 9, 10), demo::kWhite);
    EXPECT_EQ(pixelOf(sheet, 16, 10), demo::kBlack);
    canvas.clear(demo::kClear);
    canvas.polygon(square, demo::kWhite);
    EXPECT_EQ(pixelOf(sheet, 8, 10), (demo::Colour{255, 255, 255, 127}));
    EXPECT_EQ(pixelOf(sheet, 7, 10), demo::kClear);
}

TEST(DemoCanvas, Ring_LeavesItsMiddleOpen) {
    Sheet sheet;
    demo::Canvas canvas(sheet.pixels());
    canvas.clear(demo::kBlack);
    canvas.ring({100.0F, 100.0F}, 40.0F, 20.0F, demo::kPink);
    EXPECT_EQ(pixelOf(sheet, 100, 100), demo::kBlack);
    EXPECT_EQ(pixelOf(sheet, 130, 100), demo::kPink);
    EXPECT_EQ(pixelOf(sheet, 100, 70), demo::kPink);
    EXPECT_EQ(pixelOf(sheet, 100, 145), demo::kBlack);
}

TEST(DemoCanvas, Mirrors_CopyTheFirstHalf) {
    Sheet sheet;
    demo::Canvas canvas(sheet.pixels());
    canvas.clear(demo::kBlack);
    canvas.set(3, 5, demo::kPink);
    canvas.repeat(demo::Half::LEFT);
    EXPECT_EQ(pixelOf(sheet, 636, 5), demo::kPink);
    canvas.repeat(demo::Half::TOP);
    EXPECT_EQ(pixelOf(sheet, 3, 354), demo::kPink);
    EXPECT_EQ(pixelOf(sheet, 636, 354), demo::kPink);
    canvas.clear(demo::kBlack);
    canvas.set(3, 5, demo::kBlue);
    canvas.repeat(demo::Half::TOP_TURNED);
    EXPECT_EQ(pixelOf(sheet, 636, 354), demo::kBlue);
    EXPECT_EQ(pixelOf(sheet, 3, 354), demo::kBlack);
}

TEST(DemoType, WordWidth_CountsGapsBetweenLettersOnly) {
    EXPECT_FLOAT_EQ(demo::wordWidth("I"), 3.0F);
    EXPECT_FLOAT_EQ(demo::wordWidth("LI"), 11.0F);   // 7 + 1 + 3
    EXPECT_FLOAT_EQ(demo::wordWidth("I I"), 12.0F);  // 3 + 1 + 4 + 1 + 3
    EXPECT_FLOAT_EQ(demo::wordWidth(""), 0.0F);
}

TEST(DemoType, LetterWithACounter_HasAHole) {
    Sheet sheet;
    demo::Canvas canvas(sheet.pixels());
    canvas.clear(demo::kBlack);
    // Ten pixels to a unit: the O is 90 wide, its counter from 30 to 60.
    demo::drawWord(canvas, "O", {{100, 100}, {10, 0}, {0, 10}}, demo::kWhite);
    EXPECT_EQ(pixelOf(sheet, 115, 150), demo::kWhite);
    EXPECT_EQ(pixelOf(sheet, 145, 150), demo::kBlack);
    EXPECT_EQ(pixelOf(sheet, 145, 110), demo::kWhite);
    EXPECT_EQ(pixelOf(sheet, 101, 101), demo::kBlack);  // a round shoulder
    EXPECT_EQ(pixelOf(sheet, 195, 150), demo::kBlack);
}

TEST(DemoMotion, TimeAndAngles_WrapExactly) {
    EXPECT_FLOAT_EQ(demo::timeOf(96, 96), 0.0F);
    EXPECT_FLOAT_EQ(demo::timeOf(48, 96), 0.5F);
    EXPECT_EQ(demo::sinTurn(3.0F), demo::sinTurn(0.0F));
    EXPECT_EQ(demo::cosTurn(-2.0F), demo::cosTurn(0.0F));
    EXPECT_EQ(demo::wrapped(-1, 7), 6);
    EXPECT_EQ(demo::wrapped(7, 7), 0);
}

}  // namespace
