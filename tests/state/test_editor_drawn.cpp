// The browse page and the page of one playlist, whole: every text, row, count and scroll bar at its
// place, and what a click in a scrolled list takes.
#include "state/editor_page.h"

namespace {

using namespace sheet;

constexpr const char* kBrowseMouse = "Drag & drop elements on top of buttons";
constexpr const char* kBrowseKeys =
    "arrows : choose, past the lists the buttons        X : edit, preview, use        "
    "Backspace : delete        Z : home";
constexpr const char* kTracksMouse = "Drag & drop files from the right to the left column";
constexpr const char* kTracksKeys =
    "arrows : choose, past the lists the buttons      X : open, preview, use      "
    "Return : add      Backspace : remove      Z : back";
constexpr const char* kCarry =
    "Up, Down : carry it        X : set it down        Z : back where it was";
constexpr int kPink = 0xFE00C3;
constexpr int kBrowseButtonsY = 228;
constexpr int kTracksButtonsY = 256;
constexpr int kTop = 20;  // of the first row's text; a row is 13 high
// By turns, of the entries' clips: a step takes 39 ms.
constexpr int kSteps[] = {3, 19, 100, 300};
constexpr const char* kSeconds[] = {"0.1 s", "0.7 s", "3.9 s", "11.7 s"};

class Pages : public PageTest {
protected:
    // 46 playlists; list 11 has the tracks t0 to t39, the others one to four.
    static void manyPlaylists() {
        for (int f = 0; f < 46; ++f) {
            std::vector<std::string> tracks;
            for (int t = 0; t < (f == 11 ? 40 : 1 + f % 4); ++t) {
                tracks.push_back(numbered("t", t));
            }
            addFamille(numbered("list ", f), tracks);
        }
        frame();
    }
    // 30 entries: every third a folder, the others clips of 100 frames and more.
    static void manyEntries() {
        for (int e = 0; e < 30; ++e) {
            playlist->entries[e] = numbered("e", e);
            playlist->entryIsDir[e] = e % 3 == 0 ? 1 : 0;
            playlist->entryIsClip[e] = e % 3 == 0 ? 0 : 1;
            editor->explorer.facts[e] = {clip::SURVEY_PLAYS, 100 + e, kSteps[e % 4]};
        }
        playlist->nbEntries = editor->explorer.found = editor->explorer.listed = 30;
        playlist->initScroll(1, 30);
    }
    static void scrollTo(int left, int right) {
        playlist->scroll[0].pos = left;
        playlist->scroll[1].pos = right;
    }
    void row(int list, int i, uint16_t ground) {
        box(list == 0 ? 2 : 322, 18 + 13 * i, list == 0 ? 308 : 306, 13, ground);
    }
    // The visible rows of the left list from playlist `first` on; `selected` is a playlist.
    void playlistRows(int first, int selected) {
        for (int i = 0; i < 15; ++i) {
            const int f = first + i;
            const int ink = f == selected ? kBlack : kWhite;
            if (f == selected) {
                row(0, i, kSelected);
            }
            text(numbered("list ", f), 7, kTop + 13 * i, ink);
            textRight(f == 11 ? "40" : numbered("", 1 + f % 4), 306, kTop + 13 * i, ink);
        }
    }
    // Visible rows of a list of tracks t0, t1 ..., with their numbers from 1.
    void trackRows(int list, int first, int selected, uint16_t ground) {
        const int x = list == 0 ? 2 : 322;
        for (int i = 0; i < 15; ++i) {
            const bool chosen = first + i == selected;
            if (chosen) {
                row(list, i, ground);
            }
            textRight(numbered("", first + i + 1), x + 20, kTop + 13 * i, chosen ? kBlack : kGrey);
            text(numbered("t", first + i), x + 28, kTop + 13 * i, chosen ? kBlack : kWhite);
        }
    }
    void folderSign(int i, uint16_t colour) {
        box(327, 21 + 13 * i, 4, 2, colour);
        box(327, 22 + 13 * i, 9, 6, colour);
    }
    // Visible rows of the entries of manyEntries().
    void entryRows(int first, int selected, uint16_t ground) {
        for (int i = 0; i < 15; ++i) {
            const int e = first + i;
            const int y = kTop + 13 * i;
            const bool chosen = e == selected;
            if (chosen) {
                row(1, i, ground);
            }
            text(numbered("e", e), 340, y, chosen ? kBlack : kWhite);
            if (e % 3 == 0) {
                folderSign(i, chosen ? 0 : kMarked);
            } else {
                textRight(kSeconds[e % 4], 624, y, chosen ? kBlack : kGrey);
                textRight(numbered("", 100 + e), 578, y, chosen ? kBlack : kGrey);
            }
        }
    }
    void explorerTitle(const std::string& part, const char* folder) {
        int x = 327;
        text("files explorer", x, 4, kOrange);
        x += width("files explorer") + 8;
        if (!part.empty()) {
            text(part, x, 4, kWhite);
            x += width(part) + 8;
        }
        text(folder, x, 4, kGrey);
        textRight("load", 624, 4, kGrey);
        textRight("frames", 578, 4, kGrey);
    }
    static void editList11() {
        editor->select(0, 11);
        click(kEdit);
        ASSERT_EQ(playlist->editPage, page::TRACKS);
        manyEntries();
        pointAt(kNowhere);
    }
};

TEST_F(Pages, BrowsePage_FromTheTop) {
    manyPlaylists();
    click(leftRow(11));
    pointAt(kNowhere);
    title("playlists", "46 of 50", 7);
    playlistRows(0, 11);
    bar(310, 20, 20, kThumb);  // 194 / 32, at least 20
    title("'list 11' playlist tracks", "", 327);
    trackRows(1, 0, -1, kSelected);
    bar(628, 20, 20, kThumb);
    lines(262, kBrowseMouse, kBrowseKeys, "list 11");
    EXPECT_TRUE(drawnAsWanted(kBrowseButtonsY));
}

TEST_F(Pages, BrowsePage_Scrolled) {
    manyPlaylists();
    click(leftRow(11));
    scrollTo(7, 9);
    click(rightRow(3));
    pointAt(kNowhere);
    title("playlists", "46 of 50", 7);
    playlistRows(7, 11);
    bar(310, 59, 20, kThumb);  // 20 + 7 x 174 / 31
    title("'list 11' playlist tracks", "", 327);
    trackRows(1, 9, 12, kSelected);
    bar(628, 82, 20, kThumb);  // 20 + 9 x 174 / 25
    lines(262, kBrowseMouse, kBrowseKeys, "t12");
    EXPECT_TRUE(drawnAsWanted(kBrowseButtonsY));
}

TEST_F(Pages, BrowsePage_AtTheEndsOfItsLists) {
    manyPlaylists();
    click(leftRow(11));
    scrollTo(31, 25);
    pointAt(kNowhere);
    title("playlists", "46 of 50", 7);
    playlistRows(31, -1);
    bar(310, 194, 20, kThumb);  // 20 + 194 - 20
    title("'list 11' playlist tracks", "", 327);
    trackRows(1, 25, -1, kSelected);
    bar(628, 194, 20, kThumb);
    lines(262, kBrowseMouse, kBrowseKeys, "list 11");
    EXPECT_TRUE(drawnAsWanted(kBrowseButtonsY));
}

TEST_F(Pages, MarksOfMissingFiles_InScrolledLists) {
    manyPlaylists();
    click(leftRow(11));
    playlist->familles[9].nbMissing = 2;
    playlist->familles[11].tracks[10].missing = 1;
    scrollTo(7, 9);
    pointAt(leftRow(3));
    title("playlists", "46 of 50", 7);
    row(0, 3, kGround);  // lit: playlist 10
    playlistRows(7, 11);
    textRight("2 files missing", 282, kTop + 13 * 2, kPink);
    bar(310, 59, 20, kThumb);
    title("'list 11' playlist tracks", "", 327);
    trackRows(1, 9, -1, kSelected);
    textRight("missing", 624, kTop + 13, kPink);
    bar(628, 82, 20, kThumb);
    lines(262, kBrowseMouse, kBrowseKeys, "list 11");
    EXPECT_TRUE(drawnAsWanted(kBrowseButtonsY));
}

TEST_F(Pages, ScrollBar_IsOrangeWhileDragged) {
    manyPlaylists();
    click(leftRow(11));
    press({314, 30});
    // 31 x (110 - 20) / 174 = 16; 20 + 16 x 174 / 31 = 109.
    move({314, 110});
    bar(310, 109, 20, kMarked);
    bar(628, 20, 20, kThumb);
    EXPECT_TRUE(drawnAsWantedIn(310, 18, 10, 198));
    EXPECT_TRUE(drawnAsWantedIn(628, 18, 10, 198));
    release();
    bar(310, 109, 20, kThumb);
    EXPECT_TRUE(drawnAsWantedIn(310, 18, 10, 198));
}

TEST_F(Pages, EmptyBrowsePage_SaysWhatToDo) {
    title("playlists", "0 of 50", 7);
    text("no playlists: press create", 7, kTop, kGrey);
    bar(310, 0, 0, 0);
    bar(628, 0, 0, 0);
    lines(262, kBrowseMouse, kBrowseKeys, "");
    EXPECT_TRUE(drawnAsWanted(kBrowseButtonsY));
    addFamille("A");
    frame();
    clean();
    title("playlists", "1 of 50", 7);
    row(0, 0, kSelected);
    text("A", 7, kTop, kBlack);
    textRight("0", 306, kTop, kBlack);
    bar(310, 0, 0, 0);
    title("'A' playlist tracks", "", 327);
    text("no tracks: press edit", 327, kTop, kGrey);
    bar(628, 0, 0, 0);
    lines(262, kBrowseMouse, kBrowseKeys, "A");
    EXPECT_TRUE(drawnAsWanted(kBrowseButtonsY));
}

TEST_F(Pages, CarriedRowAndNotice_HaveTheirLines) {
    manyPlaylists();
    click(kMove);
    pointAt(kNowhere);
    editor->notice = "as it is";
    lines(262, kBrowseMouse, kCarry, "list 0");
    text("as it is", 4, 296, kOrange);
    EXPECT_TRUE(drawnAsWantedIn(0, 254, 640, 106));
    tap(KEY_Z);
    editList11();
    click(leftRow(0));
    click(kTrackMove);
    pointAt(kNowhere);
    clean();
    lines(228, kTracksMouse, kCarry, "t0");
    EXPECT_TRUE(drawnAsWantedIn(0, 216, 640, 38));
    EXPECT_TRUE(drawnAsWantedIn(0, 282, 640, 78));
}

TEST_F(Pages, TracksPage_FromTheTop) {
    manyPlaylists();
    editList11();
    title("tracks", "40 of 49 in 'list 11'", 7);
    trackRows(0, 0, 0, kSelected);
    bar(310, 20, 20, kThumb);
    explorerTitle("", "videos/");
    entryRows(0, 0, kElsewhere);
    bar(628, 20, 20, kThumb);
    lines(228, kTracksMouse, kTracksKeys, "t0");
    EXPECT_TRUE(drawnAsWanted(kTracksButtonsY));
}

TEST_F(Pages, TracksPage_Scrolled) {
    manyPlaylists();
    editList11();
    scrollTo(8, 9);
    click(leftRow(4));
    click(rightRow(4));
    pointAt(kNowhere);
    playlist->familles[11].tracks[10].missing = 1;
    editor->explorer.found = 120;
    playlist->browseDir = playlist->baseDir + "/videos/live";
    title("tracks", "40 of 49 in 'list 11'", 7);
    trackRows(0, 8, 12, kElsewhere);
    textRight("missing", 306, kTop + 13 * 2, kPink);
    bar(310, 75, 20, kThumb);  // 20 + 8 x 174 / 25
    explorerTitle("first 30 of 120", "videos/live/");
    entryRows(9, 13, kSelected);
    bar(628, 124, 20, kThumb);  // 20 + 9 x 174 / 15
    lines(228, kTracksMouse, kTracksKeys, "e13");
    EXPECT_TRUE(drawnAsWanted(kTracksButtonsY));
}

TEST_F(Pages, ClipsNotYetLookedInto_ShowPoints) {
    manyPlaylists();
    editList11();
    scrollTo(0, 15);
    for (const int entry : {19, 20}) {
        editor->explorer.facts[entry] = {};
    }
    // A frame looks into one clip: there is no file of that name.
    const Picture page = drawn();
    copy(page.get(), wanted.get(), 322, 18 + 13 * 4, 306, 26);
    box(500, 18 + 13 * 4, 124, 26, kPaper);
    textRight("broken", 624, kTop + 13 * 4, kPink);
    textRight("...", 624, kTop + 13 * 5, kGrey);
    EXPECT_TRUE(samePixels(cut(page.get(), 322, 18 + 13 * 4, 306, 26).get(),
                           cut(wanted.get(), 322, 18 + 13 * 4, 306, 26).get()));
}

TEST_F(Pages, EmptyTracksPage_SaysWhatToDo) {
    addFamille("A");
    frame();
    editFirst();
    pointAt(kNowhere);
    title("tracks", "0 of 49 in 'A'", 7);
    text("drag clips from the right to here", 7, kTop, kGrey);
    bar(310, 0, 0, 0);
    explorerTitle("", "videos/");
    text("no clips in the videos folder", 327, kTop, kGrey);
    bar(628, 0, 0, 0);
    lines(228, kTracksMouse, kTracksKeys, "");
    EXPECT_TRUE(drawnAsWanted(kTracksButtonsY));
}

TEST_F(Pages, ClickInAScrolledList_TakesTheRowUnderIt) {
    manyPlaylists();
    scrollTo(7, 0);
    click(leftRow(4));
    EXPECT_EQ(playlist->selRow, 11);
    EXPECT_EQ(playlist->editFamille, 11);
    scrollTo(7, 9);
    click(rightRow(14));
    EXPECT_EQ(playlist->dragSource, page::RIGHT);
    EXPECT_EQ(playlist->selItem, 23);
    editList11();
    scrollTo(8, 15);
    click(leftRow(0));
    EXPECT_EQ(playlist->selRow, 8);
    click(rightRow(14));
    EXPECT_EQ(playlist->selItem, 29);
    EXPECT_EQ(playlist->selRow, 8) << "the tracks' selection stays";
    scrollTo(25, 4);
    click(leftRow(14));
    EXPECT_EQ(playlist->selRow, 39);
    click(rightRow(0));
    EXPECT_EQ(playlist->selItem, 4);
}

}  // namespace
