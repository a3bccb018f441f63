#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "tools/base/errors.h"
#include "tools/score/score.h"

namespace {

using maker::Deed;
using maker::parseScore;
using maker::Score;
using maker::ScoreEvent;

const std::string kFirst = "velmora score 1\n";

Score scoreOf(const std::string& lines) {
    return parseScore(kFirst + lines);
}

// "frame deed code" of each event.
std::string eventsOf(const std::string& lines) {
    static constexpr const char* kDeeds[] = {"down",     "up",     "again",      "is down",
                                             "is up",    "at",     "mouse down", "mouse up",
                                             "pad down", "pad up", "rate",       "close"};
    std::string text;
    for (const ScoreEvent& event : scoreOf(lines).events) {
        text.append(text.empty() ? "" : ", ").append(std::to_string(event.frame));
        text.append(event.early ? " !" : " ").append(kDeeds[static_cast<int>(event.deed)]);
        text.append(" ").append(std::to_string(event.code));
    }
    return text;
}

std::string faultOf(const std::string& bytes) {
    try {
        parseScore(bytes);
    } catch (const maker::ToolError& error) {
        return error.what();
    }
    return "none";
}

std::string faultIn(const std::string& line) {
    return faultOf(kFirst + line + "\n");
}

TEST(ScoreRead, Tap_IsDownForTwoFrames) {
    EXPECT_EQ(eventsOf("10 q\n"), "10 down 113, 12 up 113");
    EXPECT_EQ(eventsOf("10 q:7\n"), "10 down 113, 17 up 113");
    EXPECT_EQ(eventsOf("10 mouse pad3:1\n"),
              "10 mouse down 1, 10 pad down 3, 11 pad up 3, 12 mouse up 1");
}

TEST(ScoreRead, Signs_AreDownUpAndAgain) {
    EXPECT_EQ(eventsOf("1 +q\n2 ~q\n3 -q\n4 +mouse3 -mouse3 +pad99 -pad99\n"),
              "1 down 113, 2 again 113, 3 up 113, 4 mouse down 3, 4 mouse up 3, 4 pad down 99, "
              "4 pad up 99");
}

TEST(ScoreRead, Frames_MayFollowTheLineBefore) {
    EXPECT_EQ(eventsOf("10 +q\n+5 -q\n+0 +w\n8 +e\n+1 -e\n"),
              "8 down 101, 9 up 101, 10 down 113, 15 up 113, 15 down 119");
}

TEST(ScoreRead, Range_RepeatsWithBothEnds) {
    EXPECT_EQ(eventsOf("10-30/10 +q\n"), "10 down 113, 20 down 113, 30 down 113");
    EXPECT_EQ(eventsOf("10-29/10 +q\n"), "10 down 113, 20 down 113");
    EXPECT_EQ(eventsOf("10-12 +q\n"), "10 down 113, 11 down 113, 12 down 113");
}

TEST(ScoreRead, Early_ComesBeforeTheKeys) {
    EXPECT_EQ(eventsOf("3 !+q +w\n"), "3 !down 113, 3 down 119");
}

TEST(ScoreRead, Character_IsTheUsualOneUnlessGiven) {
    const Score score = scoreOf("1 +q +q/81 ~w/0 -q\n");
    EXPECT_EQ(score.events[0].character, 'q');
    EXPECT_EQ(score.events[1].character, 81);
    EXPECT_EQ(score.events[2].character, 0);
    EXPECT_EQ(score.events[3].character, 0);
}

TEST(ScoreRead, Pointer_HasAPlaceOfEitherSign) {
    const Score score = scoreOf("1 @-320,180\n");
    EXPECT_EQ(score.events[0].x, -320);
    EXPECT_EQ(score.events[0].y, 180);
}

TEST(ScoreRead, KeyState_ComesWithoutAnEvent) {
    EXPECT_EQ(eventsOf("1 !q=1 left=0\n"), "1 !is down 113, 1 is up 276");
    EXPECT_EQ(faultIn("1 q=2"), "line 2: there is no 'q=2'");
    EXPECT_EQ(faultIn("1 mouse=1"), "line 2: there is no 'mouse=1'");
}

TEST(ScoreRead, OtherDeeds_AreRateAndClose) {
    EXPECT_EQ(eventsOf("1 fps=24\n2 close\n"), "1 rate 24, 2 close 0");
}

TEST(ScoreRead, Length_IsTheEndOrTheLastFrameNamed) {
    EXPECT_EQ(scoreOf("10 q\n").frames, 13);
    EXPECT_EQ(scoreOf("10 q\n100 end\n").frames, 100);
    EXPECT_EQ(scoreOf("10\n").frames, 11);
    EXPECT_EQ(scoreOf("").frames, 0);
}

TEST(ScoreRead, Events_BehindTheEndAreLeftOut) {
    EXPECT_EQ(eventsOf("1 q\n3 end\n5 w\n"), "1 down 113");
}

TEST(ScoreRead, Head_TellsOfTheWhole) {
    const Score score = scoreOf(
        "display 720 576\nseed 4294967295\npad  A # pad \n"
        "playlist  La vie # 1\n1 q\n");
    EXPECT_EQ(score.width, 720);
    EXPECT_EQ(score.height, 576);
    EXPECT_EQ(score.seed, 4294967295U);
    EXPECT_TRUE(score.hasPad);
    EXPECT_EQ(score.pad, "A # pad");
    EXPECT_EQ(score.playlist, "La vie # 1");
    const Score plain = scoreOf("1 q\n");
    EXPECT_EQ(plain.width, 1280);
    EXPECT_EQ(plain.height, 720);
    EXPECT_EQ(plain.seed, 1U);
    EXPECT_FALSE(plain.hasPad);
}

TEST(ScoreRead, Files_AreAsTheyWere) {
    const Score score = scoreOf(
        "file userdata/prefs.xml\n|one # two\n|\n"
        "file userdata/playlists.xml missing\n1 q\n");
    ASSERT_EQ(score.files.size(), 2U);
    EXPECT_EQ(score.files[0].content, "one # two\n");
    EXPECT_FALSE(score.files[0].missing);
    EXPECT_TRUE(score.files[1].missing);
}

TEST(ScoreRead, Clips_HaveASizeOrAreMissing) {
    const Score score = scoreOf(
        "clip 18446744073709551615  sea # 1/a b.m19 \nclip missing gone.m19\nclip 0 x\n1 q\n");
    ASSERT_EQ(score.clips.size(), 3U);
    EXPECT_EQ(score.clips[0].track, "sea # 1/a b.m19");
    EXPECT_EQ(score.clips[0].bytes, UINT64_MAX);
    EXPECT_EQ(score.clips[1].track, "gone.m19");
    EXPECT_FALSE(score.clips[1].bytes);
    EXPECT_EQ(score.clips[2].bytes, 0U);
}

TEST(ScoreRead, Comments_AndEmptyLinesAreNothing) {
    EXPECT_EQ(eventsOf("# 1 q\n\n  \t\n2 q:1 # w\r\n"), "2 down 113, 3 up 113");
}

TEST(ScoreRead, FirstLine_IsNeeded) {
    EXPECT_EQ(faultOf(""), "line 0: a score begins with velmora score 1");
    EXPECT_EQ(faultOf("1 q\n"), "line 1: a score begins with velmora score 1");
    EXPECT_EQ(faultOf("velmora score 2\n"), "line 1: a score begins with velmora score 1");
}

TEST(ScoreRead, Faults_NameTheirLine) {
    EXPECT_EQ(faultIn("1 q\nhello"), "line 3: 'hello' stands before the first frame");
    EXPECT_EQ(faultIn("hello"), "line 2: 'hello' is neither a frame nor a word that scores know");
    EXPECT_EQ(faultIn("12x q"), "line 2: '12x' is no frame: such as 120, +25 or 200-400/25");
    EXPECT_EQ(faultIn("20-10 q"), "line 2: '20-10' is no frame: such as 120, +25 or 200-400/25");
    EXPECT_EQ(faultIn("1-9/0 q"), "line 2: '1-9/0' is no frame: such as 120, +25 or 200-400/25");
    EXPECT_EQ(faultIn("1 foo"), "line 2: there is no 'foo'");
    EXPECT_EQ(faultIn("1 +"), "line 2: there is no '+'");
    EXPECT_EQ(faultIn("1 !"), "line 2: there is no '!'");
    EXPECT_EQ(faultIn("1 ~mouse"), "line 2: there is no '~mouse'");
    EXPECT_EQ(faultIn("1 pad100"), "line 2: there is no 'pad100'");
    EXPECT_EQ(faultIn("1 q:0"), "line 2: 'q:0': for how many frames?");
    EXPECT_EQ(faultIn("1 -q/3"), "line 2: '-q/3' has no character");
    EXPECT_EQ(faultIn("1 +q/65536"), "line 2: '+q/65536': a character is a number of 0 to 65535");
    EXPECT_EQ(faultIn("1 @3"), "line 2: '@3' is no place of the pointer: such as @320,180");
    EXPECT_EQ(faultIn("1 fps=26"), "line 2: a rate is 0 to 25");
    EXPECT_EQ(faultIn("1 end end"), "line 2: a second end");
    EXPECT_EQ(faultIn("display 0 5"), "line 2: a display has a width and a height of 1 to 16384");
    EXPECT_EQ(faultIn("seed -1"), "line 2: a seed is a number of 0 to 4294967295");
    EXPECT_EQ(faultIn("playlist "), "line 2: which playlist?");
    EXPECT_EQ(faultIn("clip 5"), "line 2: which clip?");
    EXPECT_EQ(faultIn("clip x.m19"), "line 2: a clip has a size in bytes, or is missing");
    EXPECT_EQ(faultIn("clip -1 x.m19"), "line 2: a clip has a size in bytes, or is missing");
    EXPECT_EQ(faultIn("file ../x"), "line 2: a score holds no file '../x'");
    EXPECT_EQ(faultIn("file userdata/prefs.xml\nfile userdata/prefs.xml"),
              "line 3: a second userdata/prefs.xml");
}

TEST(ScoreRead, DocumentedScore_IsOne) {
    std::ifstream document(DOCUMENT);
    std::string score;
    for (std::string line; std::getline(document, line);) {
        if (line == "    " + kFirst.substr(0, kFirst.size() - 1) ||
            (!score.empty() && line.starts_with("    "))) {
            score.append(line.substr(4)).append("\n");
        } else if (!score.empty()) {
            break;
        }
    }
    const Score read = parseScore(score);
    EXPECT_EQ(read.frames, 512);
    EXPECT_EQ(read.playlist, "neon");
    EXPECT_EQ(read.events.size(), 58U);
}

TEST(ScoreRead, Limits_AreKept) {
    EXPECT_EQ(faultIn("10000000 q"), "none");
    EXPECT_EQ(faultIn("10000001 q"),
              "line 2: '10000001' is no frame: such as 120, +25 or 200-400/25");
    EXPECT_EQ(faultIn("10000000 q\n+1 q"), "line 3: a score has at most 10000000 frames");
    EXPECT_EQ(faultIn("0-9999999 q"), "line 2: too many events");
}

}  // namespace
