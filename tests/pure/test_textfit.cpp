// Texts cut to their column; every character is 6 pixels wide here.
#include "layout/textfit.h"

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

// Six pixels for each letter drawn: a lead byte or another one outside of 80 to BF begins one.
int sixALetter(const std::string& text) {
    int letters = 0;
    for (const char byte : text) {
        letters += (byte & 0xC0) != 0x80 ? 1 : 0;
    }
    return 6 * letters;
}

TEST(TextFit, LettersOfSeveralBytes_AreNeverCutInTheMiddle) {
    const std::string name = "\xC3\xA9\xC3\xA0\xE6\x97\xA5\xC3\xBC\xC3\xB6z";  // six letters
    EXPECT_EQ(fitText(name, 36, sixALetter), name);
    EXPECT_EQ(fitText(name, 35, sixALetter), "\xC3\xA9\xC3\xA0...");
    EXPECT_EQ(fitText(name, 29, sixALetter), "\xC3\xA9...");
    EXPECT_EQ(fitText(name, 23, sixALetter), "...");
}

// Eight letters of two bytes each, four pixels a byte: room for eleven bytes and the dots.
TEST(TextFit, HalfOfALetter_IsLeftOut) {
    std::string name;
    for (int i = 0; i < 8; ++i) {
        name += "\xC3\xA9";
    }
    const auto fourAByte = [](const std::string& text) {
        return 4 * static_cast<int>(text.size());
    };
    EXPECT_EQ(fitText(name, 59, fourAByte), name.substr(0, 10) + "...");
}

TEST(TextFit, AccentBehindItsLetter_StaysWithIt) {
    // Eight letters e, each with an acute of its own.
    std::string name;
    for (int i = 0; i < 8; ++i) {
        name += "e\xCC\x81";
    }
    const auto fourAByte = [](const std::string& text) {
        return 4 * static_cast<int>(text.size());
    };
    EXPECT_EQ(fitText(name, 95, fourAByte), name.substr(0, 18) + "...");
    EXPECT_EQ(fitText(name, 83, fourAByte), name.substr(0, 15) + "...");
}

}  // namespace
