// The interface's letters on a demo picture.
#include "art/loops/lettering.h"

#include <gtest/gtest.h>

#include "clip_tool/demo_sheet.h"

namespace {

using demo_sheet::pixelOf;
using demo_sheet::Sheet;

TEST(DemoLettering, TextWidth_CountsGapsBetweenLettersOnly) {
    // art/font: i is one pixel wide, l and the blank two, M five.
    EXPECT_EQ(demo::textWidth("i", 1), 1);
    EXPECT_EQ(demo::textWidth("il", 1), 4);
    EXPECT_EQ(demo::textWidth("i M", 1), 10);
    EXPECT_EQ(demo::textWidth("i M", 3), 30);
    EXPECT_EQ(demo::textWidth("", 2), 0);
}

TEST(DemoLettering, LetterWithADot_StandsBelowItsTop) {
    Sheet sheet;
    demo::Canvas canvas(sheet.pixels());
    canvas.clear(demo::kBlack);
    demo::drawText(canvas, "i", 10, 20, 1, demo::kPink);
    // The dot is as high as a capital; under it a blank row and a stem of five.
    EXPECT_EQ(pixelOf(sheet, 10, 19), demo::kBlack);
    EXPECT_EQ(pixelOf(sheet, 10, 20), demo::kPink);
    EXPECT_EQ(pixelOf(sheet, 10, 21), demo::kBlack);
    EXPECT_EQ(pixelOf(sheet, 10, 22), demo::kPink);
    EXPECT_EQ(pixelOf(sheet, 10, 26), demo::kPink);
    EXPECT_EQ(pixelOf(sheet, 10, 27), demo::kBlack);
    EXPECT_EQ(pixelOf(sheet, 9, 24), demo::kBlack);
    EXPECT_EQ(pixelOf(sheet, 11, 24), demo::kBlack);
}

TEST(DemoLettering, Scale_MakesSquares) {
    Sheet sheet;
    demo::Canvas canvas(sheet.pixels());
    canvas.clear(demo::kBlack);
    // The second letter begins after one pixel of letter and one of gap, three wide each.
    demo::drawText(canvas, "ii", 0, 0, 3, demo::kBlue);
    EXPECT_EQ(pixelOf(sheet, 2, 2), demo::kBlue);
    EXPECT_EQ(pixelOf(sheet, 3, 0), demo::kBlack);
    EXPECT_EQ(pixelOf(sheet, 2, 3), demo::kBlack);
    EXPECT_EQ(pixelOf(sheet, 6, 0), demo::kBlue);
    EXPECT_EQ(pixelOf(sheet, 8, 20), demo::kBlue);
    EXPECT_EQ(pixelOf(sheet, 8, 21), demo::kBlack);
}

TEST(DemoLettering, CentredText_HasItsMiddleThere) {
    Sheet sheet;
    demo::Canvas canvas(sheet.pixels());
    canvas.clear(demo::kBlack);
    // Five pixels wide, so from 98 to 102; the stems of M are its outer columns.
    demo::drawTextCentred(canvas, "M", 100, 0, 1, demo::kWhite);
    EXPECT_EQ(pixelOf(sheet, 97, 6), demo::kBlack);
    EXPECT_EQ(pixelOf(sheet, 98, 6), demo::kWhite);
    EXPECT_EQ(pixelOf(sheet, 102, 6), demo::kWhite);
    EXPECT_EQ(pixelOf(sheet, 103, 6), demo::kBlack);
}

}  // namespace
