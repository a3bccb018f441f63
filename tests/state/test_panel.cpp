// The performer's panel: every box, bar and text at its place, on both kinds of output.
#include "state/stage.h"

namespace {

constexpr uint16_t kGround = 0x07E0;  // what the panel is drawn over: full green

// Positions of one output kind, written out.
struct Layout {
    int top, boxWidth, boxHeight, bottomBox, font;
    int buttonX, buttonWidth, buttonHeight, step, rowTop, rowBottom;
};
constexpr Layout kHdmiLayout = {560, 210, 60, 630, 1, 250, 100, 60, 110, 560, 630};
constexpr Layout kCompositeLayout = {325, 120, 50, 390, 0, 155, 50, 50, 55, 325, 390};

// The panel's own boxes as SDL draws them: a surface filled, given an alpha and blitted.
class Expected {
public:
    explicit Expected(const Layout& layout)
        : layout_(layout),
          picture(newPicture(screen[1]->w, screen[1]->h, kGround)),
          scratch_(newPicture(screen[1]->w, screen[1]->h)) {}

    void box(int x, int y, int w, int h, uint16_t colour, int opacity) {
        fill(scratch_.get(), 0, 0, w, h, colour);
        SDL_SetAlpha(scratch_.get(), SDL_SRCALPHA, static_cast<uint8_t>(opacity * 255 / 100));
        SDL_Rect from = {0, 0, static_cast<uint16_t>(w), static_cast<uint16_t>(h)};
        SDL_Rect to = {static_cast<int16_t>(x), static_cast<int16_t>(y), 0, 0};
        SDL_BlitSurface(scratch_.get(), &from, picture.get(), &to);
    }
    void bar(int x, int y, int w) { fill(picture.get(), x, y, w, 4, 0xFFFF); }
    void text(const char* words, int x, int y) {
        lettering_.paint(picture.get(), words, x, y, 0xFFFFFF, layout_.font);
    }
    void frameRate(const char* digits, int y) {
        fill(picture.get(), 30, y, 20, 15, 0);
        lettering_.paint(picture.get(), digits, 34, y + 3, 0xAAAAAA, 0);
    }

private:
    const Layout& layout_;

public:
    Picture picture;

private:
    Picture scratch_;
    Lettering lettering_;
};

constexpr Layout kPalLayout = {421, 120, 50, 486, 0, 155, 50, 50, 55, 421, 486};
constexpr Layout k768Layout = {608, 210, 60, 678, 1, 250, 100, 60, 110, 608, 678};

constexpr uint16_t kBlue = 0x5D9F;  // 0x59B1FF

// Decks and the whole pixels that each has of the layer boxes, 210 and 120 wide.
struct DeckWidth {
    int decks, hdmi, composite;
};
constexpr DeckWidth kDeckWidths[] = {{4, 52, 30}, {5, 42, 24}, {8, 26, 15}, {11, 19, 10},
                                     {16, 13, 7}, {23, 9, 5},  {37, 5, 3},  {50, 4, 2}};

class PanelTest : public StageTest {
protected:
    PanelTest(const Layout& layout, int width, int height)
        : StageTest(width, height), layout_(layout) {
        fillAll(screen[1], kGround);
        pretendClip(0, 40);
        pretendClip(1, 10);
        moxel[0].path = "./videos/live/night.m19";
        moxel[1].path = "./videos/day.m19";
        mix->nbDecks = 3;
        mix->layer[1] = {0, 9, PLAY_FORWARD};
        mix->layer[0] = {1, 9, PLAY_FORWARD};
        mix->showUI = 1;
        fps = 25;
    }

    // Frame rate and both layer boxes, with their bars when there are decks.
    void expectBoxes(Expected& expected, int frameRateY, bool bars = true) {
        expected.frameRate("25", frameRateY);
        const bool topActive = mix->activeLayer == 1;
        expected.box(30, layout_.top, layout_.boxWidth, layout_.boxHeight, topActive ? kBlue : 0,
                     60);
        expected.text("night", 36, layout_.top + 4);
        const int deckWidth = layout_.boxWidth / 3;
        if (bars) {
            expected.bar(30, layout_.top + layout_.boxHeight - 12, layout_.boxWidth * 10 / 40);
            expected.bar(30, layout_.top + layout_.boxHeight - 4, deckWidth);
        }
        expected.box(30, layout_.bottomBox, layout_.boxWidth, layout_.boxHeight,
                     topActive ? 0 : kBlue, 60);
        expected.text("day", 36, layout_.bottomBox + 4);
        if (bars) {
            expected.bar(30, layout_.bottomBox + layout_.boxHeight - 12, layout_.boxWidth);
            expected.bar(30 + deckWidth, layout_.bottomBox + layout_.boxHeight - 4, deckWidth);
        }
    }
    void expectButtons(Expected& expected, int lit) {
        const char* labels[] = {"none", "blend", "add", "multiply", "alpha /", "half half"};
        for (int i = 0; i < 6; ++i) {
            const int x = layout_.buttonX + i * layout_.step;
            expected.box(x, layout_.bottomBox, layout_.buttonWidth, layout_.buttonHeight,
                         i == lit ? kBlue : 0, 60);
            expected.text(labels[i], x + 5, layout_.bottomBox + 5);
            if (i == 4) {
                expected.text("chroma", x + 5, layout_.bottomBox + 25);
            }
        }
    }
    // One row of the grid: slot `lit` highlighted (or -1); slot 3 holds SNOW, on, direction 2.
    void expectRow(Expected& expected, int y, int lit, bool snow) {
        for (int i = 0; i < 9; ++i) {
            const int x = layout_.buttonX + i * layout_.step;
            expected.box(x, y, layout_.buttonWidth, layout_.buttonHeight, i == lit ? kBlue : 0, 60);
            const bool here = snow && i == 3;
            if (here) {
                expected.box(x, y + layout_.buttonHeight - 4, layout_.buttonWidth, 4, 0xFFFF, 100);
            }
            expected.text(here ? "SNOW" : "NONE", x + 5, y + 5);
            expected.text(here ? "3" : "1", x + 5, y + 25);
        }
    }

    void modeButtonsAreDrawn(int frameRateY) {
        const int modes[] = {MODE_TOP,      MODE_BLEND, MODE_ADD,
                             MODE_MULTIPLY, MODE_KEY,   MODE_HALF_HALF};
        for (int button = 0; button < 6; ++button) {
            fillAll(screen[1], kGround);
            mix->mode = modes[button];
            mix->drawUI();
            Expected expected(layout_);
            expectBoxes(expected, frameRateY);
            expectButtons(expected, button);
            EXPECT_TRUE(samePixels(screen[1], expected.picture.get())) << "button " << button;
        }
    }
    void gridIsDrawn(int frameRateY) {
        _filters->slots[1][3] = {FILTER_SNOW, 2, 1, 0};
        _filters->selected = 5;
        mix->filterKeyHeld = 2;
        for (const int active : {1, 0}) {
            fillAll(screen[1], kGround);
            mix->activeLayer = active;
            mix->drawUI();
            Expected expected(layout_);
            expectBoxes(expected, frameRateY);
            expectRow(expected, layout_.rowTop, active == 1 ? 5 : -1, true);
            expectRow(expected, layout_.rowBottom, active == 0 ? 5 : -1, false);
            EXPECT_TRUE(samePixels(screen[1], expected.picture.get())) << "active " << active;
        }
    }

    // Each deck on the top layer, with the deck opposite on the bottom layer.
    void deckBarsAreDrawn(int decks, int width) {
        mix->nbDecks = decks;
        for (int deck = 0; deck < decks; ++deck) {
            SCOPED_TRACE(deck);
            const int opposite = decks - 1 - deck;
            pretendClip(deck, 10);
            pretendClip(opposite, 10);
            mix->layer[1] = {deck, 0, PLAY_FORWARD};
            mix->layer[0] = {opposite, 0, PLAY_FORWARD};
            mix->drawUI();
            expectDeckBar(layout_.top, 30 + deck * width, width);
            expectDeckBar(layout_.bottomBox, 30 + opposite * width, width);
        }
    }
    // White from x on, for `width` pixels of the box's last four rows, and nowhere else in them.
    void expectDeckBar(int box, int x, int width) {
        const int y = box + layout_.boxHeight - 4;
        EXPECT_EQ(countPixels(screen[1], x, y, width, 4, 0xFFFF), width * 4);
        EXPECT_EQ(countPixels(screen[1], 30, y, layout_.boxWidth, 4, 0xFFFF), width * 4);
    }

    const Layout& layout_;
};

class Panel : public PanelTest {
protected:
    Panel() : PanelTest(kHdmiLayout, 1280, 720) {}
};

class CompositePanel : public PanelTest {
protected:
    CompositePanel() : PanelTest(kCompositeLayout, 720, 480) {}
};

// The frame rate stands 15 pixels and the gap above the panel: 560 - 15 - 10 and 325 - 15 - 5.
TEST_F(Panel, ModeButtons_EachLitInItsMode) {
    modeButtonsAreDrawn(535);
}
TEST_F(CompositePanel, ModeButtons_EachLitInItsMode) {
    modeButtonsAreDrawn(305);
}

TEST_F(Panel, FilterLetterHeld_GridOfBothLayersInsteadOfButtons) {
    gridIsDrawn(535);
}
TEST_F(CompositePanel, FilterLetterHeld_GridOfBothLayersInsteadOfButtons) {
    gridIsDrawn(305);
}

// A deck's place is whole pixels times its number, so rounding leaves a rest at the right end.
TEST_F(Panel, DeckBars_FourToFiftyDecks) {
    for (const DeckWidth& each : kDeckWidths) {
        SCOPED_TRACE(each.decks);
        deckBarsAreDrawn(each.decks, each.hdmi);
    }
}
TEST_F(CompositePanel, DeckBars_FourToFiftyDecks) {
    for (const DeckWidth& each : kDeckWidths) {
        SCOPED_TRACE(each.decks);
        deckBarsAreDrawn(each.decks, each.composite);
    }
}

class PalPanel : public PanelTest {
protected:
    PalPanel() : PanelTest(kPalLayout, 720, 576) {}
};

class Panel768 : public PanelTest {
protected:
    Panel768() : PanelTest(k768Layout, 1280, 720) {
        all->applyResolution(1024, 768);
        updateResolution();
        fillAll(screen[1], kGround);
    }
};

// 576 - 155 and 768 - 160; the frame rate 15 pixels and the gap above.
TEST_F(PalPanel, Place_ByTheSurfacesLowerEdge) {
    modeButtonsAreDrawn(401);
    EXPECT_EQ(mix->uiY, 421);
}
TEST_F(Panel768, Place_ByTheSurfacesLowerEdge) {
    modeButtonsAreDrawn(583);
    EXPECT_EQ(mix->uiY, 608);
}

TEST_F(Panel, Hidden_DrawsNothingAtAll) {
    mix->showUI = 0;
    mix->filterKeyHeld = 2;
    mix->drawUI();
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1280, 720, kGround), 1280 * 720);
}

TEST_F(Panel, WithoutDecks_BoxesAndNamesButNoBars) {
    mix->nbDecks = 0;
    mix->drawUI();
    Expected expected(layout_);
    expectBoxes(expected, 535, false);
    expectButtons(expected, 0);
    EXPECT_TRUE(samePixels(screen[1], expected.picture.get()));
}

TEST_F(Panel, BottomLayerActive_ItsBoxIsLit) {
    mix->activeLayer = 0;
    mix->drawUI();
    Expected expected(layout_);
    expectBoxes(expected, 535);
    expectButtons(expected, 0);
    EXPECT_TRUE(samePixels(screen[1], expected.picture.get()));
}

TEST_F(Panel, AnotherValueOfTheHeldLetter_NeitherButtonsNorGrid) {
    mix->filterKeyHeld = 1;
    mix->drawUI();
    Expected expected(layout_);
    expectBoxes(expected, 535);
    EXPECT_TRUE(samePixels(screen[1], expected.picture.get()));
}

TEST_F(Panel, Names_AreTheFileWithoutFolderAndExtension) {
    const char* paths[] = {"night.m19", "c:\\clips\\night.m19", "a\\b/night.m19"};
    for (const char* path : paths) {
        fillAll(screen[1], kGround);
        moxel[0].path = path;
        mix->drawUI();
        Expected expected(layout_);
        expectBoxes(expected, 535);
        expectButtons(expected, 0);
        EXPECT_TRUE(samePixels(screen[1], expected.picture.get())) << path;
    }
}

// The last four characters are the extension, whatever they are.
TEST_F(Panel, NamesOfUpToFourCharacters_ShowNothing) {
    const auto drawn = [&](const char* path) {
        fillAll(screen[1], kGround);
        moxel[0].path = path;
        mix->drawUI();
        const auto* pixels = static_cast<const uint16_t*>(screen[1]->pixels);
        return std::vector<uint16_t>(pixels, pixels + 1280 * 720);
    };
    const std::vector<uint16_t> nameless = drawn("");
    EXPECT_NE(drawn("x.m19"), nameless);
    for (const char* path : {"x", "abc", ".m19", "./videos/abc"}) {
        EXPECT_EQ(drawn(path), nameless) << path;
    }
}

TEST_F(Panel, ShortAndLongPaths_StayInTheirBuffers) {
    for (const size_t length : {size_t{0}, size_t{3}, size_t{4}, size_t{91}, size_t{4000}}) {
        moxel[0].path = std::string(length, 'x');
        mix->drawUI();
    }
    EXPECT_EQ(mix->uiX, 30);
    EXPECT_EQ(mix->uiY, 560);
}

}  // namespace
