// What lies under a point of the playlist screen.
#include "layout/page_layout.h"

#include <gtest/gtest.h>

namespace {

TEST(PageLayout, Rows_Are13PixelsApartFromY18) {
    EXPECT_EQ(page::rowAt(0, 100, 17), -1);
    EXPECT_EQ(page::rowAt(0, 100, 18), 0);
    EXPECT_EQ(page::rowAt(0, 100, 30), 0);
    EXPECT_EQ(page::rowAt(0, 100, 31), 1);
    EXPECT_EQ(page::rowAt(0, 100, 212), 14);
    EXPECT_EQ(page::rowAt(0, 100, 213), -1);
}

TEST(PageLayout, Lists_ReachFrom2To309AndFrom322To627) {
    EXPECT_EQ(page::rowAt(0, 1, 20), -1);
    EXPECT_EQ(page::rowAt(0, 2, 20), 0);
    EXPECT_EQ(page::rowAt(0, 309, 20), 0);
    EXPECT_EQ(page::rowAt(0, 310, 20), -1);
    EXPECT_EQ(page::rowAt(1, 321, 20), -1);
    EXPECT_EQ(page::rowAt(1, 322, 20), 0);
    EXPECT_EQ(page::rowAt(1, 627, 20), 0);
    EXPECT_EQ(page::rowAt(1, 628, 20), -1);
    EXPECT_EQ(page::rowAt(0, -320, -180), -1);
}

TEST(PageLayout, DropRows_EndBelowTheLastVisibleRow) {
    EXPECT_EQ(page::dropRowAt(100, 0), 0);
    EXPECT_EQ(page::dropRowAt(100, 18), 0);
    EXPECT_EQ(page::dropRowAt(100, 31), 1);
    EXPECT_EQ(page::dropRowAt(100, 213), 15);
    EXPECT_EQ(page::dropRowAt(100, 219), 15);
    EXPECT_EQ(page::dropRowAt(100, 220), 16);
    EXPECT_EQ(page::dropRowAt(100, -1), 16);
    EXPECT_EQ(page::dropRowAt(310, 50), 16);
    EXPECT_EQ(page::dropRowAt(1, 50), 16);
}

TEST(PageLayout, DragAtTheListsEdges_Scrolls) {
    EXPECT_EQ(page::dragScrollAt(100, 17), -1);
    EXPECT_EQ(page::dragScrollAt(100, 18), 0);
    EXPECT_EQ(page::dragScrollAt(100, 212), 0);
    EXPECT_EQ(page::dragScrollAt(100, 213), 1);
    EXPECT_EQ(page::dragScrollAt(400, 17), 0);
}

// Index = row of 30 pixels x 10 + column of 30 pixels, from (10, 52) on.
TEST(PageLayout, Keys_AreHitInTheirOwnCellsOnly) {
    EXPECT_EQ(page::keyAt(10, 52), 0);
    EXPECT_EQ(page::keyAt(39, 81), 0);
    EXPECT_EQ(page::keyAt(40, 52), 1);
    EXPECT_EQ(page::keyAt(309, 52), 9);
    EXPECT_EQ(page::keyAt(10, 82), 10);
    EXPECT_EQ(page::keyAt(10, 172), 40);
    EXPECT_EQ(page::keyAt(69, 201), 41);
    EXPECT_EQ(page::keyAt(70, 172), -1);
    EXPECT_EQ(page::keyAt(10, 202), -1);
    EXPECT_EQ(page::keyAt(9, 52), -1);
    EXPECT_EQ(page::keyAt(310, 52), -1) << "the formula alone would say key 10";
    EXPECT_EQ(page::keyAt(10, 51), -1) << "the formula alone would say key 0";
    EXPECT_EQ(page::keyAt(10, 5000), -1);
}

TEST(PageLayout, KeysBeside_StopAtTheEdges) {
    EXPECT_EQ(page::keyBeside(-1, 1, 0), 0);
    EXPECT_EQ(page::keyBeside(42, 0, 1), 0);
    EXPECT_EQ(page::keyBeside(0, -1, 0), 0);
    EXPECT_EQ(page::keyBeside(0, 1, 0), 1);
    EXPECT_EQ(page::keyBeside(9, 1, 0), 9);
    EXPECT_EQ(page::keyBeside(5, 0, -1), 5);
    EXPECT_EQ(page::keyBeside(31, 0, 1), 41);
    EXPECT_EQ(page::keyBeside(32, 0, 1), 32);
    EXPECT_EQ(page::keyBeside(41, 1, 0), 41);
}

TEST(PageLayout, ScrollBars_AreTenPixelsWide) {
    EXPECT_EQ(page::scrollBarAt(310, 20), 0);
    EXPECT_EQ(page::scrollBarAt(319, 213), 0);
    EXPECT_EQ(page::scrollBarAt(320, 100), -1);
    EXPECT_EQ(page::scrollBarAt(628, 100), 1);
    EXPECT_EQ(page::scrollBarAt(637, 100), 1);
    EXPECT_EQ(page::scrollBarAt(638, 100), -1);
    EXPECT_EQ(page::scrollBarAt(310, 19), -1);
    EXPECT_EQ(page::scrollBarAt(310, 214), -1);
}

TEST(PageLayout, Buttons_AreBigApartAndOnThePage) {
    for (const int shown : {0, 1, 2}) {
        const auto places = page::buttonsOf(shown);
        EXPECT_FALSE(places.empty());
        for (const page::ButtonPlace& place : places) {
            EXPECT_GE(place.width, 56);
            EXPECT_GE(place.y, 220);
            EXPECT_GE(place.x, 0);
            EXPECT_LE(place.x + place.width, 640);
            EXPECT_EQ(page::buttonAt(places, place.x, place.y), place.button);
            EXPECT_EQ(page::buttonAt(places, place.x + place.width - 1, place.y + 23),
                      place.button);
            EXPECT_NE(page::buttonAt(places, place.x + place.width, place.y), place.button);
            EXPECT_EQ(page::buttonAt(page::kQuestionButtons, place.x, place.y + 23), -1)
                << "a second press must not answer";
        }
    }
    EXPECT_TRUE(page::buttonsOf(3).empty());
}

}  // namespace
