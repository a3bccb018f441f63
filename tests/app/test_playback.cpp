// Clips that move: pace, direction, hold, scrubbing, decks.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "app/expected.h"
#include "app/pictures.h"
#include "app/stage.h"
#include "app/tiny_clip.h"

namespace {

using app::Shot;
using app::Stage;

constexpr int kFrames = 40;  // two full blocks and one of 8 frames
constexpr int kShortestFrameMs = 39;

class Playback : public testing::Test {
protected:
    Playback() {
        std::vector<app::TinyFrame> film;
        for (int frame = 0; frame < kFrames; ++frame) {
            film.push_back({app::numberedPicture(frame), {}});
            windows.push_back(app::placed(film.back().picture));
        }
        stage.folder.addClip("film.m19", app::tinyClip(film));
        stage.folder.addClip("still.m19", app::tinyClip({{still, {}}}));
    }

    void start(const std::vector<std::string>& tracks) {
        stage.folder.addPlaylist("PLAY", tracks);
        stage.folder.writePlaylists();
        stage.startMix(static_cast<int>(tracks.size()) + 1);
    }

    static int frameIn(const Shot& shot, const std::vector<Shot>& windows) {
        const auto found = std::find(windows.begin(), windows.end(), shot);
        return found == windows.end() ? -1 : static_cast<int>(found - windows.begin());
    }
    // The frame that the window shows; a picture that is none of them fails the test.
    int frameShown() {
        const int frame = frameIn(stage.look(), windows);
        EXPECT_GE(frame, 0) << "not a frame of the film";
        return frame;
    }

    // Watches a stretch of pictures: each has to be the frame that `step` frames a picture lead to,
    // from the first one on. A look may fall between a picture and its being counted: one more or
    // less is right too.
    void expectPlays(int pictures, int step, const char* what) {
        int first = 0;
        const int firstFrame = frameIn(stage.lookInStep(&first), windows);
        ASSERT_GE(firstFrame, 0) << what;
        for (int now = first; now < first + pictures;) {
            const Shot shot = stage.lookInStep(&now);
            const int frame = frameIn(shot, windows);
            const int wanted = around(firstFrame + step * (now - first));
            const int off = around(frame - wanted + 1);
            ASSERT_TRUE(frame >= 0 && off <= 2) << what << ": frame " << frame << " instead of "
                                                << wanted << ": " << stage.keepShot(shot);
        }
    }

    // The frame at which the picture rests.
    int restingFrame() {
        stage.passPictures(app::kPicturesToSee);
        const int frame = frameShown();
        stage.passPictures(2);
        EXPECT_EQ(frameShown(), frame) << "the picture does not rest";
        return frame;
    }
    static int around(int frame) { return (frame % kFrames + kFrames) % kFrames; }

    Shot still = app::richPicture(3);
    std::vector<Shot> windows;  // of each frame
    Stage stage;
};

}  // namespace

TEST_F(Playback, Film_AdvancesByOneFrameAPictureAndWraps) {
    start({"film.m19"});
    const long long begun = app::nowMs();
    const int shown = stage.picturesShown();
    expectPlays(2 * kFrames, 1, "forward");
    EXPECT_GE(app::nowMs() - begun, (stage.picturesShown() - shown - 2) * kShortestFrameMs)
        << "faster than the pace";
}

TEST_F(Playback, SpaceHolds_AndZTurnsRound) {
    start({"film.m19"});
    stage.keyDown(XK_space);
    const int held = restingFrame();
    stage.expectKeeps(windows[static_cast<size_t>(held)], 10, "held");
    stage.release(XK_space);
    expectPlays(10, 1, "forward");

    stage.tap(XK_z);
    expectPlays(kFrames + 10, -1, "backward");
    stage.tap(XK_z);
    expectPlays(10, 1, "forward again");
    // With "w" held, "z" does nothing.
    stage.press(XK_w);
    stage.tap(XK_z);
    expectPlays(10, 1, "not turned");
    stage.release(XK_w);
}

// The strip that scrubs lies at y 190 to 240 of the picture; 5 pixels are a frame.
TEST_F(Playback, MouseDrag_Scrubs) {
    constexpr int kX = 320 + 300;
    constexpr int kY = 180 + 240;
    start({"film.m19"});
    stage.pointerTo(kX, kY);
    stage.passPictures(app::kPicturesToSee);
    stage.mouseDown();
    const int first = restingFrame();
    struct Drag {
        int pixels;
        int frames;
    };
    for (const Drag drag : {Drag{12, 2},
                            {4, 0},
                            {5, 1},
                            {60, 12},
                            {-12, -2},
                            {-4, 0},
                            {-150, -30},
                            {199, 39},
                            {0, 0}}) {
        stage.pointerTo(kX + drag.pixels, kY + 100);
        EXPECT_EQ(restingFrame(), around(first + drag.frames)) << drag.pixels << " pixels";
    }
    stage.mouseUp();
    stage.passPictures(app::kPicturesToSee);
    expectPlays(10, 1, "plays on");

    // A pixel below the strip, and above it.
    for (const int y : {180 + 241, 180 + 189}) {
        stage.pointerTo(kX, y);
        stage.passPictures(app::kPicturesToSee);
        stage.mouseDown();
        stage.passPictures(app::kPicturesToSee);
        expectPlays(10, 1, "no scrubbing there");
        stage.mouseUp();
        stage.passPictures(app::kPicturesToSee);
    }
}

TEST_F(Playback, SecondOfThreeFilesMissing_TwoDecksThatWrap) {
    start({"film.m19", "nowhere.m19", "still.m19"});
    EXPECT_GE(frameShown(), 0);
    stage.tap(XK_Left);
    stage.expectShows(app::placed(still), "left of the first deck is the last");
    stage.tap(XK_Right);
    EXPECT_GE(frameShown(), 0) << "right of the last deck is the first";
    stage.tap(XK_Right);
    stage.expectShows(app::placed(still), "the second deck is the third file");
    EXPECT_EQ(stage.closeWindow(), 1);
    const std::string output = stage.output();
    EXPECT_NE(output.find("./videos/film.m19\n./videos/still.m19\n"), std::string::npos)
        << "files without a missing one between: " << output;
}

// Back to deck 0 by Right: the film restarts at frame 0 whenever its deck is chosen.
TEST_F(Playback, DeckChange_RestartsTheClip) {
    start({"film.m19", "still.m19"});
    stage.press(XK_space);
    stage.tap(XK_Right);
    stage.expectShows(app::placed(still), "the still");
    stage.tap(XK_Right);
    EXPECT_EQ(restingFrame(), 0);
    stage.release(XK_space);
}

// The bottom layer plays on below the top one, and stands still once both show the same clip.
TEST_F(Playback, BottomLayer_PlaysUntilTheTopShowsTheSameClip) {
    start({"film.m19", "still.m19"});
    stage.tap(XK_Right);
    stage.tap(XK_2);
    std::vector<Shot> blends;
    for (int frame = 0; frame < kFrames; ++frame) {
        blends.push_back(app::placed(app::blended(app::numberedPicture(frame), still)));
    }
    const int before = frameIn(stage.look(), blends);
    EXPECT_GE(before, 0);
    stage.passPictures(5);
    const int after = frameIn(stage.look(), blends);
    EXPECT_GE(after, 0);
    EXPECT_NE(after, before);

    // The bottom layer goes to the still: the film's last frame stays below it.
    stage.tap(XK_Down);
    stage.tap(XK_Right);
    const Shot frozen = stage.look();
    EXPECT_GE(frameIn(frozen, blends), 0);
    stage.expectKeeps(frozen, 8, "frozen");
}
