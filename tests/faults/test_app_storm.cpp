// A storm of keys and clicks over every screen of the real program, and loading without end.
// Variables make it longer:
//   VELMORA_STORM_SECONDS=N   on each screen, 2000 events a minute
//   VELMORA_STORM_SCREEN=NAME one screen alone
//   VELMORA_RELOADS=N         playlists loaded
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <stdexcept>

#include "app/expected.h"
#include "app/pictures.h"
#include "app/tiny_clip.h"
#include "faults/wild_hands.h"
#include "support/seed.h"

namespace {

using app::Stage;
using faults::WildHands;

constexpr int kEventsAMinute = 2000;
// Then the hands are back on the screen that is meant.
constexpr int kVisitMs = 15000;
constexpr int kVisitsARun = 6;
// The short form.
constexpr int kPictures = 16;
constexpr int kEventsAPicture = 20;
constexpr int kReloads = 8;
constexpr int kWarmUp = 3;
constexpr long kSlackKb = 1024;

std::string variable(const char* name) {
    const char* value = getenv(name);
    return value != nullptr ? value : "";
}

void addClips(Stage& stage) {
    stage.folder.addClip("rich.m19", app::tinyClip({{app::richPicture(2), {}}}));
    std::vector<std::string> tracks = {"rich.m19"};
    for (const char* name : {"rgba-all-360.m19", "one-frame-8.m19", "gaps-64.m19",
                             "seventeen-200.m19", "flat-200.m19", "long-256.m19"}) {
        stage.folder.addClipFile(std::string(TEST_DATA "/clips/") + name);
        tracks.emplace_back(name);
    }
    for (const char* name :
         {"records-cut.m19", "record-number.m19", "alpha-over.m19", "height-368.m19", "empty.m19",
          "run-flood.m19", "four-runs-over.m19", "trailing-bytes.m19"}) {
        stage.folder.addClipFile(std::string(TEST_DATA "/broken/") + name);
        tracks.emplace_back(name);
    }
    tracks.emplace_back("gone.m19");
    stage.folder.addPlaylist("WILD", tracks);
    stage.folder.addPlaylist("ONE", {"rich.m19"});
}

class Storm : public testing::Test {
protected:
    Storm() : stage({1280, 800}), hands(stage, chosenSeed()) { addClips(stage); }

    void start() {
        hands.start();
        visits = 0;
    }
    // False when the program has ended.
    bool goHome() {
        const bool home = hands.goHome();
        if (!home && stage.running()) {
            throw std::runtime_error("no way home");
        }
        return home;
    }
    // Ends well on its own now and then; the playlists are as at first again.
    void startAnew() {
        EXPECT_EQ(stage.closeWindow(), 1);
        EXPECT_EQ(stage.errors(), "");
        start();
    }
    void visit(const std::string& screen, int ms) {
        if (!goHome()) {
            start();
        } else if (++visits == kVisitsARun) {
            startAnew();
        }
        hands.enter(screen);
        if (ms > 0) {
            hands.storm(ms, kEventsAMinute);
        } else {
            hands.burst(kPictures, kEventsAPicture);
        }
    }
    // A known key gives a known picture.
    void expectAnswers() {
        if (!goHome()) {
            start();
        }
        for (const unsigned long key : {XK_Left, XK_Left, XK_Up, XK_Left}) {
            stage.tap(key);
        }
        const int before = hands.homeSelection();
        stage.tap(XK_Right);
        const int after = hands.homeSelection();
        EXPECT_TRUE((before == 0 && after == 1) || (before == 2 && after == 3))
            << before << " -> " << after << ", seen: " << stage.keepShot(stage.look());
    }

    Stage stage;
    WildHands hands;
    int visits = 0;
};

TEST_F(Storm, OnEveryScreen_GoesOnAndAnswers) {
    const std::string seconds = variable("VELMORA_STORM_SECONDS");
    const std::string only = variable("VELMORA_STORM_SCREEN");
    start();
    for (const std::string& screen : faults::screenNames()) {
        if (!only.empty() && screen != only) {
            continue;
        }
        SCOPED_TRACE(screen);
        const int eventsBefore = hands.events();
        const int endsBefore = hands.ends();
        int left = seconds.empty() ? 0 : std::stoi(seconds) * 1000;
        do {
            visit(screen, std::min(left, kVisitMs));
            left -= kVisitMs;
        } while (left > 0 && !HasFailure());
        expectAnswers();
        std::cout << screen << ": " << hands.events() - eventsBefore << " events, the program was "
                  << "left by its menu " << hands.ends() - endsBefore << " times\n"
                  << std::flush;
    }
    EXPECT_EQ(stage.closeWindow(), 1);
}

long residentKb(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmRSS:")) {
            return std::stol(line.substr(6));
        }
    }
    return 0;
}

// Loads of either list in turn: the list stands over the mix, "x" loads.
TEST_F(Storm, Reloads_TakeNoMoreMemory) {
    const std::string wanted = variable("VELMORA_RELOADS");
    const int reloads = wanted.empty() ? kReloads : std::stoi(wanted);
    hands.start();
    stage.tap(XK_x);
    long before = 0;
    long most = 0;
    for (int i = 0; i < reloads; ++i) {
        stage.tap(i % 2 == 0 ? XK_Up : XK_Down);
        stage.tap(XK_x);
        stage.passPictures(i % 2 == 0 ? 20 : 6);
        stage.tap(XK_Return);
        most = std::max(most, residentKb(stage.processId()));
        if (i == kWarmUp) {
            before = residentKb(stage.processId());
        }
    }
    const long after = residentKb(stage.processId());
    std::cout << reloads << " reloads: " << before << " kB resident after " << kWarmUp << ", "
              << after << " kB at the end, " << most << " kB at most\n";
    // Freed memory is kept aside for a while by the sanitizers and by what runs the program
    // instead.
    if (APP_SLOWNESS == 1 && variable("VELMORA_PROGRAM").empty()) {
        EXPECT_LE(after, before + kSlackKb);
    }
    EXPECT_EQ(stage.closeWindow(), 1);
}

}  // namespace
