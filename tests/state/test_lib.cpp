// Rectangles, translucent boxes and buttons.
#include "draw/lib.h"

#include "state/stage.h"

namespace {

constexpr uint16_t kBefore = 0xFFFF;

class Lib : public StageTest {
protected:
    Lib() {
        fillAll(screen[0], kBefore);
        fillAll(screen[1], kBefore);
    }
    static int alphaOfScratch() { return _lib->scratch->format->alpha; }
};

TEST_F(Lib, C_Rgb565OfAColour) {
    EXPECT_EQ(_lib->C(0x00FFFFFF), 0xFFFF);
    EXPECT_EQ(_lib->C(0x00FFB000), 0xFD80);
    EXPECT_EQ(_lib->C(0x00FE00C3), 0xF818);
    EXPECT_EQ(_lib->C(0), 0);
}

TEST_F(Lib, MinMax_HeldOrWrapped) {
    EXPECT_EQ(_lib->minMax(9, 1, 0, 9, 1), 0);
    EXPECT_EQ(_lib->minMax(9, 1, 0, 9, 0), 9);
    EXPECT_EQ(_lib->minMax(0, -1, 0, 9, 1), 9);
    EXPECT_EQ(_lib->minMax(0, -1, 0, 9, 0), 0);
    EXPECT_EQ(_lib->minMax(4, 3, 0, 9, 0), 7);
    EXPECT_EQ(_lib->minMax(4, 3, 0, 9, 1), 7);
    EXPECT_EQ(_lib->minMax(4, 5, 0, 9, 1), 9);
    EXPECT_EQ(_lib->minMax(4, -4, 0, 9, 1), 0);
    EXPECT_EQ(_lib->minMax(4, 100, 0, 9, 1), 0);
    EXPECT_EQ(_lib->minMax(4, -100, 0, 9, 1), 9);
}

TEST_F(Lib, Scratch_SizeAndFormatOfTheWorkSurface) {
    ASSERT_NE(_lib->scratch, nullptr);
    EXPECT_EQ(_lib->scratch->w, screen[0]->w);
    EXPECT_EQ(_lib->scratch->h, screen[0]->h);
    EXPECT_EQ(_lib->scratch->format->Rmask, screen[0]->format->Rmask);
    EXPECT_EQ(_lib->scratch->format->BitsPerPixel, 16);
}

TEST_F(Lib, quirk_box_fill_and_border_go_to_two_surfaces) {
    _lib->CSS_rect(100, 50, 60, 40, 3, 0x00FF0000, 0x0000FF00, 100);
    const Picture work = newPicture(1280, 720, kBefore);
    fill(work.get(), 100, 50, 60, 40, 0x07E0);
    EXPECT_TRUE(samePixels(screen[0], work.get()));
    const Picture video = newPicture(1280, 720, kBefore);
    fill(video.get(), 100, 50, 60, 3, 0xF800);
    fill(video.get(), 157, 50, 3, 40, 0xF800);
    fill(video.get(), 100, 87, 60, 3, 0xF800);
    fill(video.get(), 100, 50, 3, 40, 0xF800);
    EXPECT_TRUE(samePixels(screen[1], video.get()));
}

TEST_F(Lib, BoxWithoutBorder_LeavesTheVideoSurface) {
    _lib->CSS_rect(100, 50, 60, 40, 0, 0x00FF0000, 0x00000000, 100);
    EXPECT_EQ(countPixels(screen[0], 100, 50, 60, 40, 0), 60 * 40);
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1280, 720, kBefore), 1280 * 720);
}

// The border is opaque whatever the fill's opacity.
TEST_F(Lib, BoxBorder_Opaque) {
    _lib->CSS_rect(100, 50, 60, 40, 1, 0x000000FF, 0x00000000, 10);
    EXPECT_EQ(pixelAt(screen[1], 100, 50), 0x001F);
    EXPECT_EQ(pixelAt(screen[1], 159, 89), 0x001F);
    EXPECT_EQ(alphaOfScratch(), 255);
}

TEST_F(Lib, Opacity_PercentOf255Truncated) {
    const struct {
        int percent, alpha;
    } cases[] = {{0, 0}, {1, 2}, {30, 76}, {50, 127}, {60, 153}, {99, 252}, {100, 255}};
    for (const auto& each : cases) {
        _lib->CSS_rectNoBorder(10, 10, 5, 5, 0x00FF00FF, each.percent);
        EXPECT_EQ(alphaOfScratch(), each.alpha) << each.percent;
        EXPECT_NE(_lib->scratch->flags & SDL_SRCALPHA, 0u);
        _lib->CSS_rect(10, 10, 5, 5, 0, 0, 0x00FF00FF, each.percent);
        EXPECT_EQ(alphaOfScratch(), each.alpha) << each.percent;
    }
}

TEST_F(Lib, Opacity_LowEightBits) {
    _lib->CSS_rectNoBorder(10, 10, 5, 5, 0, 101);  // 257
    EXPECT_EQ(alphaOfScratch(), 1);
}

// Black over white: what is left of the white.
TEST_F(Lib, Opacity_ShowsOnTheSurface) {
    const struct { int percent, red; } cases[] = {{0, 31}, {50, 16}, {60, 12}, {100, 0}};
    for (const auto& each : cases) {
        fillAll(screen[1], kBefore);
        _lib->CSS_rectNoBorder(10, 10, 5, 5, 0, each.percent);
        EXPECT_NEAR(pixelAt(screen[1], 12, 12) >> 11, each.red, 1) << each.percent;
        EXPECT_EQ(pixelAt(screen[1], 9, 10), kBefore);
    }
}

TEST_F(Lib, NoBorder_OnTheVideoSurfaceOnly) {
    _lib->CSS_rectNoBorder(30, 40, 50, 20, 0x00FFB000, 100);
    const Picture expected = newPicture(1280, 720, kBefore);
    fill(expected.get(), 30, 40, 50, 20, 0xFD80);
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
    EXPECT_EQ(countPixels(screen[0], 0, 0, 1280, 720, kBefore), 1280 * 720);
}

TEST_F(Lib, NoBorderNoAlpha_FillsTheVideoSurface) {
    _lib->CSS_rectNoBorderNoAlpha(30, 40, 50, 20, 0x0059B1FF);
    const Picture expected = newPicture(1280, 720, kBefore);
    fill(expected.get(), 30, 40, 50, 20, 0x5D9F);
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
    EXPECT_EQ(countPixels(screen[0], 0, 0, 1280, 720, kBefore), 1280 * 720);
}

TEST_F(Lib, BoxesOverTheEdge_AreCut) {
    _lib->CSS_rectNoBorderNoAlpha(1270, 710, 50, 50, 0);
    _lib->CSS_rectNoBorder(-10, -10, 20, 20, 0, 100);
    _lib->CSS_rect(1270, 710, 50, 50, 2, 0, 0, 100);
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1280, 720, 0), 2 * 100);
    EXPECT_EQ(countPixels(screen[0], 0, 0, 1280, 720, 0), 100);
}

TEST_F(Lib, BoxesWithoutSize_DrawNothing) {
    _lib->CSS_rectNoBorder(30, 40, 0, 20, 0, 100);
    _lib->CSS_rectNoBorder(30, 40, -5, 20, 0, 100);
    _lib->CSS_rectNoBorderNoAlpha(30, 40, 20, -1, 0);
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1280, 720, kBefore), 1280 * 720);
}

TEST_F(Lib, Button_OrangeBox24HighWithBlackText) {
    _lib->CSS_button(200, 100, 90, "SAVE");
    const Picture expected = newPicture(1280, 720, kBefore);
    fill(expected.get(), 200, 100, 90, 24, 0xFD80);
    Lettering().paint(expected.get(), "SAVE", 206, 108, 0x000000, 0);
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
    EXPECT_GT(countPixels(screen[1], 200, 100, 90, 24, 0), 20);
}

TEST_F(Lib, ButtonWithAnyText_SameBox) {
    const char* const texts[] = {"A much longer text than the button is wide", ""};
    for (const char* text : texts) {
        fillAll(screen[1], kBefore);
        _lib->CSS_button(200, 100, 30, text);
        EXPECT_EQ(countPixels(screen[1], 200, 99, 30, 1, kBefore), 30);
        EXPECT_EQ(countPixels(screen[1], 200, 100, 30, 1, 0xFD80), 30);
        EXPECT_EQ(countPixels(screen[1], 200, 123, 30, 1, 0xFD80), 30);
        EXPECT_EQ(countPixels(screen[1], 200, 124, 30, 1, kBefore), 30);
    }
}

TEST_F(Lib, BoxWithoutBorder_ByAScratchSurfaceOf32BitsHasItsColour) {
    SDL_FreeSurface(_lib->scratch);
    _lib->scratch =
        SDL_CreateRGBSurface(SDL_SWSURFACE, 1280, 720, 32, 0xFF0000, 0x00FF00, 0x0000FF, 0);
    _lib->CSS_rectNoBorder(100, 50, 60, 40, 0x00FF0000, 100);
    EXPECT_EQ(countPixels(screen[1], 100, 50, 60, 40, 0xF800), 60 * 40);
}

}  // namespace
