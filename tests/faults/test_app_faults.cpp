// The real program with folders and clips that change, vanish or fill up under it.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "app/expected.h"
#include "app/pictures.h"
#include "app/screens.h"
#include "app/stage.h"
#include "app/tiny_clip.h"
#include "faults/private_mounts.h"

namespace {

namespace fs = std::filesystem;
using app::Shot;
using app::Stage;
using faults::SmallDisk;

constexpr int kLeft = app::pictureX(1280);
constexpr int kTop = app::pictureY(720);
constexpr uint16_t kPaper = 0x18C3;  // of the playlist screen

class AppFaults : public testing::Test {
protected:
    // A page of the playlist screen takes no press until it stands for 300 ms, 8 pictures.
    void clickPicture(int x, int y) {
        stage.passPictures(10);
        stage.click(kLeft + x, kTop + y);
    }
    void awaitHome() {
        stage.await([](const Shot& shot) { return app::homeSelection(shot) >= 0; }, "home");
    }
    void openEditor() {
        clickPicture(424, 122);
        stage.await([](const Shot& shot) { return shot.at(kLeft + 1, kTop + 1) == kPaper; },
                    "the playlist screen");
    }
    // Into the options, the first flag turned over, and out again, which saves.
    void changeAnOption() {
        clickPicture(200, 220);
        clickPicture(350, 40);
        stage.tap(XK_z);
        awaitHome();
    }
    void addOne() {
        stage.folder.addClip("rich.m19", app::tinyClip({{rich, {}}}));
        stage.folder.addPlaylist("ONE", {"rich.m19"});
        stage.folder.writePlaylists();
    }
    std::string path(const std::string& name) { return stage.folder.path() + "/" + name; }

    const Shot rich = app::richPicture(11);
    Stage stage;
};

// Entered before anything is started, so that the program sees the same disks as the test.
class AppDisks : public testing::Test {
protected:
    void SetUp() override {
        const std::string reason = faults::enterPrivateMounts();
        if (!reason.empty()) {
            GTEST_SKIP() << reason;
        }
    }
};

}  // namespace

TEST_F(AppDisks, UserdataReadOnlyThenFull_SaysSoAndPlaysOn) {
    Stage stage;
    const std::string userdata = stage.folder.path() + "/userdata";
    SmallDisk disk(userdata, "256k");
    stage.folder.addClip("rich.m19", app::tinyClip({{app::richPicture(11), {}}}));
    stage.folder.addPlaylist("ONE", {"rich.m19"});
    stage.folder.writePlaylists();
    const std::string lists = stage.folder.read("userdata/playlists.xml");
    stage.startAtHome();
    // A save that fails keeps the page; once more leaves it without one.
    const auto leaveOptions = [&](int ways) {
        stage.click(kLeft + 200, kTop + 220);
        for (int way = 1; way < ways; ++way) {
            stage.tap(XK_z);
            EXPECT_EQ(app::homeSelection(stage.look()), -1);
        }
        stage.tap(XK_z);
        stage.await([](const Shot& shot) { return app::homeSelection(shot) >= 0; }, "home");
    };
    disk.setReadOnly(true);
    leaveOptions(2);
    EXPECT_FALSE(fs::exists(userdata + "/prefs.xml"));
    disk.setReadOnly(false);
    disk.fill();
    leaveOptions(2);
    EXPECT_FALSE(fs::exists(userdata + "/prefs.xml"));
    EXPECT_EQ(stage.folder.read("userdata/playlists.xml"), lists);
    disk.makeRoom();
    leaveOptions(1);
    EXPECT_TRUE(fs::exists(userdata + "/prefs.xml"));
    EXPECT_FALSE(fs::exists(userdata + "/prefs.xml.tmp"));
    stage.tap(XK_x);
    stage.tap(XK_x);
    stage.expectShows(app::placed(app::richPicture(11)), "the clip plays");
    EXPECT_EQ(stage.closeWindow(), 1);
    const std::string said = "Could not save " + userdata + "/prefs.xml\n";
    const size_t first = stage.output().find(said);
    ASSERT_NE(first, std::string::npos) << stage.output();
    EXPECT_EQ(stage.output().find(said, first + 1), first + said.size());
}

TEST_F(AppFaults, FoldersRemovedWithTheirPagesOpen_PagesAnswerAndSavesWork) {
    addOne();
    stage.startAtHome();
    openEditor();
    clickPicture(90, 240);  // edit: the explorer lists videos
    fs::remove_all(path("videos"));
    fs::remove_all(path("userdata"));
    clickPicture(400, 24);   // its first row
    clickPicture(220, 268);  // preview: there is nothing to show
    clickPicture(530, 268);  // confirm: saves
    EXPECT_NE(stage.folder.read("userdata/playlists.xml").find("rich.m19"), std::string::npos);
    stage.tap(XK_z);
    awaitHome();
    fs::remove_all(path("userdata"));
    changeAnOption();
    EXPECT_NE(stage.folder.read("userdata/prefs.xml").find("<topbar>1</topbar>"),
              std::string::npos);
    // There is nothing to play, which is no reason to stop.
    stage.tap(XK_x);
    stage.tap(XK_x);
    stage.passPictures(5);
    stage.tap(XK_Return);
    stage.tap(XK_z);
    awaitHome();
    EXPECT_EQ(stage.closeWindow(), 1);
}

// One clip after the other changes while the list loads; what cannot be loaded takes no deck.
TEST_F(AppFaults, ClipsChangeWhileTheListLoads_LoadEndsAndPlays) {
    std::vector<std::string> tracks;
    stage.folder.addClip("first.m19", app::tinyClip({{rich, {}}}));
    tracks.emplace_back("first.m19");
    const std::string longClip = TEST_DATA "/clips/long-256.m19";
    for (int i = 0; i < 12; ++i) {
        tracks.push_back(std::to_string(i) + ".m19");
        fs::copy_file(longClip, path("videos/" + tracks.back()));
    }
    stage.folder.addPlaylist("CHANGING", tracks);
    stage.folder.writePlaylists();
    stage.startAtOverMenu();
    stage.tap(XK_x);
    for (size_t i = 1; i < tracks.size(); ++i) {
        const std::string clip = path("videos/" + tracks[i]);
        if (i % 4 == 0) {
            fs::remove(clip);
        } else if (i % 4 == 1) {
            fs::resize_file(clip, fs::file_size(clip) / 3);
        } else if (i % 4 == 2) {
            std::ofstream(clip, std::ios::in | std::ios::binary) << std::string(70000, '\xA5');
        } else {
            fs::copy_file(longClip, clip + ".new");
            std::ofstream(clip + ".new", std::ios::app) << "and more";
            fs::rename(clip + ".new", clip);
        }
        stage.passPictures(2);
    }
    stage.passPictures(40);
    for (size_t i = 0; i < tracks.size(); ++i) {
        stage.tap(XK_Right);
    }
    EXPECT_TRUE(stage.running());
    stage.tap(XK_Return);
    stage.tap(XK_x);
    stage.expectShows(app::placed(rich), "the first clip plays again");
    EXPECT_EQ(stage.closeWindow(), 1);
}
