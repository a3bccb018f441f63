// The finished picture: which mix a mode takes, the transitions, the top bar. Layers of one colour
// each; what a mix does to every pair of pixels is tested with its kernels.
#include <algorithm>

#include "state/stage.h"

namespace {

constexpr uint16_t kBottom = 0x2104;  // red 4, green 8, blue 4
constexpr uint16_t kTop = 0x4210;     // red 8, green 16, blue 16
constexpr uint16_t kBefore = 0x1234;

class MixOutput : public StageTest {
protected:
    MixOutput() {
        pretendClip(0, 10);
        setLayers(kBottom, kTop);
        fillAll(screen[1], kBefore);
    }

    static void setLayers(uint16_t bottom, uint16_t top) {
        std::fill_n(moxelTiles16, kFramePixels, bottom);
        std::fill_n(moxelTiles16 + kFramePixels, kFramePixels, top);
    }
    static void render(int mode) {
        mix->mode = mode;
        mix->finRender(0, 10);
    }
    static bool allOf(uint16_t colour) {
        return countPixels(screen[1], 0, 0, 1280, 720, colour) == 1280 * 720;
    }
};

TEST_F(MixOutput, Mode0_TopAloneAndWorkingBottomSlotStale) {
    std::fill_n(finalTilesTracks, kFramePixels, kBefore);
    render(MODE_TOP);
    EXPECT_TRUE(allOf(kTop));
    EXPECT_EQ(finalTilesTracks[0], kBefore);
    EXPECT_EQ(finalTilesTracks[kFramePixels - 1], kBefore);
    EXPECT_EQ(finalTilesTracks[kFramePixels], kTop);
}

TEST_F(MixOutput, Add_SumOfTheChannels) {
    render(MODE_ADD);
    EXPECT_TRUE(allOf(0x6314));  // 12, 24, 20
}

TEST_F(MixOutput, Blend_HalfOfEach) {
    render(MODE_BLEND);
    EXPECT_TRUE(allOf((6 << 11) | (12 << 5) | 10));
}

TEST_F(MixOutput, Multiply_ProductOfTheChannels) {
    render(MODE_MULTIPLY);
    // 4 x 8 / 31 = 1, 8 x 16 / 63 = 2, 4 x 16 / 31 = 2
    EXPECT_TRUE(allOf((1 << 11) | (2 << 5) | 2));
}

TEST_F(MixOutput, KeyWithoutAlpha_BlackOfTheTopLetsTheBottomThrough) {
    uint16_t* top = moxelTiles16 + kFramePixels;
    std::fill_n(top, kFramePixels / 2, uint16_t{0});
    render(MODE_KEY);
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1280, 360, kBottom), 1280 * 360);
    EXPECT_EQ(countPixels(screen[1], 0, 360, 1280, 360, kTop), 1280 * 360);
}

TEST_F(MixOutput, KeyWithAlpha_OfTheTopClip) {
    moxel[0].alpha = 1;
    std::fill_n(moxelAlpha16, kFramePixels / 2, uint8_t{15});
    setLayers(kBottom, 0);
    render(MODE_KEY);
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1280, 360, 0), 1280 * 360);
    EXPECT_EQ(countPixels(screen[1], 0, 360, 1280, 360, kBottom), 1280 * 360);
}

TEST_F(MixOutput, HalfHalf_TopToTheLeft) {
    render(MODE_HALF_HALF);
    EXPECT_EQ(countPixels(screen[1], 0, 0, 640, 720, kTop), 640 * 720);
    EXPECT_EQ(countPixels(screen[1], 640, 0, 640, 720, kBottom), 640 * 720);
}

TEST_F(MixOutput, Mode5_SurfaceStaysButForTheTopBar) {
    render(MODE_NOTHING);
    EXPECT_TRUE(allOf(kBefore));
    mix->topBar = 1;
    mix->finRender(5, 10);
    const Picture expected = newPicture(1280, 720, kBefore);
    fill(expected.get(), 0, 5, 640, 1, 0xFFFF);
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
}

TEST_F(MixOutput, LayersThemselves_StayAsTheyAre) {
    mix->fade = 15;
    for (const int mode : {0, 1, 2, 3, 4, 5, 6}) {
        render(mode);
        EXPECT_EQ(std::count(moxelTiles16, moxelTiles16 + kFramePixels, kBottom), kFramePixels);
        EXPECT_EQ(std::count(moxelTiles16 + kFramePixels, moxelTiles16 + 2 * kFramePixels, kTop),
                  kFramePixels);
    }
}

TEST_F(MixOutput, Mode0_FadeAndFlashShow) {
    mix->fade = 15;
    render(MODE_TOP);
    EXPECT_TRUE(allOf(0));
    mix->fade = 0;
    mix->flash = 15;
    setLayers(kBottom, 0);
    render(MODE_TOP);
    EXPECT_TRUE(allOf(0xFF9F));  // red 31, green 126 x 15 / 31 = 60, blue 31
}

// The fade comes first: a full flash covers a full fade.
TEST_F(MixOutput, Mode0_FlashOverFade) {
    mix->fade = 15;
    mix->flash = 15;
    render(MODE_TOP);
    EXPECT_TRUE(allOf(0xFF9F));
}

TEST_F(MixOutput, quirk_fade_and_flash_show_in_mode_0_only) {
    for (const int mode : {1, 2, 3, 4, 6}) {
        mix->fade = mix->flash = 0;
        render(mode);
        const Picture plain = copyOf(screen[1]);
        mix->fade = 15;
        render(mode);
        EXPECT_TRUE(samePixels(screen[1], plain.get())) << mode;
        EXPECT_EQ(finalTilesTracks[0], 0) << mode;  // where it went
        mix->flash = 15;
        render(mode);
        EXPECT_TRUE(samePixels(screen[1], plain.get())) << mode;
        EXPECT_EQ(finalTilesTracks[0], 0xFF9F) << mode;
        EXPECT_EQ(finalTilesTracks[kFramePixels], kTop) << mode;
    }
}

TEST_F(MixOutput, TopBar_PositionOfLength) {
    mix->topBar = 1;
    const struct {
        int position, length, width;
    } cases[] = {{0, 10, 0},  {1, 10, 128}, {9, 10, 1152},
                 {1, 3, 426}, {2, 3, 853},  {255, 256, 1275}};
    for (const auto& each : cases) {
        mix->mode = MODE_TOP;
        mix->finRender(each.position, each.length);
        const Picture expected = newPicture(1280, 720, kTop);
        fill(expected.get(), 0, 5, each.width, 1, 0xFFFF);
        EXPECT_TRUE(samePixels(screen[1], expected.get())) << each.position << "/" << each.length;
    }
}

TEST_F(MixOutput, TopBarOfAClipWithoutFrames_IsNotDrawn) {
    mix->topBar = 1;
    setLayers(kBottom, kTop);
    mix->mode = MODE_TOP;
    mix->finRender(3, 0);
    EXPECT_TRUE(allOf(kTop));
}

TEST_F(MixOutput, WithoutThePreference_NoTopBar) {
    mix->finRender(9, 10);
    EXPECT_TRUE(allOf(kTop));
}

// Both layers on one deck: the bottom slot is not drawn again and shows what it held.
TEST_F(MixOutput, SameDeckInBlend_BottomIsFrozen) {
    placeClip("runs-360.m19", "runs.m19");
    loadClip(0, "runs.m19");
    playlist->loadSlot = 1;
    all->state = STATE_MIX;
    all->subState = SUB_PERFORMING;
    mix->mode = MODE_BLEND;
    setLayers(0xFFFF, 0);
    for (int frame = 0; frame < 5; ++frame) {
        runFrame();
        EXPECT_EQ(std::count(moxelTiles16, moxelTiles16 + kFramePixels, 0xFFFF), kFramePixels);
    }
    EXPECT_EQ(mix->layer[1].frame, 5);
}

class MixOutputComposite : public StageTest {
protected:
    MixOutputComposite() : StageTest(720, 480) {}
};

// 1:1 in the middle, at (40, 60), black around it every time.
TEST_F(MixOutputComposite, EveryMode_CentredOnBlack) {
    pretendClip(0, 10);
    std::fill_n(moxelTiles16, 2 * kFramePixels, uint16_t{0xFFFF});
    const Picture expected = newPicture(720, 480);
    fill(expected.get(), 40, 60, 640, 360, 0xFFFF);
    for (const int mode : {0, 1, 3, 4, 6}) {
        fillAll(screen[1], kBefore);
        mix->mode = mode;
        mix->finRender(0, 10);
        EXPECT_TRUE(samePixels(screen[1], expected.get())) << mode;
    }
}

TEST_F(MixOutputComposite, TopBar_OfTheDisplaysWidth) {
    pretendClip(0, 10);
    mix->topBar = 1;
    mix->finRender(5, 10);
    const Picture expected = newPicture(720, 480);
    fill(expected.get(), 0, 5, 360, 1, 0xFFFF);
    EXPECT_TRUE(samePixels(screen[1], expected.get()));
}

}  // namespace
