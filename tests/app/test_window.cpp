// What else happens on a display: other windows over the program's, windows that move, vanish and
// come back, another size, full screen. The home screen stands still, so the program has nothing
// new to show when its window comes back: it has to be whole all the same.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "app/options_pages.h"
#include "app/screens.h"
#include "app/stage.h"

namespace {

using app::Screen;
using app::Shot;
using app::Stage;
using app::WindowPlace;

constexpr uint16_t kCover = 0x07E0;  // full green, which home has nowhere
constexpr int kWhile = 4;            // pictures for which something stays as it is

Screen screenOf(int width, int height) {
    return {width, height, app::usualDepth(24)};
}

// The window's picture with its top left at (left, top) of a black screen.
Shot onScreen(const Shot& window, int left, int top, Screen screen) {
    Shot result = app::blackShot(screen.width, screen.height);
    for (int y = std::max(top, 0); y < std::min(top + window.height, screen.height); ++y) {
        for (int x = std::max(left, 0); x < std::min(left + window.width, screen.width); ++x) {
            result.at(x, y) = window.at(x - left, y - top);
        }
    }
    return result;
}

Shot covered(Shot screen, WindowPlace place) {
    for (int y = place.y; y < place.y + place.height; ++y) {
        for (int x = place.x; x < place.x + place.width; ++x) {
            screen.at(x, y) = kCover;
        }
    }
    return screen;
}

class Window : public testing::Test {
protected:
    void start(int width = 1280, int height = 720) {
        display = screenOf(width, height);
        stage_ = std::make_unique<Stage>(display);
        stage().startAtHome();
        stage().passPictures(kWhile);
        home = stage().look();
        stage().expectKeeps(home, kWhile, "home stands still");
    }
    Stage& stage() { return *stage_; }
    app::XLink& link() { return stage().link(); }

    // Soon, and then in every picture of a stretch.
    void expectScreen(const Shot& wanted, const std::string& what) {
        stage().await([&](const Shot&) { return stage().lookAtScreen() == wanted; }, what);
        stage().passPictures(kWhile);
        EXPECT_EQ(app::difference(stage().lookAtScreen(), wanted), "same") << what;
    }
    void expectUnmoved(const std::string& what) {
        expectScreen(onScreen(home, 0, 0, display), what);
    }
    // The program goes on and answers.
    void expectAnswers() {
        stage().focus();
        stage().tap(XK_Right);
        EXPECT_EQ(app::homeSelection(stage().look()), 1);
        stage().tap(XK_Left);
        stage().expectShows(home, "MIX again");
    }

    Screen display;
    Shot home;

private:
    std::unique_ptr<Stage> stage_;
};

// With the options, for another size.
class WindowSize : public app::OptionsPages {
protected:
    WindowSize() : OptionsPages(screenOf(1280, 1024)) {}
};

}  // namespace

TEST_F(Window, CoveredByAnotherAndUncovered_ComesBackWhole) {
    start();
    // A part of it, a strip of a pixel's height, all of it.
    for (const WindowPlace& place :
         {WindowPlace{0, 400, 250, 300, 200}, {0, 0, 300, 1280, 1}, {0, 0, 0, 1280, 720}}) {
        const unsigned long other = link().cover(place, kCover);
        expectScreen(covered(home, place), "covered");
        link().uncover(other);
        expectUnmoved("uncovered");
    }
    expectAnswers();
}

TEST_F(Window, ChangesUnderACover_AreThereWhenItGoes) {
    start();
    const unsigned long other = link().cover({0, 320, 180, 640, 360}, kCover);
    stage().tap(XK_Right);
    link().uncover(other);
    stage().await([](const Shot& shot) { return app::homeSelection(shot) == 1; }, "EDIT");
    stage().tap(XK_Left);
    expectUnmoved("MIX again");
}

TEST_F(Window, MovedPartlyOffTheScreenAndBack_IsWhole) {
    start();
    const unsigned long window = stage().window().id;
    struct Place {
        int x;
        int y;
    };
    for (const Place place : {Place{-700, -400}, {600, 0}, {0, 719}, {-1, 1}}) {
        link().move(window, place.x, place.y);
        expectScreen(onScreen(home, place.x, place.y, display), "partly off");
        link().move(window, 0, 0);
        expectUnmoved("back");
    }
    expectAnswers();
}

TEST_F(Window, MovedUnderAnotherAndBack_IsWhole) {
    start(1600, 900);
    const WindowPlace place = {0, 500, 300, 400, 300};
    const unsigned long other = link().cover(place, kCover);
    const unsigned long window = stage().window().id;
    for (const int x : {320, 17, 0}) {
        link().move(window, x, 180 * x / 320);
        expectScreen(covered(onScreen(home, x, 180 * x / 320, display), place), "under the other");
    }
    link().raise(window);
    expectUnmoved("in front of it");
    link().uncover(other);
    expectAnswers();
}

TEST_F(Window, HiddenAndShownAgain_IsWhole) {
    start();
    const unsigned long window = stage().window().id;
    link().hide(window);
    stage().passPictures(kWhile);
    EXPECT_EQ(stage().window().id, 0u);
    link().show(window);
    expectUnmoved("shown again");
    expectAnswers();
}

TEST_F(Window, FullScreenOfAStillPicture_IsWholeThereAndBack) {
    start();
    for (int each = 0; each < 2; ++each) {
        stage().tap(XK_f);
        EXPECT_TRUE(stage().isFullScreen());
        expectUnmoved("full screen");
        stage().tap(XK_f);
        EXPECT_FALSE(stage().isFullScreen());
        expectUnmoved("windowed");
        stage().focus();
    }
    expectAnswers();
}

// No mode of the display has the window's size: the picture stands in the middle of a larger one.
TEST_F(Window, FullScreenOfALargerDisplay_IsBlackAround) {
    start(1600, 900);
    const Shot before = stage().lookAtScreen();
    stage().tap(XK_f);
    expectScreen(onScreen(home, 160, 90, display), "full screen");
    stage().tap(XK_f);
    expectScreen(before, "windowed");
    stage().focus();
    expectAnswers();
}

// 1024 x 768 and back: home stands in the middle, black around it; no pixel is lost. Its item FULL
// SCREEN, which says the size, is left out.
TEST_F(WindowSize, AnotherSizeAndBack_SameHomeInTheMiddleOfBlack) {
    stage.startAtHome();
    const Shot home = stage.look();
    openOptions();
    click({180, 60});
    left = 192;
    top = 204;
    awaitPage0();
    stage.tap(XK_z);
    stage.await([](const Shot& shot) { return app::homeSelection(shot) == 0; }, "home");
    Shot small = stage.look();
    ASSERT_EQ(small.width, 1024);
    ASSERT_EQ(small.height, 768);
    for (int y = 0; y < 360; ++y) {
        for (int x = 0; x < 640; ++x) {
            const bool saysSize = x >= 273 && x < 367 && y >= 179 && y < 273;
            if (!saysSize) {
                ASSERT_EQ(small.at(192 + x, 204 + y), home.at(320 + x, 180 + y)) << x << ", " << y;
            }
            small.at(192 + x, 204 + y) = 0;
        }
    }
    EXPECT_EQ(app::difference(small, app::blackShot(1024, 768)), "same") << "black around it";
    openOptions();
    click({30, 60});
    left = 320;
    top = 180;
    awaitPage0();
    stage.tap(XK_z);
    stage.expectShows(home, "1280 x 720 again");
    stage.expectKeeps(home, kWhile, "and stays");
    EXPECT_EQ(stage.closeWindow(), 1);
}
