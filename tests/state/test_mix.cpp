// The mixer's start values and the advance of its layers.
#include "mixer/mix.h"

#include "state/stage.h"

namespace {

class Mix : public StageTest {
protected:
    Mix() {
        pretendClip(0, 10);
        pretendClip(1, 5);
        mix->layer[0] = {1, 2, PLAY_FORWARD};
        mix->layer[1] = {0, 4, PLAY_FORWARD};
    }
};

TEST_F(Mix, Init_StartValues) {
    mix->nbDecks = mix->activeLayer = 9;
    mix->hold = mix->mode = mix->targetFps = mix->filterKeyHeld = mix->showUI = 9;
    mix->flash = mix->fade = 9;
    mix->layer[0] = {9, 9, 9};
    mix->layer[1] = {9, 9, 9};
    mix->initMix();
    EXPECT_EQ(mix->nbDecks, 0);
    EXPECT_EQ(mix->activeLayer, 1);
    for (const MixLayer& layer : mix->layer) {
        EXPECT_EQ(layer.deck, 0);
        EXPECT_EQ(layer.frame, 0);
        EXPECT_EQ(layer.direction, 0);
    }
    EXPECT_EQ(mix->uiX, 320);
    EXPECT_EQ(mix->uiY, 180);
    EXPECT_EQ(mix->hold, 0);
    EXPECT_EQ(mix->mode, 0);
    EXPECT_EQ(mix->targetFps, 25);
    EXPECT_EQ(mix->filterKeyHeld, 0);
    EXPECT_EQ(mix->showUI, 0);
    EXPECT_EQ(mix->flash, 0);
    EXPECT_EQ(mix->fade, 0);
}

TEST_F(Mix, Init_LeavesTheScrubAlone) {
    mix->scrubX = 11;
    mix->scrubFrame = 12;
    mix->scrubbing = 1;
    mix->initMix();
    EXPECT_EQ(mix->scrubX, 11);
    EXPECT_EQ(mix->scrubFrame, 12);
    EXPECT_EQ(mix->scrubbing, 1);
}

TEST_F(Mix, InitAtAnotherResolution_PanelAtThePicture) {
    all->applyResolution(1024, 768);
    mix->initMix();
    EXPECT_EQ(mix->uiX, 192);
    EXPECT_EQ(mix->uiY, 204);
}

TEST_F(Mix, Forward_StepsAndWrapsAtItsOwnClip) {
    const int bottom[] = {3, 4, 0, 1, 2, 3};
    const int top[] = {5, 6, 7, 8, 9, 0};
    for (int step = 0; step < 6; ++step) {
        mix->lecture();
        EXPECT_EQ(mix->layer[0].frame, bottom[step]);
        EXPECT_EQ(mix->layer[1].frame, top[step]);
    }
}

TEST_F(Mix, Backward_From0ToTheLast) {
    mix->layer[1] = {0, 1, PLAY_BACKWARD};
    mix->lecture();
    EXPECT_EQ(mix->layer[1].frame, 0);
    mix->lecture();
    EXPECT_EQ(mix->layer[1].frame, 9);
    mix->lecture();
    EXPECT_EQ(mix->layer[1].frame, 8);
}

TEST_F(Mix, OneFrameClip_StaysAt0EitherWay) {
    pretendClip(0, 1);
    for (const int direction : {PLAY_FORWARD, PLAY_BACKWARD}) {
        mix->layer[1] = {0, 0, direction};
        mix->lecture();
        EXPECT_EQ(mix->layer[1].frame, 0);
    }
}

TEST_F(Mix, OtherDirection_StandsStill) {
    for (const int direction : {-1, 2, 99}) {
        mix->layer[1] = {0, 4, direction};
        mix->lecture();
        EXPECT_EQ(mix->layer[1].frame, 4);
    }
}

TEST_F(Mix, Hold_FramesStandAndTheFlashRunsOn) {
    mix->hold = 1;
    mix->flash = 2;
    mix->lecture();
    EXPECT_EQ(mix->layer[0].frame, 2);
    EXPECT_EQ(mix->layer[1].frame, 4);
    EXPECT_EQ(mix->flash, 1);
    mix->lecture();
    mix->lecture();
    EXPECT_EQ(mix->flash, 0);
    EXPECT_EQ(mix->layer[1].frame, 4);
}

TEST_F(Mix, Lecture_FlashCountsDownAndFadeStays) {
    mix->flash = 15;
    mix->fade = 7;
    for (int left = 14; left >= 0; --left) {
        mix->lecture();
        EXPECT_EQ(mix->flash, left);
    }
    mix->lecture();
    EXPECT_EQ(mix->flash, 0);
    EXPECT_EQ(mix->fade, 7);
}

TEST_F(Mix, quirk_frame_past_the_end_keeps_counting) {
    mix->layer[1] = {0, 10, PLAY_FORWARD};
    for (const int frame : {11, 12, 13}) {
        mix->lecture();
        EXPECT_EQ(mix->layer[1].frame, frame);
    }
    mix->layer[1].direction = PLAY_BACKWARD;
    mix->lecture();
    EXPECT_EQ(mix->layer[1].frame, 12);
}

}  // namespace
