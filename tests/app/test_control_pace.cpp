// How soon velmora-control presses a key, and how well it keeps to a MIDI clock: with a window in
// Velmora's place that notes when keys go down.
#include <gtest/gtest.h>
#include <poll.h>

#include <algorithm>
#include <cstdio>
#include <thread>

#include "app/bridge_process.h"
#include "app/clock.h"
#include "app/xserver.h"
#include "tools/control/base/time.h"
// Its macros would be in the way of those above.
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

namespace {

using control::Clock;
// X has another Time.
using Moment = control::Time;

constexpr int kFrameMs = 39;
constexpr int kTempo = 174;
constexpr int kTicks = 24;
constexpr double kTickMs = 60000.0 / kTempo / kTicks;

int fromEnvironment(const char* name, int otherwise) {
    const char* const text = getenv(name);
    return text != nullptr ? atoi(text) : otherwise;
}

// Milliseconds: the median, the one that 99 of 100 stay under, the longest.
struct Spread {
    double median, most, longest;
};

Spread spreadOf(std::vector<double> all) {
    std::ranges::sort(all);
    return {all[all.size() / 2], all[(all.size() - 1) * 99 / 100], all.back()};
}

class ControlPace : public testing::Test {
protected:
    ControlPace() {
        folder_.writePlaylists();
        display_ = XOpenDisplay(server_.display().c_str());
        window_ =
            XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 1280, 720, 0, 0, 0);
        char name[] = "velmora";
        XClassHint hint = {name, name};
        XSetClassHint(display_, window_, &hint);
        XSelectInput(display_, window_, KeyPressMask | ExposureMask);
        XMapWindow(display_, window_);
        XEvent event;
        XWindowEvent(display_, window_, ExposureMask, &event);
        XSetInputFocus(display_, window_, RevertToNone, CurrentTime);
        XSync(display_, False);
    }
    ~ControlPace() override {
        bridge.process().stop(SIGTERM);
        XCloseDisplay(display_);
    }

    // When the next key goes down; nothing when none does in time.
    std::optional<Moment> nextPress(int timeoutMs) {
        const Moment end = Clock::now() + control::milliseconds(timeoutMs);
        while (true) {
            while (XPending(display_) > 0) {
                XEvent event;
                XNextEvent(display_, &event);
                if (event.type == KeyPress) {
                    return Clock::now();
                }
            }
            const auto left = std::chrono::ceil<control::milliseconds>(end - Clock::now());
            pollfd file = {ConnectionNumber(display_), POLLIN, 0};
            if (left.count() <= 0 || poll(&file, 1, static_cast<int>(left.count())) < 0) {
                return std::nullopt;
            }
        }
    }

    // Sends, waits for the key, and again: milliseconds from one to the other.
    Spread measure(const std::function<void()>& send, int times) {
        constexpr int kBetweenMs = 170;  // down for 80, up for 80
        std::vector<double> all;
        int lost = 0;
        for (int i = 0; i < times; ++i) {
            const Moment sent = Clock::now();
            send();
            const std::optional<Moment> pressed = nextPress(2000);
            if (!pressed) {
                ++lost;
                continue;
            }
            all.push_back(control::secondsOf(*pressed - sent) * 1000);
            app::sleepMs(kBetweenMs);
        }
        // JACK drops messages when its threads come late.
        EXPECT_LE(lost, times / 20) << bridge.output();
        return spreadOf(all.empty() ? std::vector<double>{1e9} : all);
    }

private:
    app::XServer server_{app::Screen{}};
    app::RunFolder folder_;

protected:
    app::BridgeProcess bridge{server_.display(), folder_};

private:
    Display* display_ = nullptr;
    Window window_ = 0;
};

void report(const char* what, const Spread& spread) {
    std::printf("%s: median %.2f ms, 99 of 100 under %.2f ms, longest %.2f ms\n", what,
                spread.median, spread.most, spread.longest);
}

}  // namespace

TEST_F(ControlPace, OscMessage_PressesSoon) {
    bridge.start("");
    const Spread spread =
        measure([&] { bridge.say("/flash"); }, fromEnvironment("VELMORA_PRESSES", 30));
    report("OSC to key", spread);
    EXPECT_LT(spread.median, 3);
}

TEST_F(ControlPace, MidiNote_PressesSoon) {
    if (!control::jackIsInstalled()) {
        GTEST_SKIP() << "jackd is not installed";
    }
    control::JackProcess jack("64");
    bridge.start("[[on]]\nnote = 36\ndo = \"flash\"\n");
    const auto device = bridge.plugIn();
    const unsigned char note[] = {0x90, 36, 100};
    const Spread spread = measure([&] { device->sendMessage(note, sizeof note); },
                                  fromEnvironment("VELMORA_PRESSES", 30));
    report("MIDI to key, JACK with periods of 1.3 ms between", spread);
    // JACK's own two periods, and a bit.
    EXPECT_LT(spread.median, 6);
}

TEST_F(ControlPace, MidiClock_PressesOnEachBeatWithoutDrift) {
    if (!control::jackIsInstalled()) {
        GTEST_SKIP() << "jackd is not installed";
    }
    control::JackProcess jack("64");
    bridge.start("[[every]]\nbeats = 1\ndo = \"flash\"\n");
    const auto device = bridge.plugIn();
    const int beats = fromEnvironment("VELMORA_CLOCK_SECONDS", 8) * kTempo / 60;
    std::vector<Moment> sent(static_cast<size_t>(beats));
    std::thread clock([&] {
        const unsigned char start[] = {0xFA};
        device->sendMessage(start, 1);
        const Moment first = Clock::now() + control::milliseconds(100);
        const unsigned char tick[] = {0xF8};
        for (int i = 0; i < beats * kTicks; ++i) {
            std::this_thread::sleep_until(first + control::durationOf(i * 60.0 / kTempo / kTicks));
            if (i % kTicks == 0) {
                sent[static_cast<size_t>(i / kTicks)] = Clock::now();
            }
            device->sendMessage(tick, 1);
        }
    });
    std::vector<Moment> pressed;
    while (pressed.size() < sent.size()) {
        const std::optional<Moment> press = nextPress(2000);
        if (!press) {
            break;
        }
        pressed.push_back(*press);
    }
    clock.join();
    ASSERT_EQ(pressed.size(), sent.size());
    std::vector<double> late;
    for (size_t i = 0; i < sent.size(); ++i) {
        late.push_back(control::secondsOf(pressed[i] - sent[i]) * 1000);
    }
    const Spread spread = spreadOf(late);
    report("a beat of the clock to its key", spread);
    const size_t part = late.size() / 4;
    const double drift =
        spreadOf({late.end() - static_cast<ptrdiff_t>(part), late.end()}).median -
        spreadOf({late.begin(), late.begin() + static_cast<ptrdiff_t>(part)}).median;
    std::printf("%zu beats, drift %.3f ms\n", late.size(), drift);
    EXPECT_LT(spread.most, kFrameMs);
    EXPECT_NEAR(drift, 0, kTickMs / 2);
}
