// Names as bytes, their widths in the program's font, and what does not fit.
#include <gtest/gtest.h>

#include "tools/base/texts.h"
#include "tools/clip/media/pixel_font.h"
#include "tools/clip/reports/check_files.h"

namespace {

using maker::Finding;

TEST(Names, Bytes_AreUtf8OrLatin1) {
    EXPECT_TRUE(maker::isUtf8("caf\xC3\xA9"));
    EXPECT_FALSE(maker::isUtf8("caf\xE9"));
    EXPECT_FALSE(maker::isUtf8("cut\xC3"));
    EXPECT_FALSE(maker::isUtf8("long\xC0\xAF"));
    EXPECT_EQ(maker::codePoints("caf\xC3\xA9"), U"caf\u00E9");
    EXPECT_EQ(maker::codePoints("caf\xE9"), U"caf\u00E9");
    EXPECT_EQ(maker::fromLatin1("\xC3\xA9"), U"\u00C3\u00A9");
}

TEST(Names, Readable_IsUtf8WithoutControlCharacters) {
    EXPECT_EQ(maker::readable("caf\xC3\xA9"), "caf\xC3\xA9");
    EXPECT_EQ(maker::readable("caf\xE9"), "caf\xC3\xA9");
    EXPECT_EQ(maker::readable("\x1B[31m\x7F"), "?[31m?");
    EXPECT_EQ(maker::latin1AsUtf8("\xC3\xA9"), "\xC3\x83\xC2\xA9");
    EXPECT_EQ(maker::inQuotes("a"), "'a'");
}

// The widths that the program's own text library tells for these.
TEST(PixelFont, Widths_AreThoseOfTheProgram) {
    const maker::PixelFont small(maker::kSmallText);
    EXPECT_EQ(small.widthOf(U"my set"), 28);
    EXPECT_EQ(small.widthOf(U"WAVE To AV"), 52);
    EXPECT_EQ(small.widthOf(U"iiiiiiiiii"), 20);
    EXPECT_EQ(small.widthOf(U"A fairly long playlist name"), 112);
    EXPECT_EQ(small.widthOf(U"j"), 3);
    EXPECT_EQ(small.widthOf(U"\u00E9t\u00E9"), 14);
    EXPECT_EQ(small.widthOf(U""), 0);
    const maker::PixelFont large(maker::kLargeText);
    EXPECT_EQ(large.widthOf(U"my set"), 56);
    EXPECT_EQ(large.widthOf(U"A fairly long playlist name"), 224);
}

// The stem of "i" in a text of size 9 is one pixel wide and stands in the line.
TEST(PixelFont, Draw_PaintsInsideTheLine) {
    const maker::PixelFont font(maker::kSmallText);
    maker::Picture picture(20, 20);
    maker::Canvas canvas(picture);
    font.draw(canvas, 4, 3, U"i", {0xFE, 0x00, 0xC3});
    int painted = 0;
    for (int y = 0; y < 20; ++y) {
        for (int x = 0; x < 20; ++x) {
            const uint8_t* pixel = picture.at(x, y);
            if (pixel[0] == 0xFE) {
                EXPECT_EQ(pixel[1], 0);
                EXPECT_EQ(pixel[2], 0xC3);
                EXPECT_GE(x, 4);
                EXPECT_LT(x, 6);
                EXPECT_GE(y, 3);
                EXPECT_LT(y, 14);
                ++painted;
            }
        }
    }
    EXPECT_GE(painted, 4);
    EXPECT_LE(painted, 9);
}

TEST(PixelFont, DrawPastTheEdge_IsCut) {
    const maker::PixelFont font(maker::kLargeText);
    maker::Picture picture(10, 6);
    maker::Canvas canvas(picture);
    font.draw(canvas, -7, -9, U"WWWW", {0xFF, 0xFF, 0xFF});
    EXPECT_EQ(picture.rgba.size(), 240u);
}

TEST(CheckNames, PanelTitle_HasNeitherFolderNorEnding) {
    EXPECT_EQ(maker::panelTitle("live/loop.m19"), "loop");
    EXPECT_EQ(maker::panelTitle("loop.m19"), "loop");
    EXPECT_EQ(maker::panelTitle("a\\b.m19"), "b");
    EXPECT_EQ(maker::panelTitle("ab"), "");
}

std::vector<Finding> findingsFor(const std::string& playlist, const std::string& track) {
    maker::Findings findings;
    maker::checkNames({{playlist, {track}}}, findings);
    return findings.all();
}

TEST(CheckNames, OrdinaryNames_Fit) {
    EXPECT_TRUE(findingsFor("my set", "live/loop.m19").empty());
}

// "W" is 6 pixels wide at size 9 and 12 at 18: 14 of them are 168, 15 are 180 pixels.
TEST(CheckNames, PlaylistName_HasRoomUpToTheNumberOfTracks) {
    EXPECT_TRUE(findingsFor(std::string(14, 'W'), "a.m19").empty());
    const std::vector<Finding> findings = findingsFor(std::string(15, 'W'), "a.m19");
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_FALSE(findings[0].problem);
    EXPECT_EQ(findings[0].where, "WWWWWWWWWWWWWWW");
    EXPECT_EQ(findings[0].text,
              "its name runs over the number of tracks in the list over the mix: 180 pixels, room "
              "for 172");
}

// 17 W: 204 pixels of 204 on the panel; 19: 114 of 114 on the panel of a composite output.
TEST(CheckNames, ClipName_HasTheRoomOfItsBox) {
    const auto count = [](size_t letters) {
        return findingsFor("a", std::string(letters, 'W') + ".m19").size();
    };
    EXPECT_EQ(count(17), 0u);
    EXPECT_EQ(count(18), 1u);
    EXPECT_EQ(count(19), 1u);
    EXPECT_EQ(count(20), 2u);
}

TEST(CheckNames, LongPath_IsCutInTheEditorAlone) {
    const std::vector<Finding> findings =
        findingsFor("a", "a/folder/with/a/very/long/name/and/another/one/inside/it/for/x.m19");
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_NE(findings[0].text.find("is cut in the editor"), std::string::npos);
}

TEST(CheckNames, Utf8_IsShownByteByByte) {
    const std::vector<Finding> findings = findingsFor("caf\xC3\xA9", "a.m19");
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(findings[0].text, "its name is UTF-8; the screen shows it as 'caf\xC3\x83\xC2\xA9'");
    EXPECT_TRUE(findingsFor("caf\xE9", "a.m19").empty());
}

// (720 - 4) / 20 rows.
TEST(CheckNames, MoreThanThirtyFivePlaylists_DoNotFitTheList) {
    maker::Findings findings;
    maker::checkNames(std::vector<maker::PlaylistText>(35, {"a", {}}), findings);
    EXPECT_TRUE(findings.all().empty());
    maker::checkNames(std::vector<maker::PlaylistText>(36, {"a", {}}), findings);
    EXPECT_EQ(findings.all().size(), 1u);
}

}  // namespace
