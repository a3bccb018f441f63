// velmora-clip play on a display, each key of it.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "app/child.h"
#include "app/clock.h"
#include "app/runfolder.h"
#include "app/xlink.h"
#include "app/xserver.h"
#include "tools/clip/reports/clip_frames.h"

namespace {

using app::Screen;
using app::Shot;

constexpr int kTapMs = 30;
constexpr const char* kFirst = TEST_DATA "/clips/rgb-all-360.m19";
constexpr const char* kSecond = TEST_DATA "/clips/runs-360.m19";

// A frame as the window shows it, `factor` times as large.
Shot frameOf(const std::string& clip, int index, int factor) {
    const maker::Picture picture = maker::openClip(clip).picture(index);
    Shot shot = app::blackShot(640 * factor, 360 * factor);
    for (int y = 0; y < picture.height * factor; ++y) {
        for (int x = 0; x < 640 * factor; ++x) {
            const uint8_t* from = picture.at(x / factor, y / factor);
            shot.at(x, y) =
                static_cast<uint16_t>((from[0] >> 3) << 11 | (from[1] >> 2) << 5 | from[2] >> 3);
        }
    }
    return shot;
}

class Play : public testing::Test {
protected:
    void start(Screen screen, const std::vector<std::string>& clips) {
        screen_ = screen;
        server_.emplace(screen);
        link_.emplace(server_->display());
        app::ChildSetup setup;
        setup.command = {APP_CLIP, "play"};
        setup.command.insert(setup.command.end(), clips.begin(), clips.end());
        setup.environment = {"DISPLAY=" + server_->display(), "SDL_VIDEODRIVER=x11"};
        setup.errors = folder_.path() + "/errors";
        program_.start(setup);
    }
    // The window of this clip has the keyboard.
    void focus(const std::string& title) {
        ASSERT_TRUE(app::waitUntil([&] {
            window_ = link_->findWindow(title);
            return window_.id != 0 && link_->focus(window_.id);
        })) << folder_.read("errors");
    }
    // SDL takes a press right behind a release for the keyboard's repetition.
    void tap(unsigned long key) {
        link_->key(key, true);
        app::sleepMs(kTapMs);
        link_->key(key, false);
        app::sleepMs(kTapMs);
    }
    Shot look() { return link_->look(window_.x, window_.y, window_.width, window_.height); }
    bool shows(const Shot& wanted) {
        return app::waitUntil([&] { return look() == wanted; }, 3000 * app::slowness());
    }
    // Which of the clip's frames stands still on the screen.
    int heldFrame(const std::string& clip) {
        const int frames = maker::openClip(clip).count();
        int found = -1;
        app::waitUntil([&] {
            const Shot shot = look();
            found = -1;
            for (int i = 0; i < frames && found < 0; ++i) {
                found = shot == frameOf(clip, i, factor()) ? i : -1;
            }
            return found >= 0;
        });
        return found;
    }
    int factor() const { return screen_.width >= 1280 ? 2 : 1; }
    std::optional<int> leave() {
        tap(XK_x);
        return program_.waitExit(app::kPatienceMs);
    }

    Screen screen_;
    app::RunFolder folder_;
    std::optional<app::XServer> server_;
    std::optional<app::XLink> link_;
    app::Child program_;
    app::WindowPlace window_;
};

TEST_F(Play, Keys_HoldStepReverseAndGoOn) {
    start({.width = 1280, .height = 720, .depth = 24}, {kFirst, kSecond});
    focus("rgb-all-360.m19");
    tap(XK_space);
    const int frames = maker::openClip(kFirst).count();
    ASSERT_GT(frames, 4);
    const int held = heldFrame(kFirst);
    ASSERT_GE(held, 0);
    const auto expectFrame = [&](int frame, const char* what) {
        EXPECT_TRUE(shows(frameOf(kFirst, (frame + frames) % frames, 2))) << what;
    };
    app::sleepMs(300);
    expectFrame(held, "held");
    tap(XK_Right);
    expectFrame(held + 1, "a step");
    tap(XK_Left);
    tap(XK_Left);
    expectFrame(held - 1, "two back");
    tap(XK_r);
    tap(XK_Right);
    expectFrame(held - 2, "a step, backwards");
    tap(XK_Tab);
    ASSERT_TRUE(
        app::waitUntil([&] { return look() != frameOf(kFirst, (held - 2 + frames) % frames, 2); }));
    tap(XK_i);
    expectFrame(held - 2, "without facts");
    tap(XK_Down);
    focus("runs-360.m19");
    EXPECT_TRUE(shows(frameOf(kSecond, 0, 2)));
    tap(XK_p);
    focus("rgb-all-360.m19");
    expectFrame(0, "from its beginning");
    EXPECT_EQ(leave(), 0);
    EXPECT_EQ(folder_.read("errors"), "");
}

TEST_F(Play, SmallScreen_HasASmallWindowThatPlays) {
    start({.width = 720, .height = 576, .depth = 16}, {kSecond});
    focus("runs-360.m19");
    EXPECT_EQ(window_.width, 640);
    const Shot first = look();
    EXPECT_TRUE(app::waitUntil([&] { return look() != first; })) << "it plays";
    tap(XK_f);
    EXPECT_TRUE(app::waitUntil([&] { return link_->isCovered(720, 576); }));
    tap(XK_f);
    EXPECT_TRUE(app::waitUntil([&] { return !link_->isCovered(720, 576); }));
    EXPECT_EQ(leave(), 0);
}

TEST_F(Play, BrokenClips_AreLeftOutWithALine) {
    folder_.addClip("broken.m19", {1, 2, 3});
    const std::string broken = folder_.path() + "/videos/broken.m19";
    start({.width = 1280, .height = 720, .depth = 16}, {broken, kSecond, broken, kFirst});
    focus("runs-360.m19");
    tap(XK_n);
    focus("rgb-all-360.m19");
    tap(XK_n);
    focus("runs-360.m19");
    EXPECT_EQ(leave(), 1);
    const std::string lines = folder_.read("errors");
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 2) << lines;
    EXPECT_NE(lines.find("velmora-clip: "), std::string::npos);
    EXPECT_NE(lines.find("broken.m19"), std::string::npos);
}

TEST_F(Play, ClosedWindow_Ends) {
    start({.width = 1280, .height = 720, .depth = 24}, {kSecond});
    focus("runs-360.m19");
    link_->askToClose(window_.id);
    EXPECT_EQ(program_.waitExit(app::kPatienceMs), 0);
}

TEST_F(Play, WithoutADisplay_IsOneLine) {
    app::ChildSetup setup;
    setup.command = {"env", "-u", "DISPLAY", "-u", "WAYLAND_DISPLAY", APP_CLIP, "play", kSecond};
    setup.environment = {"SDL_VIDEODRIVER=x11"};
    setup.errors = folder_.path() + "/errors";
    program_.start(setup);
    EXPECT_EQ(program_.waitExit(app::kPatienceMs), 1);
    EXPECT_EQ(folder_.read("errors"), "velmora-clip: there is no display to play on\n");
}

}  // namespace
