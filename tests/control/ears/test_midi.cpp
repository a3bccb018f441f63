// With a JACK server of the test's own, which needs no sound card.
#include "tools/control/ears/midi.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <rtmidi/RtMidi.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <functional>
#include <thread>

#include "tests/control/jack.h"
#include "tools/control/ears/jack_server.h"

namespace control {
namespace {

constexpr std::chrono::seconds kPatience(20);

// Waits until what was heard holds one of this kind, or patience ends. Plays meanwhile.
bool hears(
    MidiEar& ear, std::vector<Heard>& heard, HeardKind kind, const std::string& device,
    const std::function<void()>& play = [] {}) {
    const Time end = Clock::now() + kPatience;
    while (Clock::now() < end) {
        play();
        pollfd waiting{ear.fd(), POLLIN, 0};
        poll(&waiting, 1, 50);
        ear.take(heard);
        if (std::any_of(heard.begin(), heard.end(), [&](const Heard& one) {
                return one.kind == kind && one.device.find(device) != std::string::npos;
            })) {
            return true;
        }
    }
    return false;
}

bool isNote(const Heard& one) {
    return one.kind == HeardKind::NOTE;
}

template <typename Condition>
bool becomes(Condition condition) {
    const Time end = Clock::now() + kPatience;
    while (!condition() && Clock::now() < end) {
        std::this_thread::sleep_for(milliseconds(10));
    }
    return condition();
}

bool listens(const MidiEar& ear, const std::string& device, bool listened) {
    const auto devices = ear.devices();
    return std::any_of(devices.begin(), devices.end(), [&](const MidiDevice& one) {
        return one.name.find(device) != std::string::npos && one.listened == listened;
    });
}

TEST(MidiEar, NoServer_IsSilent) {
    setenv("JACK_DEFAULT_SERVER", "velmora-test-none", 1);
    testing::internal::CaptureStderr();
    {
        const MidiEar ear([](std::string_view) { return true; });
        ear.waitForLook();
        EXPECT_EQ(ear.dropped(), 0U);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(MidiEar, Device_ComesPlaysGoesAndComesAgain) {
    if (!jackIsInstalled()) {
        GTEST_SKIP() << "jackd is not installed";
    }
    std::atomic<bool> wanted{true};
    MidiEar ear([&](std::string_view) { return wanted.load(); });
    JackProcess jack;
    std::vector<Heard> heard;
    JackServer server;
    ASSERT_TRUE(becomes([&] { return server.runs(); }));
    std::unique_ptr<RtMidiOut> out = pads();
    ASSERT_TRUE(becomes([&] { return listens(ear, "pads", true); }));
    // Again and again: JACK drops what is played in the period in which it connects two ports.
    const auto play = [&] {
        const unsigned char note[] = {0x90, 60, 127};
        const unsigned char clock[] = {0xF8};
        out->sendMessage(note, 3);
        out->sendMessage(clock, 1);
    };
    ASSERT_TRUE(hears(ear, heard, HeardKind::NOTE, "pads", play));
    EXPECT_EQ(std::find_if(heard.begin(), heard.end(), isNote)->number, 60);
    EXPECT_TRUE(hears(ear, heard, HeardKind::CLOCK, "pads", play));
    heard.clear();
    out.reset();
    EXPECT_TRUE(hears(ear, heard, HeardKind::GONE, "pads"));
    heard.clear();
    out = pads();
    ASSERT_TRUE(becomes([&] { return listens(ear, "pads", true); }));
    EXPECT_TRUE(hears(ear, heard, HeardKind::NOTE, "pads", play));
    wanted = false;
    ear.wantAgain();
    EXPECT_TRUE(hears(ear, heard, HeardKind::GONE, "pads"));
    EXPECT_TRUE(listens(ear, "pads", false) ||
                becomes([&] { return listens(ear, "pads", false); }));
    heard.clear();
    out.reset();
    jack.stop();
    // Our own port went with the server.
    EXPECT_TRUE(hears(ear, heard, HeardKind::GONE, "Velmora"));
    EXPECT_FALSE(server.runs());
}

}  // namespace
}  // namespace control
