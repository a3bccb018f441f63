// A clip draws the tiles that differ from the frame which it drew last, on whichever layer that
// was. What then stands of the picture before, for how long, and with which frame it goes.
#include <algorithm>
#include <cstring>

#include "app/tiny_clip.h"
#include "state/stage.h"

namespace {

constexpr int kClips = 3;
constexpr int kFrames = 20;  // a block of 16 and one of 4
constexpr int kLongHold = 40;
constexpr uint8_t kLevelBefore = 6;

// Even tile columns hold the clip's own colour in all frames, odd ones change with each frame. No
// two clips, and no two frames, have a colour in common.
constexpr uint16_t kStill[kClips] = {0xF800, 0x07E0, 0x001F};
constexpr uint16_t moving(int clip, int frame) {
    return static_cast<uint16_t>(0x4000 * (clip + 1) + frame + 1);
}
constexpr bool standsStill(int pixel) {
    return pixel % kFrameWidth / 8 % 2 == 0;
}

std::string fileOf(int clip) {
    std::vector<app::TinyFrame> frames;
    for (int frame = 0; frame < kFrames; ++frame) {
        app::TinyFrame made{{kFrameWidth, kFrameHeight, {}}, {}};
        for (int pixel = 0; pixel < kFramePixels; ++pixel) {
            made.picture.pixels.push_back(standsStill(pixel) ? kStill[clip] : moving(clip, frame));
        }
        frames.push_back(std::move(made));
    }
    const std::vector<uint8_t> bytes = app::tinyClip(frames, true);
    return {bytes.begin(), bytes.end()};
}

class StaleTiles : public StageTest {
protected:
    StaleTiles() {
        static const std::string files[kClips] = {fileOf(0), fileOf(1), fileOf(2)};
        std::vector<std::string> names;
        for (int clip = 0; clip < kClips; ++clip) {
            names.push_back(numbered("clip", clip) + ".m19");
            writeFile("videos/" + names.back(), files[clip]);
            loadClip(clip, names.back());
        }
        addFamille("set", names);
        playlist->loadSlot = playlist->loadTrack = kClips;
        playlist->loadDone = 1;
        all->state = STATE_MIX;
        all->subState = SUB_PERFORMING;
    }

    static void show(int mode, MixLayer bottom, MixLayer top) {
        mix->mode = mode;
        mix->layer[0] = bottom;
        mix->layer[1] = top;
        runFrame();
    }
    static void hold(SDLKey key) { scripted().keysDown[key] = 1; }
    static void letGo(SDLKey key) { scripted().keysDown[key] = 0; }
    // The key is down for one frame.
    static void press(SDLKey key) {
        hold(key);
        runFrame();
        letGo(key);
    }
    // Every pixel of the layer: those that stand still and those that change.
    static bool shows(int layer, uint16_t still, uint16_t changing) {
        return everyRowIs(moxelTiles16 + layer * kFramePixels, still, changing);
    }
    // Likewise the top layer's alpha.
    static bool hasLevels(uint8_t still, uint8_t changing) {
        return everyRowIs(moxelAlpha16, still, changing);
    }
    template <typename Pixel>
    static bool everyRowIs(const Pixel* pixels, Pixel still, Pixel changing) {
        Pixel expected[kFrameWidth];
        for (int x = 0; x < kFrameWidth; ++x) {
            expected[x] = standsStill(x) ? still : changing;
        }
        for (int y = 0; y < kFrameHeight; ++y) {
            if (memcmp(pixels + y * kFrameWidth, expected, sizeof expected) != 0) {
                return false;
            }
        }
        return true;
    }
    // Of the first tile, which stands still: doubled, so anywhere in 16 x 16.
    static uint16_t firstTile() { return pixelAt(screen[1], 3, 100); }
};

// Clip 2 on the bottom layer, then clip 0 on the top one; in mode 0 clip 0 goes to the bottom layer
// and clip 1 on top. Everything but the bottom layer is up to date and stands at frame 1.
class StaleTilesOfTheMode : public StaleTiles {
protected:
    static void prepare() {
        show(MODE_BLEND, {2, 0, PLAY_FORWARD}, {0, 0, PLAY_FORWARD});
        show(MODE_TOP, {0, 0, PLAY_FORWARD}, {1, 0, PLAY_FORWARD});
        ASSERT_TRUE(shows(0, kStill[2], moving(2, 0)));
        ASSERT_TRUE(shows(1, kStill[1], moving(1, 0)));
    }
};

TEST_F(StaleTilesOfTheMode, quirk_mode_change_leaves_tiles_for_a_block) {
    for (const SDLKey key : {SDLK_2, SDLK_3, SDLK_4, SDLK_5, SDLK_6}) {
        SCOPED_TRACE(key);
        prepare();
        press(key);
        ASSERT_TRUE(shows(0, kStill[2], moving(0, 1)));
        for (int frame = 2; frame < 16; ++frame) {
            runFrame();
            ASSERT_TRUE(shows(0, kStill[2], moving(0, frame))) << frame;
        }
        runFrame();
        EXPECT_TRUE(shows(0, kStill[0], moving(0, 16)));
    }
}

// Half of red or blue, and half of green from the top layer: what the audience sees.
TEST_F(StaleTilesOfTheMode, InBlend_ShowTheClipBefore) {
    prepare();
    press(SDLK_2);
    EXPECT_EQ(firstTile(), 0x000F + 0x03E0);
    while (mix->layer[0].frame != 16) {
        runFrame();
    }
    EXPECT_EQ(firstTile(), 0x000F + 0x03E0);
    runFrame();
    EXPECT_EQ(firstTile(), 0x7800 + 0x03E0);
}

TEST_F(StaleTilesOfTheMode, Backwards_GoWithTheBlocksFirstFrame) {
    prepare();
    mix->layer[0] = {0, 15, PLAY_BACKWARD};
    press(SDLK_2);
    for (int frame = 14; frame > 0; --frame) {
        ASSERT_TRUE(shows(0, kStill[2], moving(0, frame + 1)));
        runFrame();
    }
    EXPECT_TRUE(shows(0, kStill[2], moving(0, 1)));
    runFrame();
    EXPECT_TRUE(shows(0, kStill[0], moving(0, 0)));
}

TEST_F(StaleTilesOfTheMode, UnderSpace_StandUntilItIsLetGo) {
    prepare();
    hold(SDLK_SPACE);
    press(SDLK_2);
    for (int frame = 0; frame < kLongHold; ++frame) {
        ASSERT_TRUE(shows(0, kStill[2], moving(0, 1)));
        runFrame();
    }
    letGo(SDLK_SPACE);
    for (int frame = 1; frame < 16; ++frame) {
        runFrame();
        ASSERT_TRUE(shows(0, kStill[2], moving(0, frame))) << frame;
    }
    runFrame();
    EXPECT_TRUE(shows(0, kStill[0], moving(0, 16)));
}

TEST_F(StaleTilesOfTheMode, AtABlocksFirstFrame_ThereAreNone) {
    prepare();
    mix->layer[0].frame = 16;
    press(SDLK_2);
    EXPECT_TRUE(shows(0, kStill[0], moving(0, 16)));
}

// What the top layer's alpha buffer holds is of another clip, or of before the mode changed.
TEST_F(StaleTilesOfTheMode, quirk_alpha_comes_within_a_block) {
    prepare();
    std::fill_n(moxelAlpha16, kFramePixels, kLevelBefore);
    press(SDLK_5);
    ASSERT_TRUE(hasLevels(kLevelBefore, 15));
    // Blue at 9 of 15 under green at 6 of 15: 31 * 9 / 15 = 18, 63 * 6 / 15 = 25.
    EXPECT_EQ(firstTile(), 25 * 32 + 18);
    for (int frame = 2; frame < 16; ++frame) {
        runFrame();
        ASSERT_TRUE(hasLevels(kLevelBefore, 15)) << frame;
    }
    runFrame();
    EXPECT_TRUE(hasLevels(15, 15));
    EXPECT_EQ(firstTile(), kStill[1]);
}

TEST_F(StaleTilesOfTheMode, AlphaUnderSpace_ComesAfterIt) {
    prepare();
    std::fill_n(moxelAlpha16, kFramePixels, kLevelBefore);
    hold(SDLK_SPACE);
    press(SDLK_5);
    for (int frame = 0; frame < kLongHold; ++frame) {
        ASSERT_TRUE(hasLevels(kLevelBefore, 15));
        runFrame();
    }
    letGo(SDLK_SPACE);
    for (int frame = 1; frame < 16; ++frame) {
        runFrame();
        ASSERT_TRUE(hasLevels(kLevelBefore, 15)) << frame;
    }
    runFrame();
    EXPECT_TRUE(hasLevels(15, 15));
}

// Without a change of the mode nothing but mode 5 writes the levels.
TEST_F(StaleTilesOfTheMode, AlphaOutsideMode5_StaysAsItWas) {
    prepare();
    std::fill_n(moxelAlpha16, kFramePixels, kLevelBefore);
    press(SDLK_2);
    for (int frame = 0; frame < kLongHold; ++frame) {
        runFrame();
    }
    EXPECT_TRUE(hasLevels(kLevelBefore, kLevelBefore));
}

// Clip 0 on both layers, so that the bottom one keeps clip 2's picture; clip 1 is up to date on the
// top layer as well. The top layer is the active one.
class StaleTilesOfTheDeck : public StaleTiles {
protected:
    StaleTilesOfTheDeck() {
        show(MODE_BLEND, {2, 0, PLAY_FORWARD}, {1, 0, PLAY_FORWARD});
        show(MODE_BLEND, {2, 0, PLAY_FORWARD}, {0, 0, PLAY_FORWARD});
    }
    static void showClip0Twice() {
        show(MODE_BLEND, {0, 0, PLAY_FORWARD}, {0, 0, PLAY_FORWARD});
        ASSERT_TRUE(shows(0, kStill[2], moving(2, 0)));
    }
    // Presses in the strip, at frame 5 of clip 0 in mode 0, and goes to clip 1 with the button
    // down.
    static void changeUnderScrub() {
        show(MODE_TOP, {2, 0, PLAY_FORWARD}, {0, 4, PLAY_FORWARD});
        scripted().events.push_back(mouseButton(SDL_MOUSEBUTTONDOWN, kStripX, kStripY));
        runFrame();
        ASSERT_TRUE(shows(1, kStill[0], moving(0, 5)));
        press(SDLK_RIGHT);
        ASSERT_EQ(mix->layer[1].deck, 1);
    }

    // In the window; the picture begins at (320, 180).
    static constexpr int kStripX = 320 + 300;
    static constexpr int kStripY = 180 + 200;
};

// The layer that changes begins with frame 0 and is whole; the other one now has a clip that was
// drawn on the layer that it left.
TEST_F(StaleTilesOfTheDeck, quirk_deck_change_under_space_leaves_the_other_layer) {
    showClip0Twice();
    hold(SDLK_SPACE);
    runFrame();
    press(SDLK_RIGHT);
    ASSERT_EQ(mix->layer[1].deck, 1);
    for (int frame = 0; frame < kLongHold; ++frame) {
        ASSERT_TRUE(shows(1, kStill[1], moving(1, 0)));
        ASSERT_TRUE(shows(0, kStill[2], moving(2, 0)));
        runFrame();
    }
    letGo(SDLK_SPACE);
    runFrame();
    ASSERT_TRUE(shows(0, kStill[2], moving(2, 0)));
    for (int frame = 2; frame < 16; ++frame) {
        runFrame();
        ASSERT_TRUE(shows(0, kStill[2], moving(0, frame))) << frame;
    }
    runFrame();
    EXPECT_TRUE(shows(0, kStill[0], moving(0, 16)));
}

TEST_F(StaleTilesOfTheDeck, WhilePlaying_StandForABlock) {
    showClip0Twice();
    runFrame();
    press(SDLK_RIGHT);
    EXPECT_TRUE(shows(1, kStill[1], moving(1, 0)));
    for (int frame = 2; frame < 15; ++frame) {
        ASSERT_TRUE(shows(0, kStill[2], moving(0, frame))) << frame;
        runFrame();
    }
    ASSERT_TRUE(shows(0, kStill[2], moving(0, 15)));
    runFrame();
    EXPECT_TRUE(shows(0, kStill[0], moving(0, 16)));
}

// The drag puts the new clip at its own frame at once, past the frame 0 that would draw it whole.
TEST_F(StaleTilesOfTheDeck, quirk_deck_change_under_a_scrub_leaves_tiles) {
    changeUnderScrub();
    for (int frame = 0; frame < kLongHold; ++frame) {
        ASSERT_TRUE(shows(1, kStill[0], moving(1, 5)));
        runFrame();
    }
    scripted().events.push_back(mouseButton(SDL_MOUSEBUTTONUP, kStripX, kStripY));
    for (int frame = 6; frame < 16; ++frame) {
        runFrame();
        ASSERT_TRUE(shows(1, kStill[0], moving(1, frame))) << frame;
    }
    runFrame();
    EXPECT_TRUE(shows(1, kStill[1], moving(1, 16)));
}

// 55 pixels are 11 frames.
TEST_F(StaleTilesOfTheDeck, ScrubToABlocksFirstFrame_TakesThemAway) {
    changeUnderScrub();
    ASSERT_TRUE(shows(1, kStill[0], moving(1, 5)));
    scripted().events.push_back(mouseMoved(kStripX + 50, kStripY));
    runFrame();
    EXPECT_TRUE(shows(1, kStill[0], moving(1, 15)));
    scripted().events.push_back(mouseMoved(kStripX + 55, kStripY));
    runFrame();
    EXPECT_TRUE(shows(1, kStill[1], moving(1, 16)));
}

}  // namespace
