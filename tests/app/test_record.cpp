// velmora-record on a display: what velmora-render makes of the score is what the display showed,
// frame for frame.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <random>

#include "app/pad.h"
#include "app/stage.h"
#include "files/preferences.h"
#include "support/seed.h"
#include "tools/render/take.h"

namespace {

namespace fs = std::filesystem;

using app::Screen;
using app::Shot;
using app::Stage;

constexpr const char* kClips[] = {"long-256", "rgb-all-360", "rgba-all-360", "dense-360",
                                  "runs-360"};

struct Recorded {
    maker::Score score;
    std::map<int, Shot> shots;  // by frame
};

// What was on the screen, by the frame of the score that put it there.
class Camera {
public:
    explicit Camera(Stage& stage) : stage_(stage) {}

    void shoot() {
        int pictures = 0;
        const Shot shot = stage_.lookInStep(&pictures);
        shots_[pictures - 1] = shot;
    }
    std::map<int, Shot>& shots() { return shots_; }

private:
    Stage& stage_;
    std::map<int, Shot> shots_;
};

maker::Score scoreIn(const Stage& stage) {
    for (const auto& file : fs::directory_iterator(stage.folder.path())) {
        if (file.path().extension() == ".score") {
            return maker::parseScore(stage.folder.read(file.path().filename().string()));
        }
    }
    return {};
}

void tapAll(Stage& stage, Camera& camera, std::initializer_list<unsigned long> keys) {
    for (const unsigned long key : keys) {
        stage.tap(key);
        camera.shoot();
    }
}

// One thing that a performer does on the mix screen.
void actAtRandom(Stage& stage, std::mt19937& random) {
    static constexpr unsigned long kKeys[] = {XK_Left, XK_Right, XK_Up, XK_Down, XK_1,     XK_2,
                                              XK_3,    XK_4,     XK_5,  XK_6,    XK_s,     XK_a,
                                              XK_z,    XK_Tab,   XK_x,  XK_w,    XK_space, XK_f};
    static constexpr unsigned long kFilters[] = {XK_q, XK_w, XK_e, XK_r, XK_t,
                                                 XK_y, XK_u, XK_i, XK_o};
    static constexpr unsigned long kInFilter[] = {XK_BackSpace, XK_BackSpace, XK_Up,
                                                  XK_Right,     XK_Down,      XK_Left};
    switch (random() % 8) {
        case 0:
        case 1: {
            const unsigned long filter = kFilters[random() % std::size(kFilters)];
            stage.press(filter);
            stage.tap(kInFilter[random() % std::size(kInFilter)]);
            stage.release(filter);
            break;
        }
        case 2:
            stage.pointerTo(static_cast<int>(320 + random() % 640),
                            560 + static_cast<int>(random() % 60));
            stage.mouseDown();
            stage.passPictures(4);
            stage.pointerTo(static_cast<int>(random() % 1280), static_cast<int>(random() % 720));
            stage.passPictures(4);
            stage.mouseUp();
            break;
        case 3:
            stage.tap(XK_Return);
            stage.tap(random() % 2 == 0 ? XK_Down : XK_Up);
            stage.tap(random() % 2 == 0 ? XK_x : XK_Return);
            break;
        default:
            stage.press(kKeys[random() % std::size(kKeys)]);
            stage.passPictures(static_cast<int>(random() % 12));
            for (const unsigned long key : kKeys) {
                stage.keyUp(key);
            }
    }
    stage.passPictures(static_cast<int>(random() % 6) + 1);
}

// With clips that move, and a missing one among them.
void prepare(Stage& stage) {
    std::vector<std::string> tracks;
    for (const char* clip : kClips) {
        stage.folder.addClipFile(std::string(TEST_DATA "/clips/") + clip + ".m19");
        tracks.push_back(std::string(clip) + ".m19");
    }
    stage.folder.addPlaylist("ALL", tracks);
    stage.folder.addPlaylist("TWO", {tracks[1], "missing.m19", tracks[2]});
    stage.folder.writePlaylists();
    // With the frame rate and the white lines over the mix.
    files::Preferences preferences;
    preferences.topbar = 1;
    preferences.fps = 1;
    preferences.width = 1280;
    preferences.height = 720;
    preferences.filters = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    stage.folder.addUserFile("prefs.xml", files::printPreferences(preferences));
}

// Through all screens, and then the mix for so long.
Recorded record(Screen screen, int seconds) {
    setenv("VELMORA_PROGRAM", APP_RECORD, 1);
    Stage stage(screen);
    prepare(stage);
    Camera camera(stage);
    stage.startAtHome();
    tapAll(stage, camera, {XK_Right, XK_x, XK_Down, XK_z, XK_Left, XK_Down, XK_Left, XK_x});
    stage.click(700, 300);  // somewhere in the options
    tapAll(stage, camera, {XK_z, XK_Right, XK_Up, XK_x, XK_x});
    std::mt19937 random(chosenSeed());
    const long long end = app::nowMs() + seconds * 1000LL;
    while (app::nowMs() < end) {
        actAtRandom(stage, random);
        camera.shoot();
    }
    EXPECT_EQ(stage.closeWindow(), 0);
    return {scoreIn(stage), std::move(camera.shots())};
}

Shot shotOf(const maker::StagePicture& picture) {
    Shot shot = app::blackShot(picture.width, picture.height);
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            shot.at(x, y) = picture.pixels[static_cast<ptrdiff_t>(y) * picture.pitch + x];
        }
    }
    return shot;
}

// In the folder whose clips the recording had: those of the test data.
void expectSame(const Recorded& recorded) {
    ASSERT_GT(recorded.score.frames, 100);
    app::RunFolder folder;
    for (const char* clip : kClips) {
        folder.addClipFile(std::string(TEST_DATA "/clips/") + clip + ".m19");
    }
    size_t compared = 0;
    std::string different;  // said afterwards: a take prints nothing
    const int frames = maker::play(
        recorded.score, {folder.path(), true, [&](int frame, const maker::StagePicture& picture) {
                             const auto shot = recorded.shots.find(frame);
                             if (shot == recorded.shots.end()) {
                                 return true;
                             }
                             ++compared;
                             const std::string found =
                                 app::difference(shotOf(picture), shot->second);
                             if (found != "same") {
                                 different = "frame " + std::to_string(frame) + ": " + found;
                             }
                             return found == "same";
                         }});
    EXPECT_EQ(different, "");
    EXPECT_EQ(frames, recorded.score.frames);
    EXPECT_EQ(compared, recorded.shots.size());
    EXPECT_GT(compared, 20U);
    if (testing::Test::HasFailure()) {
        std::ofstream(APP_SHOT_DIR "/failed.score") << maker::printScore(recorded.score);
        printf("the score: " APP_SHOT_DIR "/failed.score\n");
    }
    printf("%d frames, %zu of them compared\n", frames, compared);
}

TEST(Record, TwoMinutes_AreRenderedAsTheDisplayShowedThem) {
    expectSame(record({.width = 1280, .height = 720, .depth = 24}, 120));
}

TEST(Record, CompositeDisplay_IsRenderedAsItWas) {
    expectSame(record({.width = 720, .height = 576, .depth = 16}, 15));
}

TEST(Record, Pad_IsRenderedAsItWas) {
    setenv("VELMORA_PROGRAM", APP_RECORD, 1);
    Stage stage({.width = 1280, .height = 720, .depth = 16});
    app::Pad pad(stage.folder.path() + "/pad");
    const app::Pad::Plugged plugged(pad);
    prepare(stage);
    std::string map = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";
    for (int button = 0; button < 14; ++button) {
        map.append("\t<button>").append(std::to_string(button)).append("</button>\n");
    }
    stage.folder.addUserFile("gamecontroller.xml", map.append("</all>\n"));
    Camera camera(stage);
    stage.startMix(5);
    std::mt19937 random(chosenSeed());
    for (int i = 0; i < 60; ++i) {
        const int button = static_cast<int>(random() % 14);
        pad.set(button, true);
        stage.passPictures(static_cast<int>(random() % 4) + 1);
        pad.set(button, false);
        stage.passPictures(1);
        camera.shoot();
    }
    EXPECT_EQ(stage.closeWindow(), 0);
    const Recorded recorded = {scoreIn(stage), std::move(camera.shots())};
    EXPECT_TRUE(recorded.score.hasPad);
    EXPECT_EQ(recorded.score.pad, "Velmora Test Pad");
    expectSame(recorded);
}

}  // namespace
