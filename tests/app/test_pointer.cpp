// A quick hand, and a flood of events between two frames.
#include <signal.h>

#include <gtest/gtest.h>

#include "app/screens.h"
#include "app/stage.h"

namespace {

using app::Stage;

constexpr int kX = 320;  // of the picture in the window
constexpr int kY = 180;
constexpr int kQuickMs = 5;
constexpr int kMotions = 600;
constexpr app::Box kOptionsTile = {kX + 200, kY + 220, 0, 0};
constexpr app::Box kBack = {kX + 600, kY + 380, 0, 0};

class Pointer : public testing::Test {
protected:
    bool homeShown() { return app::homeSelection(stage.look()) >= 0; }
    void quickClick(app::Box at) {
        stage.pointerTo(at.x, at.y);
        stage.passPictures(app::kPicturesToSee);
        stage.mouseDown();
        app::sleepMs(kQuickMs);
        stage.mouseUp();
        stage.passPictures(app::kPicturesToSee);
    }
    // What happens meanwhile reaches the program within one frame.
    template <typename Act>
    void withinOneFrame(Act act) {
        kill(stage.processId(), SIGSTOP);
        act();
        kill(stage.processId(), SIGCONT);
        stage.passPictures(app::kPicturesToSee);
    }
    void wave(app::Box end) {
        for (int i = 0; i < kMotions; ++i) {
            stage.pointerTo(100 + i % 200, 100 + i % 150);
        }
        stage.pointerTo(end.x, end.y);
    }

    Stage stage;
};

}  // namespace

// A tap on a trackpad is shorter than a frame: most begin and end within one.
TEST_F(Pointer, ClicksOf5Ms_EveryOneCounts) {
    stage.startAtHome();
    for (int each = 0; each < 10; ++each) {
        quickClick(kOptionsTile);
        EXPECT_FALSE(homeShown()) << each;
        quickClick(kBack);
        EXPECT_TRUE(homeShown()) << each;
    }
}

TEST_F(Pointer, SixHundredMotionsAndAClickInOneFrame_TheClickCounts) {
    stage.startAtHome();
    withinOneFrame([this] {
        wave(kOptionsTile);
        stage.mouseDown();
        stage.mouseUp();
    });
    EXPECT_FALSE(homeShown());
}

TEST_F(Pointer, SixHundredMotionsAndTheClosingInOneFrame_TheProgramEnds) {
    stage.startAtHome();
    kill(stage.processId(), SIGSTOP);
    wave(kBack);
    stage.askToClose();
    kill(stage.processId(), SIGCONT);
    EXPECT_EQ(stage.waitExit(), 1);
}
