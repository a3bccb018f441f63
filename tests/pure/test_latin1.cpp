// Letters as they are drawn, from bytes of any kind.
#include "layout/latin1.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string drawn(const std::string& text, size_t room = 1024) {
    std::string out(room, '#');
    const size_t letters = latin1::lettersOf(text, out.data(), room);
    EXPECT_LT(letters, room);
    EXPECT_EQ(out[letters], '\0');
    return out.substr(0, letters);
}

TEST(Latin1, Ascii_StaysAsItIs) {
    EXPECT_EQ(drawn(""), "");
    EXPECT_EQ(drawn("Loop_12+*~.m19"), "Loop_12+*~.m19");
    EXPECT_EQ(drawn("\x01\x1F\x7F"), "\x01\x1F\x7F");
}

// From the first to the last of them: U+00A0 is C2 A0, U+00FF is C3 BF.
TEST(Latin1, Utf8OfLatin1_IsOneLetterEach) {
    EXPECT_EQ(drawn("caf\xC3\xA9.m19"), "caf\xE9.m19");
    EXPECT_EQ(drawn("\xC2\xA0\xC2\xBF\xC3\x80\xC3\xBF"), "\xA0\xBF\xC0\xFF");
}

TEST(Latin1, OtherCharacters_AreQuestionMarks) {
    EXPECT_EQ(drawn("\xC2\x80\xC2\x9F"), "??") << "U+0080 and U+009F have no letter";
    EXPECT_EQ(drawn("\xC4\x80"), "?") << "U+0100";
    EXPECT_EQ(drawn("5\xE2\x82\xAC"), "5?") << "the euro sign, U+20AC";
    EXPECT_EQ(drawn("\xE6\x97\xA5\xE6\x9C\xAC.m19"), "??.m19");
    EXPECT_EQ(drawn("\xF0\x9F\x8E\xA5!"), "?!") << "U+1F3A5";
    EXPECT_EQ(drawn("\xF4\x8F\xBF\xBF"), "?") << "U+10FFFF, the last one";
}

TEST(Latin1, BytesThatAreNoUtf8_AreDrawnAsTheyAre) {
    EXPECT_EQ(drawn("\xE9t\xE9"), "\xE9t\xE9");
    EXPECT_EQ(drawn("caf\xE9"), "caf\xE9");
    EXPECT_EQ(drawn("\x80\xBF"), "\x80\xBF") << "nothing for them to continue";
    EXPECT_EQ(drawn("\xC3"), "\xC3") << "cut in the middle";
    EXPECT_EQ(drawn("\xE2\x82"), "\xE2\x82");
    EXPECT_EQ(drawn("\xF0\x9F\x8E"), "\xF0\x9F\x8E");
    EXPECT_EQ(drawn("\xC3\xC3\xA9"), "\xC3\xE9") << "one that goes on, behind one that does not";
    EXPECT_EQ(drawn("\xFE\xFF"), "\xFE\xFF");
}

TEST(Latin1, FormsThatUtf8Forbids_AreDrawnAsTheyAre) {
    EXPECT_EQ(drawn("\xC1\x81"), "\xC1\x81") << "A in two bytes";
    EXPECT_EQ(drawn("\xE0\x83\xA9"), "\xE0\x83\xA9") << "U+00E9 in three";
    EXPECT_EQ(drawn("\xF0\x80\x83\xA9"), "\xF0\x80\x83\xA9") << "U+00E9 in four";
    EXPECT_EQ(drawn("\xED\xA0\x80"), "\xED\xA0\x80") << "half of a pair, U+D800";
    EXPECT_EQ(drawn("\xED\xBF\xBF"), "\xED\xBF\xBF") << "U+DFFF";
    EXPECT_EQ(drawn("\xEE\x80\x80"), "?") << "U+E000 is a character";
    EXPECT_EQ(drawn("\xF4\x90\x80\x80"), "\xF4\x90\x80\x80") << "U+110000";
}

// The accents: grave CC 80, acute CC 81, circumflex CC 82, tilde CC 83, diaeresis CC 88, ring CC
// 8A, cedilla CC A7.
TEST(Latin1, AccentBehindItsLetter_IsDrawnWithIt) {
    EXPECT_EQ(drawn("A\xCC\x80u\xCC\x80"), "\xC0\xF9");
    EXPECT_EQ(drawn("cafe\xCC\x81.m19"), "caf\xE9.m19");
    EXPECT_EQ(drawn("E\xCC\x81y\xCC\x81"), "\xC9\xFD");
    EXPECT_EQ(drawn("I\xCC\x82o\xCC\x82"), "\xCE\xF4");
    EXPECT_EQ(drawn("N\xCC\x83o\xCC\x83"), "\xD1\xF5");
    EXPECT_EQ(drawn("U\xCC\x88y\xCC\x88"), "\xDC\xFF");
    EXPECT_EQ(drawn("A\xCC\x8A"
                    "a\xCC\x8A"),
              "\xC5\xE5");
    EXPECT_EQ(drawn("C\xCC\xA7"
                    "c\xCC\xA7"),
              "\xC7\xE7");
}

TEST(Latin1, AccentWithoutALetterOfBoth_IsLeftOut) {
    EXPECT_EQ(drawn("x\xCC\x81y"), "xy");
    EXPECT_EQ(drawn("e\xCC\x81\xCC\xA3."), "\xE9.") << "a dot below, U+0323, behind the acute";
    EXPECT_EQ(drawn("o\xCD\xAF."), "o.") << "U+036F, the last one";
    EXPECT_EQ(drawn("o\xCD\xB0."), "o?.") << "U+0370 is a letter";
    EXPECT_EQ(drawn("\xCC\x81"
                    "a"),
              "?a")
        << "nothing before it";
}

TEST(Latin1, NoRoom_LeavesOutTheRest) {
    EXPECT_EQ(drawn("abc", 4), "abc");
    EXPECT_EQ(drawn("abc", 3), "ab");
    EXPECT_EQ(drawn("a\xC3\xA9z", 3), "a\xE9");
    EXPECT_EQ(drawn("abc", 1), "");
}

TEST(Latin1, FirstLetter_CountsItsBytes) {
    EXPECT_EQ(latin1::firstLetter("ab").bytes, 1u);
    EXPECT_EQ(latin1::firstLetter("\xC3\xA9"
                                  "b")
                  .bytes,
              2u);
    EXPECT_EQ(latin1::firstLetter("\xE6\x97\xA5").bytes, 3u);
    EXPECT_EQ(latin1::firstLetter("e\xCC\x81z").bytes, 3u);
    EXPECT_EQ(latin1::firstLetter("\xC3").bytes, 1u);
}

}  // namespace
