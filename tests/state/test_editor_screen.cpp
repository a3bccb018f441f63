// What the playlist screen draws.
#include "moxel/moxel.h"
#include "state/editor_page.h"

namespace {

constexpr uint16_t kPaper = 0x18C3;   // 0x181818
constexpr uint16_t kThumb = 0x8C51;   // 0x888888
constexpr uint16_t kOrange = 0xFD80;  // 0xFFB000
constexpr uint16_t kWhite = 0xFFFF;
constexpr uint16_t kPink = 0xF818;      // 0xFE00C3
constexpr uint16_t kDeepPink = 0xB011;  // 0xB00088, on the selected row
constexpr int kLeft = 320;              // of the picture in the window
constexpr int kTop = 180;

class EditorScreen : public EditorTest {
protected:
    EditorScreen() = default;
    EditorScreen(int width, int height) : EditorTest(width, height) {}

    static int count(int x, int y, int w, int h, uint16_t colour) {
        return countPixels(screen[0], kLeft + x, kTop + y, w, h, colour);
    }
    static uint16_t at(int x, int y) { return pixelAt(screen[0], kLeft + x, kTop + y); }
    // Pixels of the place that are not paper.
    static int drawnIn(int x, int y, int w, int h) { return w * h - count(x, y, w, h, kPaper); }
    static void longNames() {
        for (int f = 0; f < 50; ++f) {
            addFamille(std::string(92, 'W'), std::vector<std::string>(49, std::string(91, 'W')));
            playlist->familles[f].nbMissing = 49;
            playlist->familles[f].tracks[1].missing = 1;
        }
        frame();
    }
};

// The bar of a list of `count` rows at `pos`, on a paper of another colour.
Picture expectedBar(int x, int top, int thumb, uint16_t colour) {
    Picture wanted = newPicture(640, 360, 0x1111);
    fill(wanted.get(), x, 19, 10, 196, kPaper);
    sheet::bar(wanted.get(), x, top, thumb, colour);
    return wanted;
}

TEST_F(EditorScreen, ScrollBars_OfEveryLength) {
    Picture drawn = newPicture(640, 360, 0x1111);
    for (const int rows : {14, 15}) {
        playlist->initScroll(0, rows);
        playlist->drawScroll(drawn.get(), 0);
        EXPECT_TRUE(samePixels(drawn.get(), expectedBar(310, 0, 0, 0).get())) << rows;
    }
    playlist->initScroll(0, 16);
    playlist->drawScroll(drawn.get(), 0);
    EXPECT_TRUE(samePixels(drawn.get(), expectedBar(310, 20, 97, kThumb).get()));
    playlist->scroll[0].pos = 1;
    playlist->scroll[0].active = 1;
    playlist->drawScroll(drawn.get(), 0);
    EXPECT_TRUE(samePixels(drawn.get(), expectedBar(310, 117, 97, kOrange).get()));
    // 20 + 100 x 174 / 185 = 114.
    drawn = newPicture(640, 360, 0x1111);
    playlist->initScroll(1, 200);
    playlist->scroll[1].pos = 100;
    playlist->drawScroll(drawn.get(), 1);
    EXPECT_TRUE(samePixels(drawn.get(), expectedBar(628, 114, 20, kThumb).get()));
}

TEST_F(EditorScreen, DragLabel_HasAMarkerBelow16Only) {
    addFamille("A", {"a0.m19", "a1.m19"});
    for (const int dropRow : {0, 7, 15, 16, 99}) {
        playlist->dropRow = dropRow;
        Picture drawn = newPicture(640, 360);
        playlist->drawDrag(drawn.get(), 200, 100);
        Picture wanted = newPicture(640, 360);
        if (dropRow < 16) {
            fill(wanted.get(), 2, 18 + 13 * dropRow, 310, 2, kOrange);
        }
        Lettering lettering;
        fill(wanted.get(), 199, 100, lettering.width("A", 0) + 2, lettering.height("A", 0), 0x5D9F);
        lettering.paint(wanted.get(), "A", 200, 100, 0xFFFFFF, 0);
        EXPECT_TRUE(samePixels(drawn.get(), wanted.get())) << dropRow;
    }
}

TEST_F(EditorScreen, DragLabel_NamesTheItemOfPageAndSource) {
    addFamille("A", {"a0.m19", "a1.m19"});
    addFamille("B", {"b0.m19", "b1.m19"});
    playlist->editFamille = 0;
    playlist->entries[1] = "file.m19";
    playlist->nbEntries = 2;
    playlist->dropRow = 16;
    playlist->selRow = 1;
    playlist->selItem = 1;
    struct Case {
        int shown, source;
        const char* label;
    };
    for (const Case& wanted : {Case{0, 0, "B"}, Case{0, 1, "b1.m19"}, Case{2, 0, "a1.m19"},
                               Case{2, 1, "file.m19"}, Case{1, 0, ""}, Case{0, 2, ""}}) {
        playlist->editPage = wanted.shown;
        playlist->dragSource = wanted.source;
        Picture drawn = newPicture(640, 360);
        playlist->drawDrag(drawn.get(), 50, 60);
        Picture expected = newPicture(640, 360);
        if (*wanted.label != '\0') {
            ttf->texteFilled(expected.get(), wanted.label, 50, 60, 0xFFFFFF, 0, 0x59B1FF);
        }
        EXPECT_TRUE(samePixels(drawn.get(), expected.get())) << wanted.label;
    }
}

TEST_F(EditorScreen, DragLabelOfRowsThatDoNotExist_DrawsNothing) {
    playlist->dropRow = 16;
    for (const int row : {-1, 60, 4000}) {
        for (const int shown : {0, 2}) {
            for (const int source : {0, 1}) {
                playlist->editPage = shown;
                playlist->dragSource = source;
                playlist->selRow = playlist->selItem = row;
                Picture drawn = newPicture(640, 360);
                playlist->drawDrag(drawn.get(), 50, 60);
                EXPECT_TRUE(samePixels(drawn.get(), newPicture(640, 360).get()));
            }
        }
    }
}

TEST_F(EditorScreen, Page_StandsInTheMiddleAndLeavesTheRest) {
    fillAll(screen[0], 0x1234);
    draw();
    EXPECT_EQ(pixelAt(screen[0], 319, 180), 0x1234);
    EXPECT_EQ(pixelAt(screen[0], 320, 180), kPaper);
    EXPECT_EQ(pixelAt(screen[0], 959, 539), kPaper);
    EXPECT_EQ(pixelAt(screen[0], 960, 539), 0x1234);
    EXPECT_EQ(pixelAt(screen[0], 959, 540), 0x1234);
}

TEST_F(EditorScreen, UnknownPage_IsPaper) {
    playlist->editPage = 3;
    draw();
    EXPECT_EQ(count(0, 0, 640, 360, kPaper), 640 * 360);
}

TEST_F(EditorScreen, SelectedRow_IsInvertedAndTheOneUnderThePointerLit) {
    addFamille("A", {"a0.m19"});
    addFamille("B");
    addFamille("C");
    frame();
    click(leftRow(1));
    pointAt(leftRow(2));
    draw();
    EXPECT_EQ(at(2, 31), kWhite);
    EXPECT_EQ(at(309, 43), kWhite);
    EXPECT_EQ(at(2, 30), kPaper);
    EXPECT_EQ(at(2, 44), 0x39C7) << "lit, 0x3A3A3A";
    EXPECT_EQ(at(2, 18), kPaper);
    pointAt(leftRow(7));
    draw();
    EXPECT_EQ(at(2, 44), kPaper);
}

TEST_F(EditorScreen, MissingFiles_AreNotedInPink) {
    addFamille("whole", {"a.m19"});
    addFamille("one gone", {"a.m19", "b.m19"});
    playlist->familles[1].nbMissing = 1;
    playlist->familles[1].tracks[1].missing = 1;
    frame();
    editor->select(0, 1);
    draw();
    EXPECT_EQ(count(2, 18, 308, 13, kPink), 0);
    EXPECT_GT(count(2, 31, 308, 13, kDeepPink), 50);
    EXPECT_EQ(count(322, 18, 306, 13, kPink), 0);
    EXPECT_GT(count(322, 31, 306, 13, kPink), 20);
}

// The texts, as the font renders them, stand in the picture.
TEST_F(EditorScreen, MissingNote_IsSingularForOne) {
    addFamille("x", {"a.m19"});
    frame();
    const int end = 2 + 308 - 4 - 24;
    Lettering lettering;
    for (const int missing : {1, 2}) {
        playlist->familles[0].nbMissing = missing;
        playlist->familles[0].name = "";
        draw();
        const char* words = missing == 1 ? "1 file missing" : "2 files missing";
        Picture wanted = copyOf(screen[0]);
        const int width = lettering.width(words, 0);
        fill(wanted.get(), kLeft + end - 120, kTop + 18, 120, 13, kWhite);
        lettering.paint(wanted.get(), words, kLeft + end - width, kTop + 20, 0xB00088, 0);
        EXPECT_TRUE(samePixels(screen[0], wanted.get()));
    }
}

TEST_F(EditorScreen, LongNamesAndFullLists_StayInTheirColumns) {
    longNames();
    for (const int shown : {page::BROWSE, page::TRACKS}) {
        playlist->editPage = shown;
        for (int entry = 0; entry < 100; ++entry) {
            playlist->entries[entry] = std::string(250, 'W');
            playlist->entryIsDir[entry] = entry % 2;
        }
        playlist->nbEntries = 100;
        frame();
        draw();
        EXPECT_EQ(drawnIn(0, 0, 2, 360), 0) << "left of the left list";
        EXPECT_EQ(drawnIn(310, 0, 12, 19), 0) << "between the titles";
        EXPECT_EQ(drawnIn(320, 18, 2, 195), 0) << "between the lists";
        EXPECT_EQ(drawnIn(628, 0, 12, 19), 0) << "right of the titles";
        EXPECT_EQ(drawnIn(638, 0, 2, 228), 0) << "right of the right list";
        EXPECT_EQ(drawnIn(0, 215, 640, 13), 0) << "below the lists";
        EXPECT_EQ(drawnIn(636, 355, 4, 5), 0);
    }
}

TEST_F(EditorScreen, NamesOfAnyBytes_AreDrawn) {
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte) {
        bytes += static_cast<char>(byte);
    }
    for (size_t from = 0; from < 255; from += 15) {
        addFamille(bytes.substr(from, 15), {bytes.substr(from, 15), std::string(91, '\xFF')});
    }
    frame();
    for (int f = 0; f < playlist->nbFamilles; ++f) {
        editor->select(0, f);
        draw();
        editor->useButton(page::EDIT);
        draw();
        editor->goBack();
    }
    EXPECT_EQ(playlist->editPage, page::BROWSE);
}

TEST_F(EditorScreen, ButtonsWithoutUse_AreDim) {
    draw();
    EXPECT_GT(count(2, 228, 56, 24, kOrange), 500) << "create";
    EXPECT_EQ(count(66, 228, 184, 24, kOrange), 0) << "edit, preview, delete";
    EXPECT_GT(count(574, 228, 64, 24, kOrange), 500) << "back";
    addFamille("A", {"a.m19"});
    frame();
    draw();
    EXPECT_GT(count(66, 228, 56, 24, kOrange), 500);
    EXPECT_EQ(count(130, 228, 56, 24, kOrange), 0) << "a playlist has no preview";
    EXPECT_GT(count(194, 228, 56, 24, kOrange), 500);
    click(rightRow(0));
    draw();
    EXPECT_GT(count(130, 228, 56, 24, kOrange), 500);
    while (playlist->nbFamilles < 50) {
        addFamille("more");
    }
    draw();
    EXPECT_EQ(count(2, 228, 56, 24, kOrange), 0) << "no room for a 51st";
}

TEST_F(EditorScreen, WithoutAnAtlas_TheButtonsAreStillThere) {
    SDL_FreeSurface(_textureUI);
    _textureUI = nullptr;
    addFamille("A");
    frame();
    draw();
    EXPECT_GT(count(2, 228, 56, 24, kOrange), 500);
    EXPECT_GT(count(194, 228, 56, 24, kOrange), 500);
}

TEST_F(EditorScreen, NewPlaylistPage_LightsTheKeyAndBlinksTheCaret) {
    click(kCreate);
    click(keyCell(5));
    move(keyCell(13));
    draw();
    EXPECT_EQ(at(10 + 90 + 1, 52 + 30 + 1), kOrange) << "key 13";
    EXPECT_EQ(at(10 + 60 + 1, 52 + 30 + 1), 0x3186) << "key 12, 0x333333";
    tempsActuel = 5000;
    draw();
    EXPECT_GT(count(11, 24, 60, 18, kOrange), 30) << "2 x 18 pixels";
    tempsActuel = 5500;
    draw();
    EXPECT_EQ(count(11, 24, 60, 18, kOrange), 0);
}

TEST_F(EditorScreen, Questions_StandBelowTheButtons) {
    addFamille("A", {"a.m19"});
    frame();
    click(kDelete);
    draw();
    EXPECT_GT(count(10, 310, 56, 24, kOrange), 500);
    EXPECT_GT(count(74, 310, 56, 24, kOrange), 500);
    EXPECT_EQ(count(2, 228, 636, 24, kOrange), 0) << "nothing else can be pressed";
}

class CompositeEditor : public EditorTest {
protected:
    CompositeEditor() : EditorTest(720, 576) {}
};

TEST_F(CompositeEditor, Page_IsCentred) {
    fillAll(screen[0], 0x1234);
    draw();
    EXPECT_EQ(pixelAt(screen[0], 39, 108), 0x1234);
    EXPECT_EQ(pixelAt(screen[0], 40, 108), kPaper);
    EXPECT_EQ(pixelAt(screen[0], 679, 467), kPaper);
    EXPECT_EQ(pixelAt(screen[0], 680, 467), 0x1234);
}

}  // namespace
