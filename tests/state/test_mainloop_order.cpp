// The steps of a frame of the mix in their order, and a frame that loads at another resolution.
#include <algorithm>

#include "state/stage.h"

namespace {

constexpr uint8_t kAlphaMark = 0x77;  // alpha levels end at 15
constexpr int kStandsStill = 2;       // neither forward nor backward

class MixFrame : public StageTest {
protected:
    MixFrame() {
        all->state = STATE_MIX;
        all->subState = SUB_PERFORMING;
        placeClip("runs-360.m19", "runs.m19");    // 16 frames
        placeClip("rgb-all-360.m19", "all.m19");  // 20 frames
    }

    static void ready(const std::vector<std::string>& clips) {
        for (size_t slot = 0; slot < clips.size(); ++slot) {
            loadClip(static_cast<int>(slot), clips[slot]);
        }
        addFamille("set", clips);
        playlist->loadSlot = playlist->loadTrack = static_cast<int32_t>(clips.size());
        playlist->loadDone = 1;
    }
    static bool isWhite(int x, int y, int w, int h) {
        return countPixels(screen[1], x, y, w, h, 0xFFFF) == w * h;
    }
};

// The picture and the white line are those of frame 19, the panel's bar that of the frame after:
// 1280 x 19 / 20 and 210 x 1 / 20 pixels. The panel lies over the picture.
TEST_F(MixFrame, LastFrame_LineBeforeTheStepAndPanelAfterIt) {
    ready({"runs.m19", "all.m19"});
    _options->topbar = 1;
    mix->showUI = 1;
    mix->layer[1] = {1, 19, PLAY_FORWARD};
    runFrame();
    EXPECT_TRUE(isWhite(0, 5, 1216, 1));
    EXPECT_NE(pixelAt(screen[1], 1216, 5), 0xFFFF);
    EXPECT_TRUE(isWhite(30, 608, 10, 4));
    EXPECT_NE(pixelAt(screen[1], 40, 608), 0xFFFF);
    EXPECT_NE(pixelAt(screen[1], 40, 611), 0xFFFF);
}

// Backward from the first frame: no line, and the whole of the panel's bar.
TEST_F(MixFrame, FirstFrameBackward_LineBeforeTheStepAndPanelAfterIt) {
    ready({"runs.m19", "all.m19"});
    _options->topbar = 1;
    mix->showUI = 1;
    mix->layer[1] = {0, 0, PLAY_BACKWARD};
    runFrame();
    EXPECT_EQ(mix->layer[1].frame, 15);
    EXPECT_NE(pixelAt(screen[1], 0, 5), 0xFFFF);
    EXPECT_TRUE(isWhite(30, 608, 210, 4));
}

TEST_F(MixFrame, LastLevelOfTheFlash_ShownBeforeItCountsDown) {
    ready({"runs.m19", "all.m19"});
    mix->layer[1] = {1, 4, kStandsStill};
    runFrame();
    const Picture plain = copyOf(screen[1]);
    mix->flash = 1;
    runFrame();
    EXPECT_EQ(mix->flash, 0);
    EXPECT_FALSE(samePixels(screen[1], plain.get()));
    runFrame();
    EXPECT_TRUE(samePixels(screen[1], plain.get()));
}

// The clip that the last frame completed can be chosen in this one.
TEST_F(MixFrame, DecksOfTheLoader_ThereForTheKeysOfTheSameFrame) {
    ready({"runs.m19", "all.m19", "runs.m19"});
    mix->nbDecks = 2;
    mix->layer[1] = {1, 0, PLAY_FORWARD};
    scripted().keysDown[SDLK_RIGHT] = 1;
    runFrame();
    EXPECT_EQ(mix->layer[1].deck, 2);
    EXPECT_EQ(mix->nbDecks, 3);
}

TEST_F(MixFrame, ClipCompleted_CountsFromTheNextFrame) {
    placeClip("one-frame-8.m19", "one.m19");
    addFamille("set", {"one.m19", "all.m19"});
    printedBy([] {
        playlist->initLoad(0);
        for (int step = 0; step < 4; ++step) {
            runFrame();
        }
    });
    EXPECT_EQ(playlist->loadSlot, 1);
    EXPECT_EQ(mix->nbDecks, 0);
    printedBy([] { runFrame(); });
    EXPECT_EQ(mix->nbDecks, 1);
}

// In mode 3 alone the top clip's alpha is wanted. Each mode gets a clip that was never drawn.
TEST_F(MixFrame, TopClip_DrawnForTheModeInForce) {
    placeClip("rgba-all-360.m19", "rgba.m19");
    ready({"runs.m19", "rgba.m19", "rgba.m19", "rgba.m19"});
    std::fill_n(moxelAlpha16, kFramePixels, kAlphaMark);
    mix->layer[0] = {0, 0, PLAY_FORWARD};
    for (const auto& [deck, mode] : {std::pair{1, MODE_TOP}, std::pair{2, MODE_BLEND}}) {
        mix->mode = mode;
        mix->layer[1] = {deck, 0, PLAY_FORWARD};
        runFrame();
        EXPECT_EQ(std::count(moxelAlpha16, moxelAlpha16 + kFramePixels, kAlphaMark), kFramePixels)
            << mode;
    }
    mix->layer[1] = {3, 0, PLAY_FORWARD};
    scripted().keysDown[SDLK_5] = 1;
    runFrame();
    ASSERT_EQ(mix->mode, MODE_KEY);
    EXPECT_EQ(std::count(moxelAlpha16, moxelAlpha16 + kFramePixels, kAlphaMark), 0);
}

// One clip ready and one of three tracks handled, at 1024 x 768; the second one takes many steps.
class LoadingAt1024 : public MixFrame {
protected:
    LoadingAt1024() {
        all->applyResolution(1024, 768);
        updateResolution();
        addFamille("set", {"runs.m19", "all.m19", "all.m19"});
        printedBy([] {
            playlist->initLoad(0);
            while (playlist->loadTrack == 0) {
                playlist->loopLoadPlaylist();
            }
        });
    }

    static Picture frameWith(int topbar) {
        _options->topbar = topbar;
        printedBy([] { runFrame(); });
        return copyOf(screen[1]);
    }
};

// The clip's line at frame 8 of 16, 1024 / 2, and the loading line, 1024 x 1 / 3 and 1024 x 2 / 3.
TEST_F(LoadingAt1024, Lines_AreTheWindowsWidth) {
    mix->layer[1] = {0, 8, kStandsStill};
    const Picture expected = frameWith(0);
    const Picture shown = frameWith(1);
    ASSERT_EQ(playlist->loadTrack, 1);
    fill(expected.get(), 0, 5, 512, 1, 0xFFFF);
    fill(expected.get(), 0, 7, 341, 1, 0xFFFF);
    EXPECT_TRUE(samePixels(shown.get(), expected.get()));
    playlist->loadTrack = 2;
    const Picture further = frameWith(1);
    fill(expected.get(), 0, 7, 682, 1, 0xFFFF);
    EXPECT_TRUE(samePixels(further.get(), expected.get()));
}

TEST_F(LoadingAt1024, ClipThatIsReady_PlaysAFrameEachWhileTheOthersLoad) {
    _options->topbar = 1;
    for (int frame = 1; frame <= 5; ++frame) {
        printedBy([] { runFrame(); });
        ASSERT_EQ(playlist->loading, 1);
        EXPECT_EQ(mix->layer[1].frame, frame);
        EXPECT_EQ(mix->layer[0].frame, frame);
    }
}

}  // namespace
