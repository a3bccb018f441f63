// Damaged clips, wild hands and full screen: the program goes on.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "app/expected.h"
#include "app/pictures.h"
#include "app/stage.h"
#include "app/tiny_clip.h"

namespace {

using app::Shot;
using app::Stage;

// Copies the clips of a folder into the run and answers their names, sorted.
std::vector<std::string> copyClips(Stage& stage, const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
        if (file.path().extension() == ".m19") {
            stage.folder.addClipFile(file.path().string());
            names.push_back(file.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

// Takes keys and the mouse button by chance, and lets them go again at the end.
class WildHands {
public:
    WildHands(Stage& stage, uint32_t seed) : stage_(stage), state_(seed) {}

    void play(int pictures) {
        const int end = stage_.picturesShown() + pictures;
        while (stage_.picturesShown() < end) {
            act();
            stage_.passPictures(static_cast<int>(next() % 3));
        }
        for (const unsigned long key : down_) {
            stage_.keyUp(key);
        }
        down_.clear();
        stage_.mouseUp();
        stage_.passPictures(app::kPicturesToSee);
    }

private:
    uint32_t next() {
        state_ = state_ * 1664525u + 1013904223u;
        return state_ >> 8;
    }

    void act() {
        static constexpr unsigned long kKeys[] = {
            XK_Up, XK_Right, XK_Down, XK_Left, XK_Right, XK_a, XK_z,   XK_x,     XK_s,
            XK_q,  XK_w,     XK_e,    XK_r,    XK_t,     XK_y, XK_u,   XK_i,     XK_o,
            XK_1,  XK_2,     XK_3,    XK_4,    XK_5,     XK_6, XK_Tab, XK_space, XK_BackSpace,
        };
        const uint32_t kind = next() % 16;
        if (kind == 0) {
            stage_.pointerTo(static_cast<int>(next() % 1280), static_cast<int>(next() % 720));
        } else if (kind == 1) {
            stage_.mouseDown();
        } else if (kind == 2) {
            stage_.mouseUp();
        } else {
            toggle(kKeys[next() % std::size(kKeys)]);
        }
    }

    void toggle(unsigned long key) {
        const auto held = std::find(down_.begin(), down_.end(), key);
        if (held != down_.end()) {
            stage_.keyUp(key);
            down_.erase(held);
        } else {
            stage_.keyDown(key);
            down_.push_back(key);
        }
    }

    Stage& stage_;
    uint32_t state_;
    std::vector<unsigned long> down_;
};

uint32_t chosenSeed() {
    const char* given = getenv("VELMORA_TEST_SEED");
    const uint32_t seed =
        given != nullptr ? static_cast<uint32_t>(strtoul(given, nullptr, 10)) : 20130u;
    std::cout << "seed " << seed << " (VELMORA_TEST_SEED chooses another)\n";
    return seed;
}

}  // namespace

TEST(Robust, RandomKeysOverSoundAndDamagedClips_GoesOn) {
    Stage stage;
    std::vector<std::string> tracks = {"rich.m19"};
    stage.folder.addClip("rich.m19", app::tinyClip({{app::richPicture(2), {}}}));
    for (const char* name : {"rgb-all-360.m19", "rgba-all-360.m19", "one-frame-8.m19",
                             "gaps-64.m19", "seventeen-200.m19", "flat-200.m19"}) {
        stage.folder.addClipFile(std::string(TEST_DATA "/clips/") + name);
        tracks.emplace_back(name);
    }
    for (const char* name :
         {"records-cut.m19", "record-number.m19", "alpha-over.m19", "height-368.m19", "empty.m19",
          "run-flood.m19", "four-runs-over.m19", "trailing-bytes.m19"}) {
        stage.folder.addClipFile(std::string(TEST_DATA "/broken/") + name);
        tracks.emplace_back(name);
    }
    stage.folder.addPlaylist("WILD", tracks);
    stage.folder.writePlaylists();
    stage.startMix(static_cast<int>(tracks.size()));
    WildHands hands(stage, chosenSeed());
    for (int round = 0; round < 3; ++round) {
        hands.play(70);
        // Loads again, from the menu that Return opens over whatever is there now.
        stage.tap(XK_Return);
        stage.tap(XK_x);
    }
    EXPECT_TRUE(stage.running());
    EXPECT_EQ(stage.closeWindow(), 1);
}

TEST(Robust, PlaylistOfDamagedClips_LoadsAndPlaysInEveryMode) {
    Stage stage;
    const std::vector<std::string> tracks = copyClips(stage, TEST_DATA "/broken");
    ASSERT_GT(tracks.size(), 30u);
    stage.folder.addPlaylist("BAD", tracks);
    stage.folder.writePlaylists();
    stage.startMix(static_cast<int>(tracks.size()) / 2);
    constexpr unsigned long kModes[] = {XK_1, XK_2, XK_3, XK_4, XK_5, XK_6};
    for (int step = 0; step < 24; ++step) {
        stage.tap(XK_Right);
        if (step % 4 == 0) {
            stage.tap(kModes[step / 4]);
            stage.tap(XK_Down);
            stage.tap(XK_Left);
            stage.tap(XK_Up);
        }
    }
    EXPECT_TRUE(stage.running());
    EXPECT_EQ(stage.closeWindow(), 1);
}

// The virtual display has one mode: the picture stays what it is, there and back.
TEST(Robust, FullScreenKey_SwitchesThereAndBack) {
    const Shot rich = app::richPicture(8);
    Stage stage;
    stage.folder.addClip("rich.m19", app::tinyClip({{rich, {}}}));
    stage.folder.addPlaylist("ONE", {"rich.m19"});
    stage.folder.writePlaylists();
    stage.startMix(1);
    stage.expectShows(app::placed(rich), "windowed");
    EXPECT_FALSE(stage.isFullScreen());
    stage.tap(XK_f);
    EXPECT_TRUE(stage.isFullScreen());
    const auto onScreen = [&](const Shot&) { return stage.lookAtScreen() == app::placed(rich); };
    stage.await(onScreen, "full screen");
    stage.tap(XK_f);
    EXPECT_FALSE(stage.isFullScreen());
    stage.await(onScreen, "windowed again");
    stage.focus();
    stage.tap(XK_4);
    stage.tap(XK_1);
    stage.expectShows(app::placed(rich), "the keys work");
    EXPECT_EQ(stage.closeWindow(), 1);
}
