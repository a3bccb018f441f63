// The marks of missing files: when they are found, and that they can be read on every row.
#include <cmath>

#include "state/editor_hands.h"

namespace {

class Marks : public EditorTest {
protected:
    static void clickEditOfTheMenu() {
        setKeys({});
        keys->mouseClick = 1;
        pointAt({420, 120});
        keys->actionsHome();
        keys->mouseClick = 0;
    }
    static void pressEditOfTheMenu() {
        _home->selected = HOME_EDIT;
        setKeys({KEY_X});
        keys->actionsHome();
        setKeys({});
    }
};

TEST_F(Marks, OpeningTheEditor_FindsThemAnew) {
    for (const auto& open : {clickEditOfTheMenu, pressEditOfTheMenu}) {
        playlist->nbFamilles = 0;
        std::filesystem::remove_all("videos");
        placeClip("one-frame-8.m19", "was.m19");
        addFamille("set", {"was.m19", "comes.m19"});
        playlist->scanFamilles();
        std::filesystem::rename("videos/was.m19", "videos/comes.m19");
        all->state = STATE_HOME;
        open();
        ASSERT_EQ(all->state, STATE_PLAYLISTS);
        EXPECT_EQ(playlist->familles[0].tracks[0].missing, 1);
        EXPECT_EQ(playlist->familles[0].tracks[1].missing, 0);
        EXPECT_EQ(playlist->familles[0].nbMissing, 1);
        std::filesystem::remove("videos/comes.m19");
        all->state = STATE_HOME;
        open();
        EXPECT_EQ(playlist->familles[0].nbMissing, 2);
    }
}

// What plays goes on with its own frames after a look into the editor.
TEST_F(Marks, LookingForFiles_LeavesLoadedClipsAlone) {
    placeClip("long-256.m19", "long.m19");
    placeClip("flat-200.m19", "flat.m19");
    writeFile("videos/old.m19", std::string(10, '\x12'));
    addFamille("set", {"flat.m19", "old.m19", "gone.m19", "flat.m19"});
    for (const int slot : {0, 1, 2}) {
        loadClip(slot, "long.m19");
    }
    const int bytes = moxel[0].fileSize;
    playlist->scanFamilles();
    EXPECT_EQ(playlist->familles[0].nbMissing, 2);
    for (const int slot : {0, 1, 2}) {
        EXPECT_EQ(moxel[slot].frameCount, 256) << slot;
        EXPECT_EQ(moxel[slot].height, 8) << slot;
        EXPECT_EQ(moxel[slot].version, 19) << slot;
        EXPECT_EQ(moxel[slot].blockCount, 16) << slot;
        EXPECT_EQ(moxel[slot].fileSize, bytes) << slot;
    }
    EXPECT_EQ(moxel[3].height, 200) << "an empty slot is read through as ever";
}

// Relative luminance of a pixel, as the web's contrast rules count it.
double luminance(uint16_t pixel) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear((pixel >> 11) / 31.0) + 0.7152 * linear((pixel >> 5 & 63) / 63.0) +
           0.0722 * linear((pixel & 31) / 31.0);
}

double contrast(uint16_t one, uint16_t other) {
    const double a = luminance(one), b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

class MarksDrawn : public Marks {
protected:
    // Of the mark in row `row` of a list, against the row's ground at its left edge. `from` is a
    // column in the mark's words, `width` how many of them are looked at.
    static void expectReadable(int row, int from, int width, const char* what) {
        SCOPED_TRACE(what);
        const int top = 180 + 18 + 13 * row;
        const uint16_t ground = pixelAt(screen[0], 320 + from, top);
        int letters = 0;
        for (int y = top + 1; y < top + 12; ++y) {
            for (int x = 320 + from; x < 320 + from + width; ++x) {
                const uint16_t pixel = pixelAt(screen[0], x, y);
                if (pixel != ground) {
                    ++letters;
                    ASSERT_GE(contrast(pixel, ground), 4.5)
                        << std::hex << pixel << " on " << ground;
                }
            }
        }
        EXPECT_GT(letters, 40);
    }
};

// Four tracks that are not there: a plain row, the one under the pointer, the selected one with its
// list in use and with the other list in use.
TEST_F(MarksDrawn, MissingTrack_IsReadableOnEveryRow) {
    writeFile("videos/x.m19", "");
    addFamille("set", {"a", "b", "c", "d"});
    playlist->scanFamilles();
    frame();
    editFirst();
    click(leftRow(1));
    pointAt(leftRow(2));
    draw();
    // "missing" ends 4 pixels before the list's right edge at 310.
    expectReadable(0, 275, 31, "plain");
    expectReadable(1, 275, 31, "selected");
    expectReadable(2, 275, 31, "lit");
    editor->select(page::RIGHT, 0);
    draw();
    expectReadable(1, 275, 31, "selected, the other list in use");
}

TEST_F(MarksDrawn, CountOfMissingFiles_IsReadableOnEveryRow) {
    for (int f = 0; f < 3; ++f) {
        addFamille("set", {"a", "b"});
    }
    playlist->scanFamilles();
    frame();
    click(leftRow(1));
    pointAt(leftRow(2));
    draw();
    // It ends 24 pixels before the column of the track counts does.
    expectReadable(0, 225, 57, "plain");
    expectReadable(1, 225, 57, "selected");
    expectReadable(2, 225, 57, "lit");
}

}  // namespace
