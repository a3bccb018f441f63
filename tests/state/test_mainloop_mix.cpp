// The mix screen's frame: what is loaded, rendered, played and drawn over it.
#include <algorithm>

#include "state/stage.h"

namespace {

constexpr uint16_t kMark = 0x1234;

class MainLoopMix : public StageTest {
protected:
    MainLoopMix() {
        all->state = STATE_MIX;
        all->subState = SUB_PERFORMING;
        placeClip("runs-360.m19", "runs.m19");    // 16 frames
        placeClip("rgb-all-360.m19", "all.m19");  // 20 frames
        std::fill_n(moxelTiles16, kLayers * kFramePixels, kMark);
    }

    // Slots 0 and 1 ready, as after a load.
    static void loadTwo() {
        addFamille("set", {"runs.m19", "all.m19"});
        loadClip(0, "runs.m19");
        loadClip(1, "all.m19");
        playlist->loadSlot = 2;
        playlist->loadTrack = 2;
        playlist->loadDone = 1;
    }
    static bool rendered(int layer) {
        const uint16_t* frame = moxelTiles16 + layer * kFramePixels;
        return std::any_of(frame, frame + kFramePixels, [](uint16_t p) { return p != kMark; });
    }
    static bool isBlack() { return countPixels(screen[1], 0, 0, 1280, 720, 0) == 1280 * 720; }
};

TEST_F(MainLoopMix, NothingLoaded_Black) {
    fillAll(screen[1], kMark);
    runFrame();
    EXPECT_TRUE(isBlack());
    EXPECT_FALSE(rendered(1));
}

TEST_F(MainLoopMix, NothingLoadedWithTheOverMenu_OverMenuOnBlack) {
    addFamille("one");
    all->subState = SUB_OVERMENU;
    fillAll(screen[1], kMark);
    runFrame();
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1280, 720, kMark), 0);
    EXPECT_FALSE(isBlack());
    EXPECT_EQ(countPixels(screen[1], 300, 0, 980, 720, 0), 980 * 720);
}

TEST_F(MainLoopMix, EachFrame_OneStepOfTheLoader) {
    addFamille("set", {"runs.m19"});
    printedBy([] {
        playlist->initLoad(0);
        for (int step = 1; step <= 3; ++step) {
            runFrame();
            EXPECT_EQ(moxel[0].loadStage, step);
        }
        EXPECT_TRUE(isBlack());
        runFrame();
    });
    // Ready in this frame, and drawn in it.
    EXPECT_EQ(playlist->loadSlot, 1);
    EXPECT_TRUE(rendered(1));
    EXPECT_FALSE(isBlack());
}

TEST_F(MainLoopMix, OtherScreens_DoNotLoad) {
    addFamille("set", {"runs.m19"});
    playlist->initLoad(0);
    for (const int state : {STATE_HOME, STATE_PLAYLISTS, STATE_OPTIONS}) {
        all->state = state;
        runFrame();
    }
    EXPECT_EQ(moxel[0].loadStage, 0);
}

TEST_F(MainLoopMix, Mode0_OnlyTheTopClipIsDrawn) {
    loadTwo();
    mix->layer[1].deck = 1;
    runFrame();
    EXPECT_TRUE(rendered(1));
    EXPECT_FALSE(rendered(0));
}

TEST_F(MainLoopMix, OtherModes_BothClipsAreDrawn) {
    for (const int mode : {1, 2, 3, 4, 5, 6}) {
        loadTwo();
        std::fill_n(moxelTiles16, kLayers * kFramePixels, kMark);
        mix->mode = mode;
        mix->layer[0].deck = 0;
        mix->layer[1].deck = 1;
        runFrame();
        EXPECT_TRUE(rendered(1)) << mode;
        EXPECT_TRUE(rendered(0)) << mode;
    }
}

TEST_F(MainLoopMix, SameClipOnBothLayers_BottomStaysAsItWas) {
    loadTwo();
    mix->mode = MODE_BLEND;
    mix->layer[0].deck = 1;
    mix->layer[1].deck = 1;
    runFrame();
    runFrame();
    EXPECT_TRUE(rendered(1));
    EXPECT_FALSE(rendered(0));
}

TEST_F(MainLoopMix, TopClipNotReady_PictureStaysAndNothingPlays) {
    loadTwo();
    moxel[1].state = CLIP_LOADING;
    mix->mode = MODE_BLEND;
    mix->layer[0] = {0, 0, PLAY_FORWARD};
    mix->layer[1] = {1, 4, PLAY_FORWARD};
    mix->flash = 9;
    fillAll(screen[1], kMark);
    runFrame();
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1280, 720, kMark), 1280 * 720);
    EXPECT_EQ(mix->layer[1].frame, 4);
    EXPECT_EQ(mix->flash, 9);
    EXPECT_FALSE(rendered(0));
    EXPECT_FALSE(rendered(1));
}

TEST_F(MainLoopMix, TopClipNotReadyWithTheOverMenu_OverMenuIsDrawn) {
    loadTwo();
    moxel[0].state = CLIP_LOADING;
    all->subState = SUB_OVERMENU;
    fillAll(screen[1], kMark);
    runFrame();
    EXPECT_LT(countPixels(screen[1], 30, 300, 200, 100, kMark), 200 * 100);
    EXPECT_EQ(countPixels(screen[1], 300, 0, 980, 720, kMark), 980 * 720);
}

TEST_F(MainLoopMix, BottomClipNotReady_OnlyTheTopIsDrawn) {
    loadTwo();
    moxel[0].state = CLIP_LOADING;
    mix->mode = MODE_BLEND;
    mix->layer[1].deck = 1;
    runFrame();
    EXPECT_TRUE(rendered(1));
    EXPECT_FALSE(rendered(0));
}

// A frame past the clip's end is not drawn; the last picture stays in the layer.
TEST_F(MainLoopMix, FramePastTheEnd_LayerKeepsItsPicture) {
    loadTwo();
    mix->layer[1] = {1, 20, PLAY_FORWARD};
    runFrame();
    EXPECT_FALSE(rendered(1));
    EXPECT_EQ(mix->layer[1].frame, 21);
}

TEST_F(MainLoopMix, Frame_DrawnThenAdvanced) {
    loadTwo();
    mix->layer[1] = {1, 19, PLAY_FORWARD};
    mix->layer[0] = {1, 3, PLAY_BACKWARD};
    runFrame();
    EXPECT_EQ(mix->layer[1].frame, 0);
    EXPECT_EQ(mix->layer[0].frame, 2);
    // Frame 19, not frame 0, is what the layer shows.
    const std::vector<uint16_t> shown(moxelTiles16 + kFramePixels, moxelTiles16 + 2 * kFramePixels);
    loadClip(2, "all.m19");
    std::fill_n(moxelTiles16 + kFramePixels, kFramePixels, kMark);
    moxel[2].renderMoxel19(1, 19, 0);
    EXPECT_TRUE(std::equal(shown.begin(), shown.end(), moxelTiles16 + kFramePixels));
}

// The bar follows the active layer: frame 10 of 20 is half the width.
TEST_F(MainLoopMix, TopBar_OfTheActiveLayer) {
    loadTwo();
    _options->topbar = 1;
    mix->layer[1] = {1, 10, PLAY_FORWARD};
    mix->layer[0] = {0, 0, PLAY_FORWARD};
    runFrame();
    EXPECT_EQ(countPixels(screen[1], 0, 5, 640, 1, 0xFFFF), 640);
    EXPECT_NE(pixelAt(screen[1], 640, 5), 0xFFFF);
    mix->activeLayer = 0;
    mix->layer[0].frame = 0;
    mix->layer[1].frame = 10;
    runFrame();
    EXPECT_NE(pixelAt(screen[1], 0, 5), 0xFFFF);
}

// 1024 x 768 shows 720 rows of picture; the panel and a long list reach below them.
class MixBesidePicture : public MainLoopMix {
protected:
    MixBesidePicture() {
        loadTwo();
        all->applyResolution(1024, 768);
        updateResolution();
        scripted().keysDown[SDLK_SPACE] = 1;  // every frame the same
        runFrame();
    }
    static int blackBelow() { return countPixels(screen[1], 0, 720, 1024, 48, 0); }
};

TEST_F(MixBesidePicture, WhatWasDrawnThere_IsGone) {
    fill(screen[1], 0, 720, 1024, 48, kMark);
    const Picture before = copyOf(screen[1]);
    runFrame();
    EXPECT_EQ(blackBelow(), 1024 * 48);
    fill(before.get(), 0, 720, 1024, 48, 0);
    EXPECT_TRUE(samePixels(screen[1], before.get()));
}

// Only beside the picture: mode 5 draws none, and the last one stays.
TEST_F(MixBesidePicture, Mode5_TheLastPictureStays) {
    mix->mode = MODE_NOTHING;
    fillAll(screen[1], kMark);
    runFrame();
    EXPECT_EQ(countPixels(screen[1], 0, 0, 1024, 720, kMark), 1024 * 720);
    EXPECT_EQ(blackBelow(), 1024 * 48);
}

// Translucent boxes over what they left in the frame before would become opaque.
TEST_F(MixBesidePicture, PanelAndList_DoNotAddUp) {
    for (int f = 0; f < 37; ++f) {
        addFamille(numbered("f", f));
    }
    mix->showUI = 1;
    all->subState = SUB_OVERMENU;
    runFrame();
    const Picture once = copyOf(screen[1]);
    EXPECT_LT(blackBelow(), 1024 * 48);
    for (int frame = 0; frame < 3; ++frame) {
        runFrame();
    }
    EXPECT_TRUE(samePixels(screen[1], once.get()));
}

class LoadingLine : public MainLoopMix {
protected:
    // One clip ready and one of three tracks handled; the second one takes many steps.
    LoadingLine() {
        placeClip("one-frame-8.m19", "one.m19");
        addFamille("set", {"one.m19", "all.m19", "one.m19"});
        printedBy([] {
            playlist->initLoad(0);
            for (int step = 0; step < 4; ++step) {
                playlist->loopLoadPlaylist();
            }
        });
        EXPECT_EQ(playlist->loadTrack, 1);
    }

    // The frame without the line, and what the line adds to it.
    static Picture frameWith(int topbar) {
        _options->topbar = topbar;
        printedBy([] { runFrame(); });
        return copyOf(screen[1]);
    }
};

TEST_F(LoadingLine, WithThePreference_GrowsWithTheTracksHandled) {
    const Picture expected = frameWith(0);
    const Picture shown = frameWith(1);
    ASSERT_EQ(playlist->loadTrack, 1);
    fill(expected.get(), 0, 7, 426, 1, 0xFFFF);  // 1280 x 1 / 3
    EXPECT_TRUE(samePixels(shown.get(), expected.get()));
    playlist->loadTrack = 2;
    const Picture further = frameWith(1);
    fill(expected.get(), 0, 7, 853, 1, 0xFFFF);  // 1280 x 2 / 3
    EXPECT_TRUE(samePixels(further.get(), expected.get()));
}

TEST_F(LoadingLine, WithoutThePreference_Absent) {
    const Picture before = frameWith(0);
    const Picture shown = frameWith(0);
    EXPECT_TRUE(samePixels(shown.get(), before.get()));
    EXPECT_LT(countPixels(shown.get(), 0, 7, 426, 1, 0xFFFF), 426);
}

TEST_F(LoadingLine, EveryTrackHandled_Gone) {
    const Picture expected = frameWith(0);
    playlist->loadTrack = 3;
    const Picture shown = frameWith(1);
    EXPECT_TRUE(samePixels(shown.get(), expected.get()));
}

// The 50th filled slot ends a load though a track remains.
TEST_F(LoadingLine, LoadEndedWithTracksLeft_Gone) {
    const Picture expected = frameWith(0);
    playlist->loadTrack = 2;
    playlist->loading = 0;
    const Picture shown = frameWith(1);
    EXPECT_TRUE(samePixels(shown.get(), expected.get()));
}

TEST_F(LoadingLine, NothingReadyYet_Absent) {
    playlist->clearMix();
    printedBy([] { playlist->initLoad(0); });
    playlist->loadTrack = 1;
    const Picture shown = frameWith(1);
    EXPECT_EQ(countPixels(shown.get(), 0, 0, 1280, 720, 0), 1280 * 720);
}

TEST_F(LoadingLine, BehindTheOverMenu_StillDrawn) {
    all->subState = SUB_OVERMENU;
    const Picture shown = frameWith(1);
    EXPECT_EQ(countPixels(shown.get(), 0, 7, 426, 1, 0xFFFF), 426);
}

}  // namespace
