// The controller's options, with the joystick double: assigned, saved, found again after a restart,
// and played.
#include "app/expected.h"
#include "app/options_pages.h"
#include "app/pad.h"
#include "app/pictures.h"
#include "app/tiny_clip.h"

namespace {

using app::Box;
using app::Pad;
using app::Place;
using app::Shot;

constexpr uint16_t kRed = 0xF904;
constexpr uint16_t kGreen = 0x27E4;
constexpr uint16_t kLit = 0x211F;
// Top left corners.
constexpr Place kSquares[14] = {{140, 90},  {170, 120}, {140, 150}, {110, 120}, {475, 80},
                                {525, 120}, {475, 160}, {430, 120}, {140, 10},  {475, 10},
                                {140, -30}, {475, -30}, {360, 120}, {260, 120}};

class ControllerOptions : public app::OptionsPages {
protected:
    // Controller functions by the button that this test gives them: 30 + the number of the square.
    enum Button {
        UP = 30,
        RIGHT = 31,
        DOWN = 32,
        LEFT = 33,
        BACK = 35,
        CONFIRM = 36,
        BLOCK_REVERSE = 38,
        HOLD = 42,
        SHOW = 43
    };

    void press(int button) {
        pad.set(button, true);
        stage.passPictures(app::kPicturesToSee);
    }
    void release(int button) {
        pad.set(button, false);
        stage.passPictures(app::kPicturesToSee);
    }
    void tap(int button) {
        press(button);
        release(button);
    }
    // Its lower rows: the button's number stands above them.
    Box square(int entry) { return box(kSquares[entry].x, kSquares[entry].y + 20, 30, 10); }
    void awaitSquare(int entry, uint16_t colour, const std::string& what) {
        stage.await([&](const Shot& shot) { return app::isFilled(shot, square(entry), colour); },
                    what + " square " + std::to_string(entry));
    }
    void assign(int entry) {
        click({kSquares[entry].x + 15, kSquares[entry].y + 15});
        const Shot waiting = stage.await(
            [&](const Shot& shot) {
                return app::isFilled(shot, box(100, 200, 440, 20), app::kGround);
            },
            "the waiting box");
        if (entry == 0) {
            stage.keepShot(waiting);
        }
        press(30 + entry);
        awaitSquare(entry, kLit, "lit");
        release(30 + entry);
        awaitSquare(entry, kGreen, "green");
    }
    void awaitHome() {
        stage.await([](const Shot& shot) { return app::homeSelection(shot) >= 0; }, "home");
    }
    // The frame of the counting clip that the shot shows, or -1.
    int frameOf(const Shot& shot) {
        for (int i = 0; i < kFrames; ++i) {
            if (shot == app::placed(app::numberedPicture(i))) {
                return i;
            }
        }
        return -1;
    }
    // By two looks a few pictures apart, far less than half a turn.
    bool runsForward() {
        const Shot before = stage.look();
        stage.passPictures(app::kPicturesToSee);
        const Shot after = stage.look();
        const int first = frameOf(before);
        const int second = frameOf(after);
        EXPECT_GE(first, 0);
        EXPECT_GE(second, 0);
        EXPECT_NE(first, second);
        return (second - first + kFrames) % kFrames < kFrames / 2;
    }

    void prepareClips() {
        std::vector<app::TinyFrame> frames;
        for (int i = 0; i < kFrames; ++i) {
            frames.push_back({app::numberedPicture(i), {}});
        }
        stage.folder.addClip("count.m19", app::tinyClip(frames));
        stage.folder.addClip("still.m19", app::tinyClip({{still, {}}}));
        stage.folder.addPlaylist("STILL", {"still.m19"});
        stage.folder.addPlaylist("BOTH", {"count.m19", "still.m19"});
        stage.folder.writePlaylists();
    }
    void assignAll() {
        openOptions();
        stage.keepShot(stage.look());
        click({60, 340});
        for (int entry = 0; entry < 14; ++entry) {
            awaitSquare(entry, kRed, "red");
        }
        for (int entry = 0; entry < 14; ++entry) {
            assign(entry);
        }
        const Shot done = stage.look();
        stage.keepShot(done);
        pad.set(5, true);
        stage.expectKeeps(done, 6, "a button without a function");
        release(5);
        click({600, 380});
        awaitPage0();
        std::string expected = app::kHead;
        for (int button = 30; button < 44; ++button) {
            expected += "\t<button>" + std::to_string(button) + "</button>\n";
        }
        EXPECT_EQ(stage.folder.read("userdata/gamecontroller.xml"), expected + "</all>\n");
    }
    void loadTheSecondPlaylist() {
        tap(RIGHT);
        EXPECT_EQ(app::homeSelection(stage.look()), 1);
        tap(LEFT);
        tap(CONFIRM);
        stage.await([](const Shot& shot) { return app::overMenuSelection(shot, 2) == 0; },
                    "the list");
        tap(DOWN);
        tap(UP);
        tap(DOWN);
        EXPECT_EQ(app::overMenuSelection(stage.look(), 2), 1);
        tap(CONFIRM);
        stage.await([&](const Shot& shot) { return frameOf(shot) >= 0; }, "the counting clip");
    }
    void playLayers() {
        stage.passPictures(60);
        EXPECT_TRUE(runsForward());
        tap(CONFIRM);
        EXPECT_FALSE(runsForward()) << "reversed";
        press(BLOCK_REVERSE);
        tap(CONFIRM);
        release(BLOCK_REVERSE);
        EXPECT_FALSE(runsForward()) << "the other button keeps it from reversing";
        press(HOLD);
        stage.expectKeeps(stage.look(), 6, "held");
        release(HOLD);
        tap(RIGHT);
        stage.expectShows(app::placed(still), "the next clip");
        tap(DOWN);
        tap(RIGHT);
        stage.expectShows(app::placed(still), "the bottom layer changed, the top one stays");
        tap(UP);
        tap(SHOW);
        stage.await([&](const Shot& shot) { return !(shot == app::placed(still)); }, "the panel");
        tap(SHOW);
        stage.expectShows(app::placed(still), "no panel");
    }
    void goHome() {
        press(HOLD);
        press(SHOW);
        release(SHOW);
        release(HOLD);
        stage.await([](const Shot& shot) { return app::overMenuShown(shot, 2); }, "the list again");
        tap(BACK);
        awaitHome();
    }

    static constexpr int kFrames = 64;
    const Shot still = app::richPicture(60);
    Pad pad{stage.folder.path() + "/pad"};
};

}  // namespace

TEST_F(ControllerOptions, FourteenFunctions_AssignedFoundAgainAndPlayed) {
    const Pad::Plugged plugged(pad);
    prepareClips();
    stage.startAtHome();
    assignAll();
    tap(BACK);
    awaitHome();
    EXPECT_EQ(stage.closeWindow(), 1);

    // From here on the controller alone.
    stage.startAtHome();
    loadTheSecondPlaylist();
    playLayers();
    goHome();
    EXPECT_EQ(stage.closeWindow(), 1);
}
