// Damaged clips and full screen: the program goes on.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

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

}  // namespace

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
