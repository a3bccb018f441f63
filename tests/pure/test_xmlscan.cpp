#include "files/xmlscan.h"

#include <gtest/gtest.h>

#include <iterator>
#include <random>

#include "pure/counted_stream.h"
#include "support/seed.h"

namespace {

constexpr const char* kDeclaration = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>";

std::string pastTheEnd(size_t count) {
    return std::string(count, '\xFF');
}

TEST(XmlScan, TabIndentedElement_TextBetweenItsTags) {
    CountedStream stream("\t\t<name>one</name>\n\t\t<name>two words</name>\n\t</playlist>\n");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), "one");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), "two words");
}

TEST(XmlScan, ElementWithoutText_EmptyString) {
    CountedStream stream("<name></name>");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), "");
    EXPECT_EQ(stream.position(), 13u);
}

TEST(XmlScan, TextIsRaw_SpacesAndEntitiesStay) {
    CountedStream stream("<name> a &amp; <b>%s\t\n</name>");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), " a &amp; <b>%s\t\n");
}

TEST(XmlScan, LongestWholeTexts_92ForNameAnd91ForTrack) {
    const std::string name(92, 'n');
    const std::string track(91, 't');
    CountedStream stream("<name>" + name + "</name>\n<track>" + track + "</track>");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), name);
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("track"), track);
    EXPECT_EQ(stream.position(), stream.reads());
}

// 99 characters are read and the seven of "</name>" cut off; the next call starts at the 100th.
TEST(XmlScan, NameOf100_First92AndNextCallStartsInTheRest) {
    const std::string first(92, 'a');
    CountedStream stream("<name>" + first + "bbbbbbbc</name><name>next</name>");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), first);
    EXPECT_EQ(stream.position(), 6u + 99u);
    EXPECT_EQ(xml::Scanner(stream.file()).skipChar(), 'c');
}

TEST(XmlScan, quirk_long_text_is_cut_by_its_closing_tag) {
    // 93 characters and six of the closing tag are 99: the whole tag does not fit any more.
    CountedStream name("<name>" + std::string(92, 'x') + "y</name>");
    EXPECT_EQ(xml::Scanner(name.file()).readNode("name"), std::string(92, 'x'));
    EXPECT_EQ(name.position(), 105u);
    CountedStream track("<track>" + std::string(91, 'x') + "y</track>");
    EXPECT_EQ(xml::Scanner(track.file()).readNode("track"), std::string(91, 'x'));
    EXPECT_EQ(track.position(), 106u);
}

TEST(XmlScan, quirk_missing_opening_tag_counts_as_found) {
    // 99 characters without the tag, then a text up to the closing tag.
    CountedStream stream(std::string(99, '.') + "late</name>");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), "late");
    EXPECT_EQ(stream.position(), 110u);
}

TEST(XmlScan, OpeningTagEndsAtThe99thCharacter_Found) {
    CountedStream stream(std::string(93, '.') + "<name>in</name>");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), "in");
}

// The hundredth character is the ">" of the tag; the text starts with it.
TEST(XmlScan, OpeningTagEndsOneLater_TextStartsInsideIt) {
    CountedStream stream(std::string(94, '.') + "<name>in</name>");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), ">in");
}

TEST(XmlScan, EndOfPlaylistBeforeTheTrack_Returned) {
    CountedStream stream("\t</playlist>\n");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("track"), "</playlist>");
    EXPECT_EQ(stream.position(), 12u);
}

TEST(XmlScan, EndOfAllBeforeTheTrack_Returned) {
    CountedStream stream("</all>\n");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("track"), "</all>");
    EXPECT_EQ(stream.position(), 6u);
}

TEST(XmlScan, SentinelsInsideTheText_AreText) {
    CountedStream stream("<name>a</all>b</playlist>c</name>");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), "a</all>b</playlist>c");
}

TEST(XmlScan, Attribute_TagIsNotRecognised) {
    CountedStream stream("<name lang=\"fr\">a</name><name>b</name>");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), "b");
}

TEST(XmlScan, Capitals_AreNotRecognised) {
    CountedStream stream("<NAME>a</NAME><name>b</name>");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), "b");
}

TEST(XmlScan, SkipToTarget_LeavesTheStreamJustAfterIt) {
    CountedStream stream("\t<playlist>\n");
    EXPECT_EQ(xml::Scanner(stream.file()).skipTo("<playlist>"), "");
    EXPECT_EQ(xml::Scanner(stream.file()).skipChar(), '\n');
}

TEST(XmlScan, SkipToWithEndAhead_ReturnsTheEnd) {
    CountedStream stream("\n</all>\n");
    EXPECT_EQ(xml::Scanner(stream.file()).skipTo("<playlist>"), "</all>");
    EXPECT_EQ(stream.position(), 7u);
}

TEST(XmlScan, SkipToWithoutEither_Consumes43) {
    CountedStream stream(std::string(60, '.'));
    EXPECT_EQ(xml::Scanner(stream.file()).skipTo("<playlist>"), "");
    EXPECT_EQ(stream.position(), 43u);
}

TEST(XmlScan, SkipToTargetEndingAtThe43rd_Found) {
    CountedStream stream(std::string(33, '.') + "<playlist>x");
    EXPECT_EQ(xml::Scanner(stream.file()).skipTo("<playlist>"), "");
    EXPECT_EQ(stream.position(), 43u);
    EXPECT_EQ(xml::Scanner(stream.file()).skipChar(), 'x');
}

TEST(XmlScan, SkipToTheEndItself_CountsAsTarget) {
    CountedStream stream("</all>");
    EXPECT_EQ(xml::Scanner(stream.file()).skipTo("</all>"), "");
}

TEST(XmlScan, Prologue_43CharactersOneMoreAndTheRoot) {
    CountedStream stream(std::string(kDeclaration) + "\n\n<all>\n");
    xml::Scanner(stream.file()).readPrologue();
    EXPECT_EQ(stream.position(), 50u);
}

// Nothing of the declaration is looked at: not even a tag inside it.
TEST(XmlScan, PrologueWithoutDeclaration_Skips44AllTheSame) {
    CountedStream stream("<all>" + std::string(39, '.') + "<all>\n");
    xml::Scanner(stream.file()).readPrologue();
    EXPECT_EQ(stream.position(), 49u);
}

TEST(XmlScan, PastTheEnd_EveryCallEndsWithinItsBudget) {
    CountedStream stream("");
    EXPECT_EQ(xml::Scanner(stream.file()).skipChar(), EOF);
    EXPECT_EQ(stream.reads(), 1u);
    EXPECT_EQ(xml::Scanner(stream.file()).skipTo("<all>"), "");
    EXPECT_EQ(stream.reads(), 1u + 43u);
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), pastTheEnd(92));
    EXPECT_EQ(stream.reads(), 1u + 43u + 198u);
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("track"), pastTheEnd(91));
    EXPECT_EQ(stream.reads(), 1u + 43u + 2 * 198u);
}

// A real end of file, which the C library remembers.
TEST(XmlScan, RealEndOfFile_GivesBytesFF) {
    FILE* file = tmpfile();
    ASSERT_NE(file, nullptr);
    fputs("<name>cut", file);
    rewind(file);
    EXPECT_EQ(xml::Scanner(file).readNode("name"), "cut" + pastTheEnd(89));
    EXPECT_EQ(xml::Scanner(file).skipTo("<playlist>"), "");
    EXPECT_EQ(xml::Scanner(file).skipChar(), EOF);
    fclose(file);
}

TEST(XmlScan, Bytes_ReadAsAStreamAndLeftAtTheirEnd) {
    xml::Scanner scanner("<name>one</name>x<name>cut");
    EXPECT_EQ(scanner.readNode("name"), "one");
    EXPECT_EQ(scanner.skipChar(), 'x');
    EXPECT_EQ(scanner.readNode("name"), "cut" + pastTheEnd(89));
    EXPECT_EQ(scanner.skipChar(), EOF);
    EXPECT_EQ(scanner.skipTo("<all>"), "");
}

// No element is named twice by mistake: each is looked for behind the one before.
TEST(XmlScan, Nodes_InTheOrderAsked) {
    const char* const names[] = {"b", "a", "b"};
    const std::string document =
        std::string(kDeclaration) + "\n\n<all>\n\t<b>1</b>\n\t<a>2</a>\n\t<b>3</b>\n</all>\n";
    EXPECT_EQ(xml::readNodes(document, names), (std::vector<std::string>{"1", "2", "3"}));
}

TEST(XmlScan, NumberOf_DecimalBeginningOrZero) {
    EXPECT_EQ(xml::numberOf("1280"), 1280);
    EXPECT_EQ(xml::numberOf(" -7x"), -7);
    EXPECT_EQ(xml::numberOf("x7"), 0);
    EXPECT_EQ(xml::numberOf(""), 0);
}

TEST(XmlScan, LongestText_92ForNameAnd91ForTrack) {
    EXPECT_EQ(xml::longestText("name"), 92u);
    EXPECT_EQ(xml::longestText("track"), 91u);
}

TEST(XmlScan, ComesBack_AllButLongTextsTheirOwnTagAndTheTwoEnds) {
    EXPECT_TRUE(xml::comesBack(std::string(92, 'n'), "name"));
    EXPECT_FALSE(xml::comesBack(std::string(93, 'n'), "name"));
    EXPECT_TRUE(xml::comesBack(std::string(91, 't'), "track"));
    EXPECT_FALSE(xml::comesBack(std::string(92, 't'), "track"));
    EXPECT_FALSE(xml::comesBack("a</name>b", "name"));
    EXPECT_FALSE(xml::comesBack("</track>", "track"));
    EXPECT_TRUE(xml::comesBack("a</name>b", "track"));
    for (const char* name : {"name", "track"}) {
        EXPECT_FALSE(xml::comesBack("</all>", name));
        EXPECT_FALSE(xml::comesBack("</playlist>", name));
        EXPECT_TRUE(xml::comesBack("</all> ", name));
        EXPECT_TRUE(xml::comesBack("a</playlist>", name));
        EXPECT_TRUE(xml::comesBack("", name));
        EXPECT_TRUE(xml::comesBack(" <" + std::string(name) + "> & %s\r\n\xFF" + '\0', name));
    }
}

// Texts by chance, of pieces that the scanner minds and of any bytes, of lengths about the limit.
std::string anyText(std::mt19937& chance) {
    static const std::string kPieces[] = {"</name>", "</track>", "</all>", "</playlist>", "<name>",
                                          "<track>", "</nam",    "</",     "<",           "e>",
                                          ">",       "/",        "\n",     "\t"};
    const auto below = [&chance](size_t limit) { return chance() % limit; };
    std::string text;
    for (size_t pieces = below(4); pieces > 0; --pieces) {
        if (below(3) == 0) {
            text += std::string(below(100), static_cast<char>(below(0x100)));
        } else {
            text += kPieces[below(std::size(kPieces))];
        }
    }
    return text;
}

// Written as the program writes it, behind one element and before another, and read back: what is
// said to come back does, and what is not does not, or looks like an end.
TEST(XmlScan, TextsByChance_ComeBackWhenTheyAreSaidTo) {
    std::mt19937 chance(chosenSeed());
    int lost = 0;
    for (int i = 0; i < 4000; ++i) {
        const std::string text = anyText(chance);
        const std::string name = i % 2 == 0 ? "name" : "track";
        const std::string open = "\t\t<" + name + ">";
        const std::string close = "</" + name + ">\n";
        CountedStream stream(open + "a" + close + open + text + close + open + "z" + close);
        EXPECT_EQ(xml::Scanner(stream.file()).readNode(name), "a");
        const std::string back = xml::Scanner(stream.file()).readNode(name);
        const std::string next = xml::Scanner(stream.file()).readNode(name);
        const bool end = back == "</all>" || back == "</playlist>";
        ASSERT_EQ(xml::comesBack(text, name), back == text && next == "z" && !end)
            << name << ": " << ::testing::PrintToString(text);
        lost += xml::comesBack(text, name) ? 0 : 1;
    }
    EXPECT_GT(lost, 400);
    EXPECT_LT(lost, 3600);
}

TEST(XmlScan, ByteFFAndZeroInTheFile_AreCharacters) {
    const std::string text = std::string("a\xFF") + '\0' + "\xE9";
    CountedStream stream("<name>" + text + "</name>");
    EXPECT_EQ(xml::Scanner(stream.file()).readNode("name"), text);
}

}  // namespace
