#include <gtest/gtest.h>
// GoogleTest comes before X's macros.
#include <X11/XKBlib.h>

#include <filesystem>
#include <memory>
#include <optional>

#include "app/clock.h"
#include "control/hands/test_window.h"
#include "tools/base/errors.h"
#include "tools/control/hands/xtest.h"

namespace {

using control::Key;
using control::Place;
using control::setLayout;
using control::TestServer;
using control::TestWindow;
using control::Time;
using control::XTestHands;

// Looked once at this time, hands see only what events tell them.
const Time kNow = Time{} + std::chrono::hours(1);

bool sees(XTestHands& hands, bool (*what)(XTestHands&)) {
    return app::waitUntil([&] {
        hands.look(kNow);
        return what(hands);
    });
}

bool reached(XTestHands& hands) {
    return hands.reachesVelmora();
}

bool lost(XTestHands& hands) {
    return !hands.reachesVelmora();
}

void tap(XTestHands& hands, Key key) {
    hands.key(key, true);
    hands.key(key, false);
}

size_t openFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<size_t>(std::distance(begin(files), end(files)));
}

class XTest : public testing::Test {
protected:
    TestServer server_;
};

TEST_F(XTest, Keys_ArriveInOrder) {
    TestWindow window;
    window.focus();
    XTestHands hands;
    tap(hands, Key::Q);
    hands.key(Key::A, true);
    hands.key(Key::A, true);  // is down already
    tap(hands, Key::BACKSPACE);
    hands.key(Key::A, false);
    hands.key(Key::A, false);
    tap(hands, Key::ONE);
    tap(hands, Key::UP);
    tap(hands, Key::RETURN);
    const std::string expected = "+q -q +a +BackSpace -BackSpace -a +1 -1 +Up -Up +Return -Return";
    EXPECT_EQ(window.waitFor(expected), expected);
    EXPECT_EQ(hands.missingKeys(), "");
    EXPECT_EQ(hands.road(), "XTest on " + server_.display());
}

TEST_F(XTest, KeyboardGrabbedByAnother_PressesNothing) {
    TestWindow window;
    window.focus();
    XTestHands hands;
    hands.look(kNow);
    hands.key(Key::A, true);
    EXPECT_EQ(window.waitFor("+a"), "+a");
    Display* const other = XOpenDisplay(server_.display().c_str());
    ASSERT_EQ(XGrabKeyboard(other, DefaultRootWindow(other), False, GrabModeAsync, GrabModeAsync,
                            CurrentTime),
              GrabSuccess);
    XFlush(other);
    EXPECT_TRUE(sees(hands, lost));
    hands.key(Key::Q, true);
    // The letting go of A is with the server before another's request may overtake it.
    EXPECT_TRUE(app::waitUntil([&] { return window.down() == 0; }));
    XUngrabKeyboard(other, CurrentTime);
    XFlush(other);
    EXPECT_TRUE(sees(hands, reached));
    tap(hands, Key::ONE);
    EXPECT_EQ(window.waitFor("+1 -1"), "+1 -1");
    XCloseDisplay(other);
}

TEST_F(XTest, Focus_ElsewherePressesNothing) {
    TestWindow window;
    TestWindow other({900, 500, 100, 100}, "other");
    other.focus();
    XTestHands hands;
    hands.look(kNow);
    EXPECT_NE(hands.stage(), 0U);
    EXPECT_FALSE(hands.reachesVelmora());
    tap(hands, Key::Q);
    hands.button(true);
    hands.button(false);
    hands.point(0, 0);
    window.focus();
    ASSERT_TRUE(sees(hands, reached));
    tap(hands, Key::W);
    EXPECT_EQ(window.waitFor("+w -w"), "+w -w");
    EXPECT_EQ(other.waitFor(""), "");
}

TEST_F(XTest, Focus_LostLetsGo) {
    TestWindow window;
    TestWindow other({900, 500, 100, 100}, "other");
    window.focus();
    XTestHands hands;
    hands.look(kNow);
    hands.point(0, 0);
    hands.key(Key::Q, true);
    hands.button(true);
    EXPECT_EQ(window.waitFor("at 320 180 +q +button"), "at 320 180 +q +button");
    EXPECT_EQ(window.down(), 2);
    other.focus();
    ASSERT_TRUE(sees(hands, lost));
    EXPECT_TRUE(app::waitUntil([&] { return window.down() == 0; }));
    window.focus();
    ASSERT_TRUE(sees(hands, reached));
    EXPECT_EQ(window.down(), 0);
}

TEST_F(XTest, Destructor_LetsGo) {
    TestWindow window;
    window.focus();
    {
        XTestHands hands;
        hands.key(Key::Q, true);
        hands.button(true);
        EXPECT_TRUE(app::waitUntil([&] { return window.down() == 2; }));
    }
    EXPECT_TRUE(app::waitUntil([&] { return window.down() == 0; }));
}

TEST_F(XTest, Window_GoneLetsGo) {
    auto window = std::make_unique<TestWindow>();
    TestWindow watcher({900, 500, 100, 100}, "other");
    window->focus();
    XTestHands hands;
    hands.look(kNow);
    hands.key(Key::Q, true);
    EXPECT_TRUE(app::waitUntil([&] { return watcher.down() == 1; }));
    window.reset();
    ASSERT_TRUE(sees(hands, lost));
    EXPECT_EQ(hands.stage(), 0U);
    EXPECT_TRUE(app::waitUntil([&] { return watcher.down() == 0; }));
}

TEST_F(XTest, Window_HiddenCountsAsGone) {
    TestWindow window;
    window.focus();
    XTestHands hands;
    hands.look(kNow);
    window.hide();
    ASSERT_TRUE(sees(hands, lost));
    EXPECT_EQ(hands.stage(), 0U);
}

TEST_F(XTest, Window_NewIsAnotherStage) {
    TestWindow other({900, 500, 100, 100},
                     "other");  // keeps the place of the first window's client
    auto window = std::make_unique<TestWindow>();
    window->focus();
    XTestHands hands;
    hands.look(kNow);
    const uint64_t first = hands.stage();
    EXPECT_NE(first, 0U);
    hands.key(Key::Q, true);
    EXPECT_TRUE(app::waitUntil([&] { return other.down() == 1; }));
    auto next = std::make_unique<TestWindow>();
    next->focus();
    window.reset();
    ASSERT_TRUE(sees(hands, reached));
    ASSERT_TRUE(app::waitUntil([&] {
        hands.look(kNow);
        return hands.stage() == next->id();
    }));
    EXPECT_NE(hands.stage(), first);
    EXPECT_TRUE(app::waitUntil([&] { return other.down() == 0; }));
}

struct Landing {
    Place window;
    const char* at;
};

class XTestPoint : public testing::TestWithParam<Landing> {
protected:
    TestServer server_;
};

TEST_P(XTestPoint, Origin_IsThePicturesTopLeft) {
    TestWindow window(GetParam().window);
    window.focus();
    XTestHands hands;
    hands.point(0, 0);
    EXPECT_EQ(window.waitFor(GetParam().at), GetParam().at);
}

// The picture of 640 x 360 is in the middle of the window.
INSTANTIATE_TEST_SUITE_P(Windows, XTestPoint,
                         testing::Values(Landing{{0, 0, 1280, 720}, "at 320 180"},
                                         Landing{{0, 0, 1024, 768}, "at 192 204"},
                                         Landing{{0, 0, 720, 576}, "at 40 108"},
                                         Landing{{100, 50, 720, 576}, "at 140 158"}));

TEST_F(XTest, Point_FollowsAMovedWindow) {
    TestWindow window({0, 0, 720, 576});
    window.focus();
    XTestHands hands;
    hands.look(kNow);
    window.move(200, 100);
    ASSERT_TRUE(app::waitUntil([&] {
        hands.look(kNow);
        hands.point(10, 20);
        return window.waitFor("at 250 228") == "at 250 228";
    }));
}

TEST_F(XTest, FullScreen_CoverTakesKeysAndPointer) {
    TestWindow window({300, 100, 720, 576});
    TestWindow other({900, 500, 100, 100}, "other");
    other.focus();
    XTestHands hands;
    hands.look(kNow);
    ASSERT_FALSE(hands.reachesVelmora());
    window.enterFullScreen();
    ASSERT_TRUE(sees(hands, reached));
    hands.point(0, 0);
    tap(hands, Key::F);
    EXPECT_EQ(window.waitFor("at 40 108 +f -f"), "at 40 108 +f -f");
}

TEST_F(XTest, FullScreen_OfAnotherProgramIsNotVelmoras) {
    TestWindow window;
    XTestHands hands;
    hands.look(kNow);
    TestWindow lock({0, 0, 100, 100}, "lock");
    lock.enterFullScreen();
    // Velmora's outer window, without its picture for a moment.
    XDestroySubwindows(window.display(), window.id());
    XSync(window.display(), False);
    hands.look(kNow + control::milliseconds(1000));
    EXPECT_FALSE(hands.reachesVelmora());
    tap(hands, Key::Q);
    EXPECT_EQ(lock.down(), 0);
    EXPECT_EQ(lock.waitFor(""), "");
}

TEST_F(XTest, PointerRoot_CountsWithThePointerOnTheWindow) {
    TestWindow window({0, 0, 720, 576});
    window.focusFollowsPointer();
    window.pointerTo(1000, 650);
    XTestHands hands;
    hands.look(kNow);
    EXPECT_FALSE(hands.reachesVelmora());
    window.pointerTo(100, 100);
    ASSERT_TRUE(sees(hands, reached));
    hands.key(Key::S, true);
    window.pointerTo(1000, 650);
    ASSERT_TRUE(sees(hands, lost));
    EXPECT_TRUE(app::waitUntil([&] { return window.down() == 0; }));
}

TEST_F(XTest, Layout_FrenchLacksDigitsAndMovesLetters) {
    TestWindow window;
    window.focus();
    XTestHands hands;
    hands.look(kNow);
    tap(hands, Key::A);
    EXPECT_EQ(window.waitFor("+a -a"), "+a -a");
    ASSERT_TRUE(setLayout("fr"));
    ASSERT_TRUE(sees(hands, [](XTestHands& each) { return !each.missingKeys().empty(); }));
    EXPECT_EQ(hands.missingKeys(), "1, 2, 3, 4, 5, 6");
    EXPECT_TRUE(sees(hands, [](XTestHands& each) { return each.reachesVelmora(); }));
    window.waitFor("");  // the client reads the new layout
    tap(hands, Key::A);
    tap(hands, Key::Q);
    tap(hands, Key::ONE);
    tap(hands, Key::SPACE);
    const std::string expected = "+a -a +q -q +space -space";
    EXPECT_EQ(window.waitFor(expected), expected);
}

TEST_F(XTest, Layout_OfTheFirstGroupCounts) {
    TestWindow window;
    window.focus();
    ASSERT_TRUE(setLayout("us,fr"));
    XkbLockGroup(window.display(), XkbUseCoreKbd, 1);
    XSync(window.display(), False);
    XTestHands hands;
    EXPECT_EQ(hands.missingKeys(), "");
    tap(hands, Key::A);
    tap(hands, Key::ONE);
    EXPECT_EQ(window.waitFor("+a -a +1 -1"), "+a -a +1 -1");
}

TEST(XTestServer, End_IsAnError) {
    std::optional<TestServer> server(std::in_place);
    auto window = std::make_unique<TestWindow>();
    window->focus();
    XTestHands hands;
    hands.look(kNow);
    hands.key(Key::Q, true);
    window.reset();  // Xlib would end the process with the window's connection
    hands.button(true);
    server.reset();
    hands.key(Key::W, true);
    EXPECT_THROW(app::waitUntil([&] {
                     hands.look(kNow);
                     return false;
                 }),
                 maker::ToolError);
    EXPECT_THROW(hands.look(kNow), maker::ToolError);
    EXPECT_FALSE(hands.reachesVelmora());
    hands.key(Key::W, true);
    hands.key(Key::Q, false);
    hands.point(1, 1);
}

TEST(XTestServer, Missing_IsAnError) {
    setenv("DISPLAY", ":4242", 1);
    EXPECT_THROW(XTestHands(), maker::ToolError);
    unsetenv("DISPLAY");
}

TEST_F(XTest, Files_AreAllClosed) {
    TestWindow window;
    window.focus();
    { const XTestHands first; }
    const size_t before = openFiles();
    for (int i = 0; i < 20; ++i) {
        XTestHands hands;
        hands.key(Key::Q, true);
    }
    EXPECT_EQ(openFiles(), before);
}

}  // namespace
