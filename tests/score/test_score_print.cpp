#include <gtest/gtest.h>

#include "tools/score/score.h"

namespace {

using maker::Deed;
using maker::parseScore;
using maker::printScore;
using maker::printScoreEvent;
using maker::Score;
using maker::ScoreEvent;

ScoreEvent eventOf(Deed deed, int code) {
    ScoreEvent event;
    event.deed = deed;
    event.code = code;
    return event;
}

TEST(ScorePrint, Events_AreWords) {
    ScoreEvent typed = eventOf(Deed::KEY_DOWN, 'q');
    typed.character = 'q';
    EXPECT_EQ(printScoreEvent(typed), " +q");
    typed.character = 'Q';
    EXPECT_EQ(printScoreEvent(typed), " +q/81");
    typed.deed = Deed::KEY_AGAIN;
    EXPECT_EQ(printScoreEvent(typed), " ~q/81");
    EXPECT_EQ(printScoreEvent(eventOf(Deed::KEY_UP, 276)), " -left");
    EXPECT_EQ(printScoreEvent(eventOf(Deed::KEY_IS_DOWN, 'q')), " q=1");
    EXPECT_EQ(printScoreEvent(eventOf(Deed::KEY_IS_UP, 9)), " tab=0");
    EXPECT_EQ(printScoreEvent(eventOf(Deed::MOUSE_DOWN, 1)), " +mouse");
    EXPECT_EQ(printScoreEvent(eventOf(Deed::MOUSE_UP, 4)), " -mouse4");
    EXPECT_EQ(printScoreEvent(eventOf(Deed::PAD_DOWN, 1)), " +pad1");
    EXPECT_EQ(printScoreEvent(eventOf(Deed::RATE, 24)), " fps=24");
    EXPECT_EQ(printScoreEvent(eventOf(Deed::CLOSE, 0)), " close");
    ScoreEvent pointer = eventOf(Deed::POINTER, 0);
    pointer.early = true;
    pointer.x = -5;
    pointer.y = 7;
    EXPECT_EQ(printScoreEvent(pointer), " !@-5,7");
}

TEST(ScorePrint, Printed_ReadsAsItWas) {
    Score score;
    score.width = 720;
    score.height = 480;
    score.seed = 99;
    score.hasPad = true;
    score.pad = "Pad of mine";
    score.files = {{"userdata/prefs.xml", false, "a\n\nb # c\n"},
                   {"userdata/gamecontroller.xml", true, ""},
                   {"userdata/playlists.xml", false, "no line end"}};
    score.clips = {{"sea # 1/a b.m19", 48213}, {"gone.m19", std::nullopt}};
    for (int i = 0; i < 40; ++i) {
        ScoreEvent event = eventOf(static_cast<Deed>(i % 12), 97 + i % 3);
        event.frame = i / 3;
        event.early = i % 7 == 0;
        if (event.deed == Deed::RATE || event.deed >= Deed::PAD_DOWN) {
            event.code = i % 25;
        }
        if (event.deed == Deed::POINTER || event.deed == Deed::CLOSE) {
            event.code = 0;
            event.x = event.deed == Deed::POINTER ? i - 20 : 0;
        }
        if (event.deed == Deed::KEY_DOWN || event.deed == Deed::KEY_AGAIN) {
            event.character = static_cast<uint16_t>(i * 1000);
        }
        score.events.push_back(event);
    }
    score.frames = 50;
    EXPECT_EQ(parseScore(printScore(score)), score);
}

TEST(ScorePrint, Nothing_IsAHeadAndAnEnd) {
    EXPECT_EQ(printScore({}), "velmora score 1\ndisplay 1280 720\nseed 1\n0 end\n");
}

TEST(ScorePrint, TracksThatALineCannotHold_AreNone) {
    EXPECT_TRUE(maker::canName("a b #.m19"));
    for (const char* const track : {"", " a", "a ", "\ta", "a\r", "a\nb"}) {
        EXPECT_FALSE(maker::canName(track)) << track;
    }
}

}  // namespace
