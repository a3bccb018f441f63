// The second click of a double click, the wheel, and clocks that jump: what must not happen.
#include "layout/press_gate.h"
#include "moxel/moxel.h"
#include "state/editor_hands.h"

namespace {

using Names = std::vector<std::string>;

// Everything on a page that answers a press, as it is drawn.
struct PlaceCase {
    const char* page;
    int x, y, w, h;
};
constexpr PlaceCase kPlaces[] = {
    {"browse", 2, 228, 56, 24},   {"browse", 66, 228, 56, 24},   {"browse", 130, 228, 56, 24},
    {"browse", 194, 228, 56, 24}, {"browse", 258, 228, 56, 24},  {"browse", 322, 228, 56, 24},
    {"browse", 386, 228, 56, 24}, {"browse", 574, 228, 64, 24},  {"name", 10, 256, 56, 24},
    {"name", 74, 256, 56, 24},    {"tracks", 138, 256, 56, 24},  {"tracks", 202, 256, 56, 24},
    {"tracks", 266, 256, 56, 24}, {"tracks", 330, 256, 56, 24},  {"tracks", 510, 256, 56, 24},
    {"tracks", 574, 256, 64, 24}, {"question", 10, 310, 56, 24}, {"question", 74, 310, 56, 24},
    {"lists", 2, 18, 308, 195},   {"lists", 322, 18, 306, 195},  {"lists", 310, 20, 10, 194},
    {"lists", 628, 20, 10, 194},
};

bool overlap(const PlaceCase& a, const PlaceCase& b) {
    return a.x < b.x + b.w && b.x < a.x + a.w && a.y < b.y + b.h && b.y < a.y + a.h;
}

TEST(EditorPlaces, ButtonsOfDifferentPages_ShareNoPixel) {
    for (const PlaceCase& one : kPlaces) {
        for (const PlaceCase& other : kPlaces) {
            EXPECT_EQ(&one != &other && overlap(one, other), false)
                << one.page << " " << one.x << ", " << other.page << " " << other.x;
        }
    }
    size_t buttons = 0;
    for (const auto& row : {page::buttonsOf(page::BROWSE), page::buttonsOf(page::NEW_PLAYLIST),
                            page::buttonsOf(page::TRACKS),
                            std::span<const page::ButtonPlace>(page::kQuestionButtons)}) {
        for (const page::ButtonPlace& place : row) {
            const PlaceCase& listed = kPlaces[buttons];
            EXPECT_EQ(place.x, listed.x) << buttons;
            EXPECT_EQ(place.y, listed.y) << buttons;
            EXPECT_EQ(place.width, listed.w) << buttons;
            ++buttons;
        }
    }
    EXPECT_EQ(buttons, 18u);
}

class TwoClicks : public EditorTest {
protected:
    TwoClicks() {
        writeFile("videos/live/deep/y.m19", "");
        placeClip("rgb-all-360.m19", "full.m19");
        addFamille("A", {"full.m19", "a1.m19"});
        addFamille("B", {"b0.m19"});
        frame();
    }
    // A press and its release within one frame each, so many milliseconds after the last frame.
    static void clickAfter(int ms, Spot at) {
        tempsActuel += ms - 40;
        press(at);
        release();
    }
    static void doubleClick(Spot at) {
        click(at);
        clickAfter(160, at);
    }
};

TEST_F(TwoClicks, OnBackOfTheTracks_DoNotLeadHome) {
    editFirst();
    doubleClick(kTracksBack);
    // Where the browse page's own button stands.
    clickAfter(60, kBack);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    // 300 ms after the button came up.
    clickAfter(300, kBack);
    EXPECT_EQ(all->state, STATE_HOME);
}

TEST_F(TwoClicks, OnConfirm_OpenNoNewPlaylist) {
    editFirst();
    click(kConfirm);
    clickAfter(120, kCreate);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    clickAfter(300, kCreate);
    EXPECT_EQ(playlist->editPage, page::NEW_PLAYLIST);
}

TEST_F(TwoClicks, ButtonKeptDown_TheWaitBeginsWhenItComesUp) {
    editFirst();
    tempsActuel += 2000;
    press(kTracksBack);
    for (int i = 0; i < 50; ++i) {
        frame();
    }
    release();
    clickAfter(299, kBack);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    clickAfter(40, kBack);
    EXPECT_EQ(all->state, STATE_HOME) << "who goes on clicking waits no longer";
}

// Press and release in one frame.
TEST_F(TwoClicks, QuickOnes_AreHeldOffToo) {
    editFirst();
    tempsActuel += 2000;
    pointAt(kTracksBack);
    keys->mouseClick = 1;
    frame();
    pointAt(kBack);
    frame();
    keys->mouseClick = 0;
    frame();
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
}

TEST_F(TwoClicks, OnAPlaylist_SelectNoTrackOfThePageThatOpens) {
    doubleClick(leftRow(0));
    ASSERT_EQ(playlist->editPage, page::TRACKS);
    clickAfter(120, rightRow(rowOfEntry("live")));
    EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos");
}

TEST_F(TwoClicks, OnDelete_AnswerNothing) {
    click(kDelete);
    clickAfter(120, kYes);
    EXPECT_EQ(editor->question, ASK_DELETE);
    clickAfter(300, kYes);
    EXPECT_EQ(editor->question, ASK_NOTHING);
    clickAfter(120, kCreate);
    EXPECT_EQ(playlist->editPage, page::BROWSE) << "the answer holds off as well";
    EXPECT_EQ(familleNames(), (Names{"B"}));
}

TEST_F(TwoClicks, OnAFolder_EnterOne) {
    editFirst();
    const Spot folder = rightRow(rowOfEntry("live"));
    click(folder);
    clickAfter(120, rightRow(rowOfEntry("deep")));
    EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos/live");
    click(rightRow(rowOfEntry("deep")));
    EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos/live/deep");
}

TEST_F(TwoClicks, OnPreview_StartItAndKeepIt) {
    click(rightRow(0));
    doubleClick(kPreview);
    EXPECT_EQ(playlist->previewActive, 1);
    clickAfter(300, kPreview);
    EXPECT_EQ(playlist->previewActive, 0);
    clickAfter(120, kCreate);
    EXPECT_EQ(playlist->editPage, page::BROWSE) << "the page that comes back holds off as well";
}

TEST_F(TwoClicks, OnEditOfTheMenu_PressNothingHere) {
    press(kBack);
    ASSERT_EQ(all->state, STATE_HOME);
    tempsActuel += 2000;
    all->state = STATE_PLAYLISTS;
    // The button of the press at home is still down.
    keys->mouseHeld = 1;
    frame();
    release();
    clickAfter(120, rightRow(1));
    EXPECT_EQ(playlist->dragSource, 0);
    clickAfter(300, rightRow(1));
    EXPECT_EQ(playlist->dragSource, 1);
}

TEST_F(TwoClicks, Keys_AreNotHeldOff) {
    editFirst();
    click(kTracksBack);
    tap(KEY_X);
    EXPECT_EQ(playlist->editPage, page::TRACKS);
}

// The clock of SDL 1.2 is the wall clock.
TEST_F(TwoClicks, ClockStepsBack_ThePageIsNotLocked) {
    editFirst();
    click(kTracksBack);
    tempsActuel -= 3600000;
    frame();
    clickAfter(200, kBack);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    clickAfter(300, kBack);
    EXPECT_EQ(all->state, STATE_HOME);
}

TEST_F(TwoClicks, ClockStepsBack_TwoSlowClicksAreNoDoubleClick) {
    click(leftRow(1));
    tempsActuel -= 3600000;
    press(leftRow(1));
    release();
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    clickAfter(160, leftRow(1));
    EXPECT_EQ(playlist->editPage, page::TRACKS) << "the clock goes on from there";
}

TEST(PressGate, TheFarEndsOfTheClock_AreNoShortTime) {
    EXPECT_EQ(msBetween(-2000000000, 2000000000), 4000000000);
    EXPECT_EQ(msBetween(5, 4), -1);
    EXPECT_EQ(msBetween(5, 5), 0);
}

class Wheel : public EditorTest {
protected:
    Wheel() {
        for (int f = 0; f < 20; ++f) {
            addFamille(numbered("f", f), std::vector<std::string>(22, "t.m19"));
        }
        for (int clip = 0; clip < 30; ++clip) {
            writeFile(numbered("videos/c", clip) + ".m19", "");
        }
        frame();
    }
};

TEST_F(Wheel, OverAList_ScrollsItByThreeRowsANotch) {
    turnWheel(leftRow(3), 1);
    EXPECT_EQ(playlist->scroll[0].pos, 3);
    EXPECT_EQ(playlist->scroll[1].pos, 0);
    turnWheel(leftRow(3), 5);
    EXPECT_EQ(playlist->scroll[0].pos, 5) << "20 rows, 15 of them shown";
    turnWheel(leftRow(3), -1);
    EXPECT_EQ(playlist->scroll[0].pos, 2);
    turnWheel(leftRow(14), -1);
    EXPECT_EQ(playlist->scroll[0].pos, 0);
    turnWheel(rightRow(0), 2);
    EXPECT_EQ(playlist->scroll[1].pos, 6);
    turnWheel({632, 100}, 1);
    EXPECT_EQ(playlist->scroll[1].pos, 7) << "over its bar; 22 rows";
    EXPECT_EQ(playlist->editFamille, 0) << "it selects nothing";
}

TEST_F(Wheel, OverTheFiles_ScrollsThem) {
    editFirst();
    turnWheel(rightRow(2), 3);
    EXPECT_EQ(playlist->scroll[1].pos, 9);
}

TEST_F(Wheel, ElsewhereAndOnOtherPages_DoesNothing) {
    for (const Spot at : {kCreate, kNowhere, Spot{100, 8}, Spot{-50, 100}}) {
        turnWheel(at, 1);
    }
    click(kDelete);
    turnWheel(leftRow(3), 1);
    EXPECT_EQ(editor->question, ASK_DELETE);
    click(kNo);
    click(kCreate);
    turnWheel(leftRow(3), 1);
    EXPECT_EQ(playlist->scroll[0].pos, 0);
    EXPECT_EQ(playlist->scroll[1].pos, 0);
    EXPECT_EQ(playlist->newName, "");
}

TEST_F(Wheel, DuringADrag_ScrollsToWhereItShallGo) {
    press(leftRow(0));
    move(leftRow(4));
    turnWheel(leftRow(4), 1);
    release();
    EXPECT_EQ(playlist->familles[6].name, "f0") << "before row 3 + 4";
}

}  // namespace
