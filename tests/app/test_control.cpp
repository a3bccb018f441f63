// velmora-control beside the real program: what comes in by OSC and MIDI, and the picture it makes.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "app/bridge_process.h"
#include "app/expected.h"
#include "app/filtered.h"
#include "app/pictures.h"
#include "app/screens.h"
#include "app/stage.h"
#include "app/tiny_clip.h"
#include "files/preferences.h"

namespace {

using app::Shot;
using app::Stage;
using control::Heard;

constexpr int kFilmFrames = 40;
constexpr int kListed = 3;
constexpr int kPicturesToLoad = 24;  // three small clips

class Control : public testing::Test {
protected:
    Control() {
        for (size_t i = 0; i < pictures.size(); ++i) {
            pictures[i] = app::richPicture(static_cast<uint32_t>(i) + 1);
            stage.folder.addClip("clip" + std::to_string(i) + ".m19",
                                 app::tinyClip({{pictures[i], {}}}));
        }
        std::vector<app::TinyFrame> frames;
        for (int frame = 0; frame < kFilmFrames; ++frame) {
            frames.push_back({app::numberedPicture(frame), {}});
            film.push_back(app::placed(frames.back().picture));
        }
        stage.folder.addClip("film.m19", app::tinyClip(frames));
        stage.folder.addPlaylist("FILM", {"film.m19"});
        stage.folder.addPlaylist("THREE", {"clip0.m19", "clip1.m19", "clip2.m19"});
        stage.folder.addPlaylist("LAST", {"clip2.m19"});
        stage.folder.writePlaylists();
        files::Preferences preferences;
        preferences.width = 1280;
        preferences.height = 720;
        preferences.filters = {1, 3, 6, 4, 0, 0, 0, 0, 7};
        stage.folder.addUserFile("prefs.xml", files::printPreferences(preferences));
    }

    // The bridge first, as it is started with the stage; its map is this text.
    void start(const std::string& map = "") {
        bridge.start(map);
        stage.startAtHome();
    }

    void say(const std::string& address, std::optional<double> value = std::nullopt) {
        bridge.say(address, value);
    }

    // What the bridge answers to "/state": "top", "add".
    std::pair<std::string, std::string> askState() {
        say("/state");
        std::string layer;
        std::string mode;
        app::waitUntil([&] {
            for (const Heard& each : bridge.answers()) {
                (each.address == "/state/layer"  ? layer
                 : each.address == "/state/mode" ? mode
                                                 : ignored_) = each.text;
            }
            return !mode.empty();
        });
        return {layer, mode};
    }

    void expectShows(const Shot& picture, const char* what) {
        stage.expectShows(app::placed(picture), what);
    }

    void playlistThree() {
        say("/playlist", 2);
        expectShows(pictures[0], "the playlist");
        stage.passPictures(kPicturesToLoad);
    }

    int frameShown() {
        const auto found = std::ranges::find(film, stage.look());
        return found == film.end() ? -1 : static_cast<int>(found - film.begin());
    }

    std::array<Shot, 3> pictures;
    std::vector<Shot> film;
    Stage stage;
    app::BridgeProcess bridge{stage.display(), stage.folder};

private:
    std::string ignored_;
};

}  // namespace

TEST_F(Control, OscActions_ShowTheirPictures) {
    start();
    playlistThree();
    say("/top/next");
    expectShows(pictures[1], "top.next");
    say("/top/previous");
    expectShows(pictures[0], "top.previous");
    say("/bottom/next");
    say("/mode/blend");
    expectShows(app::blended(pictures[1], pictures[0]), "mode.blend");
    say("/mode/add");
    expectShows(app::added(pictures[1], pictures[0]), "mode.add");
    say("/mode/multiply");
    expectShows(app::multiplied(pictures[1], pictures[0]), "mode.multiply");
    say("/mode/alpha");
    expectShows(app::keyed(pictures[1], pictures[0]), "mode.alpha");
    say("/mode/half");
    expectShows(app::halves(pictures[1], pictures[0]), "mode.half");
    say("/mode/none");
    expectShows(pictures[0], "mode.none");
    say("/filter/invert/toggle");
    expectShows(app::inverted(pictures[0]), "filter.invert.toggle");
    say("/filter/invert/off");
    say("/filter/mirror/on");
    say("/filter/mirror/left");
    expectShows(app::mirrored(pictures[0], 3), "filter.mirror.left");
    say("/filter/mirror/off");
    expectShows(pictures[0], "filter.mirror.off");
}

TEST_F(Control, OscLayersAndLots_ShowTheirPictures) {
    start("[beat]\ntempo = 60\n[[every]]\nbeats = 2\ndo = \"top.filter.invert.on\"\n");
    playlistThree();
    // The beat is there from the start.
    expectShows(app::inverted(pictures[0]), "on the beat");
    say("/beat/stop");
    say("/top/filter/invert/off");
    say("/bottom");
    say("/previous");
    say("/mode/blend");
    expectShows(app::blended(pictures[2], pictures[0]), "bottom, previous");
    say("/top");
    say("/random");
    stage.await(
        [&](const Shot& shot) {
            return shot == app::placed(app::blended(pictures[2], pictures[1])) ||
                   shot == app::placed(app::blended(pictures[2], pictures[2]));
        },
        "random");
    say("/top/filter/hue/held", 1);
    say("/mode/none");
    stage.await(
        [&](const Shot& shot) {
            return shot == app::placed(app::hued(pictures[1], 0)) ||
                   shot == app::placed(app::hued(pictures[2], 0));
        },
        "held");
    const bool covered = stage.isFullScreen();
    say("/fullscreen");
    EXPECT_TRUE(app::waitUntil([&] { return stage.isFullScreen() != covered; }));
}

TEST_F(Control, OscTransitionsAndPages_ShowTheirPictures) {
    start();
    playlistThree();
    say("/flash");
    stage.await(
        [&](const Shot& shot) {
            for (int level = 1; level <= 15; ++level) {
                if (shot == app::placed(app::flashed(pictures[0], level))) {
                    return true;
                }
            }
            return false;
        },
        "the flash");
    expectShows(pictures[0], "after the flash");
    say("/fade", 1);
    stage.expectShows(app::blackShot(1280, 720), "the fade");
    say("/fade", 0);
    expectShows(pictures[0], "after the fade");
    say("/panel");
    stage.await([&](const Shot& shot) { return shot != app::placed(pictures[0]); }, "the panel");
    say("/panel");
    expectShows(pictures[0], "without the panel");
    say("/list");
    stage.await([&](const Shot& shot) { return app::overMenuShown(shot, kListed); }, "the list");
    say("/list");
    expectShows(pictures[0], "without the list");
    say("/playlist/3");
    expectShows(pictures[2], "the other playlist");
    say("/home");
    stage.await([](const Shot& shot) { return app::homeSelection(shot) == 0; }, "the menu");
}

TEST_F(Control, OscTime_HoldsReversesAndScrubs) {
    start();
    say("/playlist", 1);
    ASSERT_TRUE(app::waitUntil([&] { return frameShown() >= 0; }));
    say("/hold", 1);
    stage.passPictures(8);
    const int held = frameShown();
    stage.passPictures(10);
    EXPECT_EQ(frameShown(), held);
    say("/scrub", 0.25);
    stage.passPictures(8);
    EXPECT_EQ(frameShown(), held);
    say("/scrub", 0.375);
    stage.passPictures(4);
    // An eighth of 640 pixels, five a frame.
    EXPECT_EQ(frameShown(), (held + 16) % kFilmFrames);
    stage.passPictures(15);
    EXPECT_EQ(frameShown(), (held + 16) % kFilmFrames);
    say("/hold", 0);
    stage.passPictures(6);
    int count = 0;
    const auto place = [&] {
        return static_cast<int>(std::ranges::find(film, stage.lookInStep(&count)) - film.begin());
    };
    const auto step = [&] {
        const int first = place();
        const int before = count;
        stage.passPictures(4);
        const int last = place();
        // Forwards as many frames as pictures; one more or less, for a look between two.
        return std::pair((last - first + kFilmFrames) % kFilmFrames, count - before);
    };
    const auto [forwards, shown] = step();
    EXPECT_NEAR(forwards, shown, 1);
    say("/reverse");
    stage.passPictures(6);
    const auto [backwards, shownThen] = step();
    EXPECT_NEAR(kFilmFrames - backwards, shownThen, 1);
}

TEST_F(Control, MidiDevice_PlaysGoesAndComesBack) {
    if (!control::jackIsInstalled()) {
        GTEST_SKIP() << "jackd is not installed";
    }
    control::JackProcess jack;
    start(
        "[[on]]\nnote = 36\ndo = \"top.next\"\n[[on]]\nnote = 37\ndo = \"fade\"\n"
        "[[on]]\nknob = 20\ndo = \"filter.invert.toggle\"\n");
    playlistThree();
    const auto send = [](RtMidiOut& to, int status, int number, int value) {
        const unsigned char message[] = {static_cast<unsigned char>(status),
                                         static_cast<unsigned char>(number),
                                         static_cast<unsigned char>(value)};
        to.sendMessage(message, sizeof message);
    };
    auto device = bridge.plugIn();
    send(*device, 0x90, 36, 100);
    send(*device, 0x80, 36, 0);
    expectShows(pictures[1], "a note");
    send(*device, 0xB0, 20, 127);
    send(*device, 0xB0, 20, 0);
    expectShows(app::inverted(pictures[1]), "a knob");
    send(*device, 0x90, 37, 100);
    stage.expectShows(app::blackShot(1280, 720), "the fade");
    // Unplugged with the pad down: nothing stays down.
    device.reset();
    expectShows(app::inverted(pictures[1]), "unplugged");
    ASSERT_TRUE(bridge.said("unplugged"));
    device = bridge.plugIn();
    send(*device, 0x90, 36, 100);
    expectShows(app::inverted(pictures[2]), "plugged in again");
}

TEST_F(Control, KilledBridge_LeavesNoKeyDown) {
    start();
    playlistThree();
    say("/fade", 1);
    stage.expectShows(app::blackShot(1280, 720), "the fade");
    kill(bridge.process().id(), SIGKILL);
    expectShows(pictures[0], "the fade lets go");
    // One that is started now takes the stage as it is.
    bridge.process().waitExit(1000);
    bridge.start("");
    say("/next");
    expectShows(pictures[1], "the next bridge");
    say("/fade", 1);
    stage.expectShows(app::blackShot(1280, 720), "the fade");
    kill(bridge.process().id(), SIGTERM);
    expectShows(pictures[1], "ended");
    EXPECT_EQ(bridge.process().waitExit(2000), 0);
}

TEST_F(Control, RandomActions_LeaveTheIdeaEqualToTheScreen) {
    start();
    playlistThree();
    say("/bottom/next");
    const std::vector<std::string> names = {"/top",
                                            "/bottom",
                                            "/mode/add",
                                            "/mode/blend",
                                            "/mode/multiply",
                                            "/mode/none",
                                            "/mode/half",
                                            "/flash",
                                            "/panel",
                                            "/reverse",
                                            "/fade",
                                            "/filter/hue/left",
                                            "/filter/invert/toggle",
                                            "/bottom/filter/mirror/toggle",
                                            "/top/filter/hue/toggle",
                                            "/bottom/filter/invert/on",
                                            "/filter/mirror/right",
                                            "/top/filter/gameboy/toggle"};
    std::mt19937 random(7);
    const char* const often = getenv("VELMORA_ACTIONS");
    const int actions = often != nullptr ? atoi(often) : 60;
    for (int i = 0; i < actions; ++i) {
        say(names[random() % names.size()]);
        app::sleepMs(50);
    }
    for (const char* layer : {"/top", "/bottom"}) {
        for (const char* filter : {"hue", "invert", "mirror", "gameboy"}) {
            say(std::string(layer) + "/filter/" + filter + "/off");
        }
    }
    const auto [layer, mode] = askState();
    const Shot& top = pictures[0];
    const Shot& bottom = pictures[1];
    const Shot wanted = mode == "add"        ? app::added(bottom, top)
                        : mode == "blend"    ? app::blended(bottom, top)
                        : mode == "multiply" ? app::multiplied(bottom, top)
                        : mode == "half"     ? app::halves(bottom, top)
                                             : top;
    const auto upper = [](const Shot& shot) {
        // Above the panel, which may be there.
        return std::vector<uint16_t>(shot.pixels.begin(),
                                     shot.pixels.begin() + ptrdiff_t{100} * shot.width);
    };
    const std::vector<uint16_t> wantedRows = upper(app::placed(wanted));
    EXPECT_TRUE(app::waitUntil([&] { return upper(stage.look()) == wantedRows; },
                               actions * 400 + app::kPatienceMs, 100))
        << mode;
    say("/mode/none");
    say("/next");
    say(layer == "top" ? "/mode/none" : "/mode/blend");
    const Shot after = layer == "top" ? pictures[1] : app::blended(pictures[2], top);
    EXPECT_TRUE(app::waitUntil([&] { return upper(stage.look()) == upper(app::placed(after)); }))
        << layer;
}
