// The list of playlists over the mix, against one composed here from its parts.
#include "ui/overmenu.h"

#include "state/stage.h"

namespace {

constexpr uint16_t kPicture = 0x8410;

class OverMenu : public StageTest {
protected:
    OverMenu() = default;
    OverMenu(int width, int height) : StageTest(width, height) {}

    // Percent 60 is alpha 153, percent 30 alpha 76.
    static void blend(SDL_Surface* to, int x, int y, int w, int h, uint16_t colour, int alpha) {
        const Picture box = newPicture(to->w, to->h);
        fill(box.get(), 0, 0, w, std::min(h, to->h), colour);
        SDL_SetAlpha(box.get(), SDL_SRCALPHA, static_cast<uint8_t>(alpha));
        SDL_Rect from = {0, 0, static_cast<uint16_t>(w), static_cast<uint16_t>(h)};
        SDL_Rect at = {static_cast<int16_t>(x), static_cast<int16_t>(y), 0, 0};
        SDL_BlitSurface(box.get(), &from, to, &at);
    }

    static void row(SDL_Surface* to, int y, const char* name, const char* count, bool selected) {
        if (selected) {
            blend(to, 32, y, 196, 20, 0x9CD3, 76);  // 0x999999
        }
        const int colour = selected ? 0xFFFFFF : 0x707070;
        Lettering lettering;
        lettering.paint(to, name, 34, y, colour, 1);
        lettering.paint(to, count, 206, y, colour, 1);
    }

    static void help(SDL_Surface* to, int y) {
        Lettering lettering;
        const char* text = "X load   Z home";
        fill(to, 31, y, lettering.width(text, 0) + 2, lettering.height(text, 0), 0);
        lettering.paint(to, text, 32, y, 0xAAAAAA, 0);
    }

    static void draw() {
        fillAll(screen[1], kPicture);
        overMenu->drawOverMenu(screen[1]);
    }
};

TEST_F(OverMenu, NoPlaylists_EmptyBoxOf4RowsAndTheHelp) {
    draw();
    const Picture expected = newPicture(1280, 720, kPicture);
    blend(expected.get(), 30, 358, 200, 4, 0, 153);  // (720 - 4) / 2
    help(expected.get(), 338);
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
}

TEST_F(OverMenu, ThreePlaylists_RowsCountsAndTheSelection) {
    addFamille("first", {"a.m19"});
    addFamille("second", std::vector<std::string>(12, "a.m19"));
    addFamille("third");
    for (int selected = 0; selected < 3; ++selected) {
        overMenu->selected = selected;
        draw();
        const Picture expected = newPicture(1280, 720, kPicture);
        blend(expected.get(), 30, 328, 200, 64, 0, 153);  // 3 x 20 + 4; (720 - 64) / 2
        row(expected.get(), 330, "first", "1", selected == 0);
        row(expected.get(), 350, "second", "12", selected == 1);
        row(expected.get(), 370, "third", "0", selected == 2);
        help(expected.get(), 308);
        EXPECT_TRUE(samePixels(screen[1], expected.get())) << selected;
    }
}

TEST_F(OverMenu, WorkSurface_IsNotTouched) {
    addFamille("first");
    fillAll(screen[0], kPicture);
    draw();
    EXPECT_EQ(countPixels(screen[0], 0, 0, 1280, 720, kPicture), 1280 * 720);
}

// 30 pixels from the window's left edge and centred in the window's height, at every resolution.
TEST_F(OverMenu, quirk_over_menu_stands_in_the_window) {
    addFamille("first");
    all->applyResolution(1024, 768);
    updateResolution();
    draw();
    const Picture expected = newPicture(1024, 768, kPicture);
    blend(expected.get(), 30, 372, 200, 24, 0, 153);  // (768 - 24) / 2
    row(expected.get(), 374, "first", "0", true);
    help(expected.get(), 352);
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
}

// 35 rows are 704 high: as many as the window holds; the help text is above it.
TEST_F(OverMenu, AsManyAsFit_AllAreShown) {
    const Picture expected = newPicture(1280, 720, kPicture);
    blend(expected.get(), 30, 8, 200, 704, 0, 153);
    for (int f = 0; f < 35; ++f) {
        const std::string name = numbered("f", f);
        addFamille(name);
        row(expected.get(), 10 + 20 * f, name.c_str(), "0", f == 34);
    }
    help(expected.get(), -12);
    overMenu->selected = 34;
    draw();
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
}

// 33 of them leave room for the help text: (720 - 4 - 40) / 20. The box is 664 rows high.
TEST_F(OverMenu, FiftyPlaylists_TheSelectionIsInTheWindow) {
    for (int f = 0; f < 50; ++f) {
        addFamille(numbered("f", f));
    }
    const struct {
        int selected, first;
    } cases[] = {{0, 0}, {16, 0}, {17, 1}, {30, 14}, {33, 17}, {49, 17}};
    for (const auto& each : cases) {
        overMenu->selected = each.selected;
        draw();
        const Picture expected = newPicture(1280, 720, kPicture);
        blend(expected.get(), 30, 28, 200, 664, 0, 153);
        for (int i = 0; i < 33; ++i) {
            const std::string name = numbered("f", each.first + i);
            row(expected.get(), 30 + 20 * i, name.c_str(), "0", each.first + i == each.selected);
        }
        help(expected.get(), 8);
        EXPECT_TRUE(samePixels(screen[1], expected.get())) << each.selected;
    }
}

// The ground of a longer box would end before the box does.
TEST_F(OverMenu, FiftyPlaylistsAt768Rows_33AsWell) {
    for (int f = 0; f < 50; ++f) {
        addFamille(numbered("f", f));
    }
    all->applyResolution(1024, 768);
    updateResolution();
    overMenu->selected = 49;
    draw();
    const Picture expected = newPicture(1024, 768, kPicture);
    blend(expected.get(), 30, 52, 200, 664, 0, 153);
    for (int i = 0; i < 33; ++i) {
        const std::string name = numbered("f", 17 + i);
        row(expected.get(), 54 + 20 * i, name.c_str(), "0", i == 32);
    }
    help(expected.get(), 32);
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
}

TEST_F(OverMenu, SelectionPastTheList_NoRowIsMarked) {
    addFamille("first");
    overMenu->selected = 1;
    draw();
    const Picture expected = newPicture(1280, 720, kPicture);
    blend(expected.get(), 30, 348, 200, 24, 0, 153);
    row(expected.get(), 350, "first", "0", false);
    help(expected.get(), 328);
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
}

class OverMenuComposite : public OverMenu {
protected:
    OverMenuComposite() : OverMenu(720, 480) {}
};

// (480 - 4 - 40) / 20 = 21 of 24, which would take 484 rows.
TEST_F(OverMenuComposite, MoreThanFit_TheSelectionIsInTheWindow) {
    for (int f = 0; f < 24; ++f) {
        addFamille(numbered("f", f));
    }
    overMenu->selected = 23;
    draw();
    const Picture expected = newPicture(720, 480, kPicture);
    blend(expected.get(), 30, 28, 200, 424, 0, 153);
    for (int i = 0; i < 21; ++i) {
        const std::string name = numbered("f", 3 + i);
        row(expected.get(), 30 + 20 * i, name.c_str(), "0", i == 20);
    }
    help(expected.get(), 8);
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
}

TEST_F(OverMenuComposite, Box_CentredInTheDisplay) {
    addFamille("first");
    addFamille("second");
    draw();
    const Picture expected = newPicture(720, 480, kPicture);
    blend(expected.get(), 30, 218, 200, 44, 0, 153);  // (480 - 44) / 2
    row(expected.get(), 220, "first", "0", true);
    row(expected.get(), 240, "second", "0", false);
    help(expected.get(), 198);
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
}

}  // namespace
