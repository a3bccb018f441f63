// Displays of several kinds, and what is hardest to bring there: every colour, everything new in
// each picture, almost nothing new. With 24 bits, as most displays have, if nothing else is asked
// for.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "app/expected.h"
#include "app/pictures.h"
#include "app/screens.h"
#include "app/stage.h"
#include "app/tiny_clip.h"

namespace {

using app::Screen;
using app::Shot;
using app::Stage;

Screen screenOf(int width, int height, bool sharedMemory = true) {
    return {width, height, app::usualDepth(24), sharedMemory};
}

// 230,400 pixels: each of the 65,536 colours at least three times.
Shot everyColour() {
    Shot picture = app::blackShot(640, 360);
    for (size_t i = 0; i < picture.pixels.size(); ++i) {
        picture.pixels[i] = static_cast<uint16_t>(i);
    }
    return picture;
}

// One picture, and the same with one pixel changed: corners, edges, the middle.
std::vector<Shot> singlePixels() {
    struct Spot {
        int x;
        int y;
    };
    const Shot base = app::richPicture(50);
    std::vector<Shot> pictures = {base};
    for (const Spot spot : {Spot{0, 0}, {639, 0}, {0, 359}, {639, 359}, {320, 180}, {1, 179}}) {
        Shot picture = base;
        picture.at(spot.x, spot.y) = static_cast<uint16_t>(~base.at(spot.x, spot.y));
        pictures.push_back(picture);
    }
    return pictures;
}

constexpr int kNoisePictures = 13;

// Every pixel of every row is another one in the next picture.
std::vector<Shot> noise() {
    std::vector<Shot> pictures;
    uint32_t state = 1;
    for (int i = 0; i < kNoisePictures; ++i) {
        Shot picture = app::blackShot(640, 360);
        for (uint16_t& pixel : picture.pixels) {
            state = state * 1664525 + 1013904223;
            // Four bits that count the pictures keep neighbours in time apart.
            pixel = static_cast<uint16_t>((state >> 20) << 4 | static_cast<uint32_t>(i));
        }
        pictures.push_back(picture);
    }
    return pictures;
}

class DisplayKinds : public testing::Test {
protected:
    void start(Screen screen, const std::vector<Shot>& pictures) {
        std::vector<app::TinyFrame> frames;
        for (const Shot& picture : pictures) {
            frames.push_back({picture, {}});
            windows.push_back(app::placed(picture, screen));
        }
        stage_ = std::make_unique<Stage>(screen);
        stage().folder.addClip("clip.m19", app::tinyClip(frames));
        stage().folder.addClip("still.m19", app::tinyClip({{still, {}}}));
        stage().folder.addPlaylist("BOTH", {"clip.m19", "still.m19"});
        stage().folder.writePlaylists();
        stage().startMix(8);
    }
    Stage& stage() { return *stage_; }

    int frameOf(const Shot& shot) const {
        const auto found = std::find(windows.begin(), windows.end(), shot);
        return found == windows.end() ? -1 : static_cast<int>(found - windows.begin());
    }
    // Looks until each of the clip's pictures was seen; every look has to show one of them.
    void watch() {
        std::set<int> seen;
        const auto sawAll = [&] {
            const Shot shot = stage().look();
            const int frame = frameOf(shot);
            if (frame < 0) {
                ADD_FAILURE() << "none of the clip's pictures: " << stage().keepShot(shot);
            }
            seen.insert(frame);
            return frame < 0 || seen.size() == windows.size();
        };
        EXPECT_TRUE(app::waitUntil(sawAll)) << seen.size() << " pictures seen";
    }
    // Held, it is one picture for as long as it is held.
    void expectHolds() {
        stage().press(XK_space);
        const Shot held = stage().look();
        EXPECT_GE(frameOf(held), 0);
        stage().expectKeeps(held, 5, "held");
        stage().release(XK_space);
    }
    // Over a still picture: what comes and goes leaves nothing behind.
    void expectPanelAndListLeaveNothing() {
        const Shot plain = app::placed(still);
        stage().tap(XK_Right);
        stage().expectShows(plain, "the still picture");
        for (const unsigned long key : {XK_Tab, XK_Return}) {
            for (int each = 0; each < 2; ++each) {
                stage().tap(key);
                EXPECT_NE(stage().look(), plain) << "something over the picture";
                stage().tap(key);
                stage().expectShows(plain, "the still picture again");
                stage().expectKeeps(plain, 2, "and nothing else");
            }
        }
        stage().tap(XK_Left);
    }

    const Shot still = app::richPicture(51);
    std::vector<Shot> windows;  // of each frame

private:
    std::unique_ptr<Stage> stage_;
};

void expectHomeAnswers(Screen screen) {
    Stage stage(screen);
    stage.startAtHome();
    stage.tap(XK_Right);
    EXPECT_EQ(app::homeSelection(stage.look()), 1);
    EXPECT_EQ(stage.closeWindow(), 1);
}

}  // namespace

TEST_F(DisplayKinds, PictureOfAllColours_IsExact) {
    start(screenOf(1280, 720), {everyColour()});
    stage().expectShows(windows[0], "all 65,536 colours");
}

TEST_F(DisplayKinds, PictureOfAllColoursOnANarrowDisplay_IsExact) {
    start(screenOf(720, 481), {everyColour()});
    stage().expectShows(windows[0], "all 65,536 colours");
}

TEST_F(DisplayKinds, NoiseInMotion_EveryPictureIsWhole) {
    start(screenOf(1280, 720), noise());
    watch();
    expectHolds();
    expectPanelAndListLeaveNothing();
    watch();
}

TEST_F(DisplayKinds, SinglePixelsInMotion_EveryPictureIsWhole) {
    start(screenOf(1280, 720), singlePixels());
    watch();
    expectHolds();
}

// A display on another machine has no memory in common with the program.
TEST_F(DisplayKinds, WithoutSharedMemory_EveryPictureIsWhole) {
    start(screenOf(1280, 720, false), noise());
    watch();
    expectHolds();
    expectPanelAndListLeaveNothing();
    EXPECT_EQ(stage().closeWindow(), 1);
}

TEST(OtherDepths, Display15BitsDeep_HomeAnswers) {
    expectHomeAnswers({1280, 720, 15});
}

TEST(OtherDepths, Display8BitsDeep_HomeAnswers) {
    expectHomeAnswers({1280, 720, 8});
}

// SDL 1.2 knows no channels of ten bits: the window may stay black.
TEST(OtherDepths, Display30BitsDeep_GoesOn) {
    Stage stage({1280, 720, 30});
    stage.start();
    stage.passPictures(60);
    stage.tap(XK_Right);
    EXPECT_EQ(stage.closeWindow(), 1);
}
