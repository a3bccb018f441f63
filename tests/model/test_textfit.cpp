// Texts cut to their column; every character is 6 pixels wide here.
#include "playlists/textfit.h"

#include <gtest/gtest.h>

namespace {

int sixEach(const std::string& text) {
    return 6 * static_cast<int>(text.size());
}

std::string fitted(const std::string& text, int room) {
    return fitText(text, room, sixEach);
}

TEST(TextFit, WhatFits_StaysWhole) {
    EXPECT_EQ(fitted("", 0), "");
    EXPECT_EQ(fitted("loop.m19", 48), "loop.m19");
    EXPECT_EQ(fitted("loop.m19", 500), "loop.m19");
}

TEST(TextFit, OnePixelShort_EndsInDots) {
    EXPECT_EQ(fitted("loop.m19", 47), "loop...");
}

TEST(TextFit, EveryRoom_TakesAsManyCharactersAsItCan) {
    EXPECT_EQ(fitted("abcdef", 35), "ab...");
    EXPECT_EQ(fitted("abcdef", 30), "ab...");
    EXPECT_EQ(fitted("abcdef", 29), "a...");
    EXPECT_EQ(fitted("abcdef", 18), "...");
}

TEST(TextFit, NoRoomForTheDots_GivesNothing) {
    EXPECT_EQ(fitted("abcdef", 17), "");
    EXPECT_EQ(fitted("abcdef", 0), "");
    EXPECT_EQ(fitted("abcdef", -5), "");
}

TEST(TextFit, LongNamesOfAnyBytes_KeepTheirBeginning) {
    const std::string name(92, '\xFF');
    EXPECT_EQ(fitted(name, 60), std::string(7, '\xFF') + "...");
}

}  // namespace
