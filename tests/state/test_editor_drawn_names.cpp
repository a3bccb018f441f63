// The name page with its keys, the questions, and the label of what is dragged: every text and
// place.
#include "state/editor_page.h"

namespace {

using namespace sheet;

constexpr int kNameButtonsY = 256;
constexpr uint16_t kCap = 0x3186;     // 0x333333
constexpr uint16_t kDimCap = 0x2104;  // 0x222222
constexpr const char* kCaps[] = {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j",
                                 "k", "l", "m", "n", "o", "p", "q", "r", "s", "t",
                                 "u", "v", "w", "x", "y", "z", "_", "-", "+", "*",
                                 "0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};

class NamePage : public PageTest {
protected:
    // A cap of 28 x 28 in a cell of 30 x 30, its letter in the middle.
    void cap(int key, uint16_t colour, int ink) {
        const int x = 10 + 30 * (key % 10);
        const int y = 52 + 30 * (key / 10);
        box(x + 1, y + 1, 28, 28, colour);
        if (key < 40) {
            text(kCaps[key], x + (30 - width(kCaps[key], 1)) / 2 + 1, y + 5, ink, 1);
        } else {
            const char* words = key == 40 ? "Del" : "OK";
            text(words, x + (30 - width(words)) / 2, y + 10, ink);
        }
    }
    // All 42, those of the signs alike and the two others.
    void caps(bool signs, bool others) {
        for (int key = 0; key < 42; ++key) {
            const bool usable = key < 40 ? signs : others;
            cap(key, usable ? kCap : kDimCap, usable ? kWhite : kGrey);
        }
    }
    void headAndHelp(const char* heading, const char* count, const char* name) {
        text(heading, 11, 4, kOrange);
        textRight(count, 307, 4, kGrey);
        text(name, 11, 24, kWhite, 1);
        lines(228, "Type its name, or click the letters, or choose them with the arrows; then OK",
              "Space or the pad : the lit letter      Backspace : delete      Return : OK      "
              "Escape : back, Z writes a z",
              "");
    }
    static void write(const std::string& name) {
        click(kCreate);
        tempsActuel += 2000;
        frame();
        type(name);
        pointAt(kNowhere);
        frame();
        tempsActuel = 90500;  // the caret is away
    }
};

TEST_F(NamePage, Empty_DelAndOkAreDim) {
    write("");
    headAndHelp("create a new playlist", "0 / 20", "");
    caps(true, false);
    EXPECT_TRUE(drawnAsWanted(kNameButtonsY));
    tempsActuel = 90499;
    box(12, 24, 2, 18, kMarked);
    EXPECT_TRUE(drawnAsWanted(kNameButtonsY)) << "with the caret";
}

TEST_F(NamePage, HalfWritten_TheKeyUnderThePointerIsLit) {
    write("abc_12");
    headAndHelp("create a new playlist", "6 / 20", "abc_12");
    caps(true, true);
    EXPECT_TRUE(drawnAsWanted(kNameButtonsY));
    for (const int key : {0, 9, 13, 39, 40, 41}) {
        move(keyCell(key));
        tempsActuel = 90500;
        caps(true, true);
        cap(key, kMarked, kBlack);
        EXPECT_TRUE(drawnAsWanted(kNameButtonsY)) << key;
    }
    editor->enterButtons();
    caps(true, true);
    EXPECT_TRUE(drawnAsWanted(kNameButtonsY)) << "the keys are on a button";
    tempsActuel = 90000;
    box(11 + width("abc_12", 1) + 1, 24, 2, 18, kMarked);
    EXPECT_TRUE(drawnAsWanted(kNameButtonsY)) << "with the caret";
}

TEST_F(NamePage, Full_TheLettersAreDim) {
    write("abcdefghijklmnopqrst");
    headAndHelp("create a new playlist", "20 / 20", "abcdefghijklmnopqrst");
    caps(false, true);
    EXPECT_TRUE(drawnAsWanted(kNameButtonsY));
    move(keyCell(13));
    tempsActuel = 90500;
    EXPECT_TRUE(drawnAsWanted(kNameButtonsY)) << "what cannot be used is not lit";
}

TEST_F(NamePage, Renaming_NamesTheOldOne) {
    addFamille("old");
    frame();
    click(kRename);
    pointAt(kNowhere);
    frame();
    tempsActuel = 90500;
    headAndHelp("rename 'old'", "3 / 20", "old");
    caps(true, true);
    EXPECT_TRUE(drawnAsWanted(kNameButtonsY));
}

TEST_F(NamePage, OldNameTooLong_ShowsItsEnd) {
    addFamille(std::string(60, 'm') + "end");
    frame();
    click(kRename);
    pointAt(kNowhere);
    frame();
    tempsActuel = 90500;
    text(std::string(48, 'm') + "end", 11, 24, kWhite, 1);
    // There is room for 610 pixels.
    EXPECT_LE(width(std::string(48, 'm') + "end", 1), 610);
    EXPECT_GT(width(std::string(49, 'm') + "end", 1), 610);
    EXPECT_TRUE(drawnAsWantedIn(0, 20, 640, 30));
}

class Questions : public PageTest {
protected:
    void bar(const char* question, const char* subject, const char* keysHelp) {
        box(2, 292, 636, 48, kGround);
        box(2, 292, 636, 1, kMarked);
        text(question, 10, 297, kWhite);
        text(subject, 10 + width(question) + 8, 297, kOrange);
        text(keysHelp, 144, 318, kGrey);
    }
    // The part of the page below its buttons and help, without the two answers.
    testing::AssertionResult asked() {
        pointAt(kNowhere);
        copy(drawn().get(), wanted.get(), 8, 308, 124, 28);
        return drawnAsWantedIn(0, 290, 640, 70);
    }
};

TEST_F(Questions, Delete_NamesThePlaylistAndItsTracks) {
    addFamille("A", {"a", "b"});
    addFamille("B", {"a"});
    frame();
    click(kDelete);
    bar("delete this playlist ?", "2 tracks in 'A'",
        "arrows : choose        X : answer        Z : no");
    EXPECT_TRUE(asked());
    tap(KEY_Z);
    click(leftRow(1));
    click(kDelete);
    bar("delete this playlist ?", "1 track in 'B'",
        "arrows : choose        X : answer        Z : no");
    EXPECT_TRUE(asked());
}

TEST_F(Questions, Save_NamesThePlaylistAsItIsNow) {
    addFamille("A", {"a", "b", "c"});
    frame();
    editFirst();
    click(leftRow(0));
    click(kTrackDelete);
    click(kTracksBack);
    bar("save changes ?", "2 tracks in 'A'",
        "arrows : choose        X : answer        Z : go on editing");
    EXPECT_TRUE(asked());
}

TEST_F(Questions, Discard_NamesWhatWasTyped) {
    click(kCreate);
    tempsActuel += 2000;
    frame();
    type("ab");
    click(kCancel);
    bar("discard this name ?", "'ab'",
        "arrows : choose        X : answer        Z, Escape : go on writing");
    EXPECT_TRUE(asked());
}

class DragLabel : public PageTest {
protected:
    DragLabel() {
        writeFile("videos/file.m19", "");
        writeFile("videos/other.m19", "");
        std::filesystem::create_directories("videos/folder");
        addFamille("A", {"a0.m19", "a1.m19"});
        addFamille("B", {"b0.m19", "b1.m19"});
        addFamille("C");
        frame();
    }
    // White on blue, one pixel of blue at either side.
    void label(const char* words, int x, int y) {
        box(x - 1, y, width(words) + 2, letters.height(words, 0), 0x5D9F);  // 0x59B1FF
        text(words, x, y, kWhite);
    }
    // Held below the page's parts, where nothing but paper is; then in the left list, before `row`.
    void expectLabel(Spot from, const char* words, int row) {
        SCOPED_TRACE(words);
        tempsActuel += 2000;
        press(from);
        move({300, 310});
        clean();
        label(words, 300, 310);
        EXPECT_TRUE(drawnAsWantedIn(0, 290, 640, 54));
        const int y = 18 + 13 * row + 6;
        move({201, y});
        clean();
        label(words, 201, y);
        EXPECT_TRUE(drawnAsWantedIn(200, y, width(words) + 2, letters.height(words, 0)));
        EXPECT_EQ(marked(13 * row + 18), 310);
        EXPECT_EQ(marked(13 * row + 19), 310);
        EXPECT_EQ(marked(13 * row + 17), 0);
        EXPECT_EQ(marked(13 * row + 20), 0);
        move({300, 310});
        release();
    }
    // Orange pixels of a line of the page's left half; -1 when one is not at x 2 to 311.
    static int marked(int y) {
        const Picture page = drawn();
        const int inside = countPixels(page.get(), 2, y, 310, 1, kMarked);
        return inside == countPixels(page.get(), 0, y, 320, 1, kMarked) ? inside : -1;
    }
};

TEST_F(DragLabel, BrowsePage_NamesThePlaylist) {
    expectLabel(leftRow(1), "B", 2);
    expectLabel(leftRow(0), "A", 3);
}

TEST_F(DragLabel, TrackOfTheBrowsePage_HasNoMarker) {
    press(rightRow(1));
    move({300, 310});
    label("a1.m19", 300, 310);
    EXPECT_TRUE(drawnAsWantedIn(0, 290, 640, 54));
    move({201, 63});
    label("a1.m19", 201, 63);
    EXPECT_TRUE(drawnAsWantedIn(200, 63, width("a1.m19") + 2, letters.height("a1.m19", 0)));
    EXPECT_EQ(marked(57), 0);
}

TEST_F(DragLabel, PageOfOnePlaylist_NamesTheTrackOrTheFile) {
    editFirst();
    expectLabel(leftRow(1), "a1.m19", 1);
    expectLabel(rightRow(rowOfEntry("file.m19")), "file.m19", 2);
    expectLabel(rightRow(rowOfEntry("other.m19")), "other.m19", 0);
}

TEST_F(DragLabel, Folder_IsNamedWithoutAMarker) {
    editFirst();
    tempsActuel += 2000;
    press(rightRow(rowOfEntry("folder")));
    move({300, 310});
    label("folder", 300, 310);
    EXPECT_TRUE(drawnAsWantedIn(0, 290, 640, 54));
    move({201, 50});
    EXPECT_EQ(marked(44), 0);
}

TEST_F(DragLabel, RowsOfScrolledLists_AreNamed) {
    for (int f = 3; f < 40; ++f) {
        addFamille(numbered("list ", f));
    }
    frame();
    playlist->scroll[0].pos = 9;
    expectLabel(leftRow(5), "list 14", 2);
    std::vector<std::string> tracks;
    for (int t = 0; t < 30; ++t) {
        tracks.push_back(numbered("t", t));
    }
    editor->select(0, addFamille("last", tracks));
    frame();
    playlist->scroll[1].pos = 10;
    press(rightRow(6));
    move({300, 310});
    clean();
    label("t16", 300, 310);
    EXPECT_TRUE(drawnAsWantedIn(0, 290, 640, 54));
}

}  // namespace
