// Scrubbing the active layer with the mouse: five pixels a frame.
#include "state/stage.h"

namespace {

constexpr int kFrames = 20;

class KeysMixScrub : public StageTest {
protected:
    KeysMixScrub() {
        all->state = STATE_MIX;
        all->subState = SUB_PERFORMING;
        mix->nbDecks = 2;
        pretendClip(0, kFrames);
        pretendClip(1, kFrames);
        mix->layer[1] = {0, 8, PLAY_FORWARD};
        mix->layer[0] = {1, 3, PLAY_FORWARD};
        setKeys({});
    }

    static void clickAt(int x, int y) {
        keys->mouseClick = 1;
        keys->mouseHeld = 0;
        moveTo(x, y);
    }
    static void dragTo(int x, int y = 200) {
        keys->mouseClick = 0;
        keys->mouseHeld = 1;
        moveTo(x, y);
    }
    static void release() {
        keys->mouseClick = 0;
        keys->mouseHeld = 0;
        keys->actionsMix();
    }
    static void moveTo(int x, int y) {
        keys->mouseX = x;
        keys->mouseY = y;
        keys->actionsMix();
    }
    static int frameAfterDrag(int pixels) {
        mix->layer[1].frame = 8;
        clickAt(300, 200);
        dragTo(300 + pixels);
        const int frame = mix->layer[1].frame;
        release();
        return frame;
    }
};

TEST_F(KeysMixScrub, Click_NotesPlaceAndFrame) {
    clickAt(300, 200);
    EXPECT_EQ(mix->scrubbing, 1);
    EXPECT_EQ(mix->scrubX, 300);
    EXPECT_EQ(mix->scrubFrame, 8);
    EXPECT_EQ(mix->layer[1].frame, 8);
}

TEST_F(KeysMixScrub, Strip_EndsIncluded) {
    const struct {
        int x, y, expected;
    } cases[] = {{0, 190, 1},  {640, 240, 1}, {0, 240, 1},   {640, 190, 1},
                 {-1, 200, 0}, {641, 200, 0}, {300, 189, 0}, {300, 241, 0}};
    for (const auto& each : cases) {
        clickAt(each.x, each.y);
        EXPECT_EQ(mix->scrubbing, each.expected) << each.x << ", " << each.y;
        release();
        EXPECT_EQ(mix->scrubbing, 0);
    }
}

TEST_F(KeysMixScrub, TwelvePixels_TwoFramesEitherWay) {
    EXPECT_EQ(frameAfterDrag(12), 10);
    EXPECT_EQ(frameAfterDrag(-12), 6);
}

TEST_F(KeysMixScrub, FivePixelsAFrame_TruncatedTowardZero) {
    EXPECT_EQ(frameAfterDrag(4), 8);
    EXPECT_EQ(frameAfterDrag(-4), 8);
    EXPECT_EQ(frameAfterDrag(5), 9);
    EXPECT_EQ(frameAfterDrag(-5), 7);
    EXPECT_EQ(frameAfterDrag(9), 9);
    EXPECT_EQ(frameAfterDrag(-9), 7);
}

TEST_F(KeysMixScrub, PastTheEnds_Wraps) {
    EXPECT_EQ(frameAfterDrag(55), 19);
    EXPECT_EQ(frameAfterDrag(60), 0);  // 8 + 12 = 20
    EXPECT_EQ(frameAfterDrag(-40), 0);
    EXPECT_EQ(frameAfterDrag(-45), 19);
}

// Further than the clip is long: 8 + 60 = 68 = 3 x 20 + 8; 8 - 61 = -53 = -3 x 20 + 7.
TEST_F(KeysMixScrub, LongDrags_StayInsideTheClip) {
    EXPECT_EQ(frameAfterDrag(300), 8);
    EXPECT_EQ(frameAfterDrag(-305), 7);
    pretendClip(0, 1);
    for (const int pixels : {-640, -7, 0, 7, 640}) {
        EXPECT_EQ(frameAfterDrag(pixels), 0) << pixels;
    }
}

// Always from the frame where the drag began, whatever was shown in between.
TEST_F(KeysMixScrub, DragBackAndForth_FromTheSameStart) {
    clickAt(300, 200);
    dragTo(350);
    EXPECT_EQ(mix->layer[1].frame, 18);
    mix->layer[1].frame = 2;
    dragTo(310, 10);  // outside the strip the drag goes on
    EXPECT_EQ(mix->layer[1].frame, 10);
}

TEST_F(KeysMixScrub, HeldWithoutStart_DoesNothing) {
    clickAt(300, 100);
    dragTo(400, 200);
    EXPECT_EQ(mix->layer[1].frame, 8);
    EXPECT_EQ(mix->scrubbing, 0);
}

TEST_F(KeysMixScrub, Release_Ends) {
    clickAt(300, 200);
    dragTo(310);
    release();
    EXPECT_EQ(mix->scrubbing, 0);
    mix->layer[1].frame = 4;
    dragTo(400);
    EXPECT_EQ(mix->layer[1].frame, 4);
}

TEST_F(KeysMixScrub, ActiveLayer_IsScrubbed) {
    mix->activeLayer = 0;
    clickAt(100, 200);
    dragTo(110);
    EXPECT_EQ(mix->layer[0].frame, 5);
    EXPECT_EQ(mix->layer[1].frame, 8);
}

// The top layer plays 30 frames, the bottom one 7: 8 + 24 = 32 = 30 + 2 and 3 + 6 = 9 = 7 + 2.
TEST_F(KeysMixScrub, EachLayer_WrapsAtTheEndOfItsOwnClip) {
    pretendClip(3, 30);
    pretendClip(2, 7);
    mix->layer[1] = {3, 8, PLAY_FORWARD};
    mix->layer[0] = {2, 3, PLAY_FORWARD};
    clickAt(100, 200);
    dragTo(220);
    EXPECT_EQ(mix->layer[1].frame, 2);
    EXPECT_EQ(mix->layer[0].frame, 3);
    dragTo(55);  // 9 frames back
    EXPECT_EQ(mix->layer[1].frame, 29);
    release();
    mix->activeLayer = 0;
    clickAt(100, 200);
    dragTo(130);
    EXPECT_EQ(mix->layer[0].frame, 2);
    EXPECT_EQ(mix->layer[1].frame, 29);
    dragTo(80);  // 4 frames back
    EXPECT_EQ(mix->layer[0].frame, 6);
}

TEST_F(KeysMixScrub, ReleaseUnderAHeldFilterLetter_EndsTheScrub) {
    clickAt(300, 200);
    setKeys({}, {24});
    dragTo(320);
    ASSERT_EQ(mix->scrubbing, 1);
    release();
    EXPECT_EQ(mix->filterKeyHeld, 2);
    EXPECT_EQ(mix->scrubbing, 0);
    setKeys({});
    dragTo(400);
    EXPECT_EQ(mix->layer[1].frame, 8);
}

TEST_F(KeysMixScrub, FilterLetterHeld_NoScrub) {
    setKeys({}, {24});
    clickAt(300, 200);
    EXPECT_EQ(mix->scrubbing, 0);
    dragTo(400);
    EXPECT_EQ(mix->layer[1].frame, 8);
}

TEST_F(KeysMixScrub, FilterLetterDuringTheDrag_FrameStaysAndDragGoesOn) {
    clickAt(300, 200);
    setKeys({}, {24});
    dragTo(400);
    EXPECT_EQ(mix->layer[1].frame, 8);
    EXPECT_EQ(mix->scrubbing, 1);
    setKeys({});
    dragTo(310);
    EXPECT_EQ(mix->layer[1].frame, 10);
}

// While a clip loads its header counts its frames already: a drag would leave the layer at a frame
// that a shorter clip, loaded next, does not have.
TEST_F(KeysMixScrub, ClipNotReady_NothingMovesAndNoDragBegins) {
    moxel[0].state = CLIP_LOADING;
    clickAt(300, 200);
    EXPECT_EQ(mix->scrubbing, 0);
    dragTo(400);
    EXPECT_EQ(mix->layer[1].frame, 8);
    // Nor when it becomes ready under the drag.
    pretendClip(0, kFrames);
    dragTo(500);
    EXPECT_EQ(mix->layer[1].frame, 8);
}

TEST_F(KeysMixScrub, ClipNoLongerReady_TheDragStops) {
    clickAt(300, 200);
    moxel[0].state = CLIP_LOADING;
    dragTo(400);
    EXPECT_EQ(mix->layer[1].frame, 8);
}

TEST_F(KeysMixScrub, ClipWithoutFrames_NothingMoves) {
    mix->nbDecks = 0;
    moxel[0].frameCount = 0;
    clickAt(300, 200);
    dragTo(400);
    EXPECT_EQ(mix->layer[1].frame, 8);
}

}  // namespace
