// The playlist screen by mouse: a playlist made, filled, ordered, previewed, saved, played and
// deleted again.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "app/expected.h"
#include "app/pictures.h"
#include "app/screens.h"
#include "app/stage.h"
#include "app/tiny_clip.h"

namespace {

namespace fs = std::filesystem;
using app::Shot;
using app::Stage;

constexpr uint16_t kPaper = 0x18C3;   // 0x181818
constexpr uint16_t kOrange = 0xFD80;  // 0xFFB000

// Pixels of the 640 x 360 picture.
struct Spot {
    int x;
    int y;
};
constexpr Spot kHomeEdit = {424, 122};
constexpr Spot kCreate = {20, 240};
constexpr Spot kEdit = {90, 240};
constexpr Spot kPreview = {150, 240};
constexpr Spot kDelete = {210, 240};
constexpr Spot kBack = {600, 240};
constexpr Spot kTrackPreview = {220, 268};
constexpr Spot kTrackDelete = {290, 268};
constexpr Spot kConfirm = {530, 268};
constexpr Spot kYes = {20, 320};
// A page takes no press for 300 ms after the button that opened it came up; a picture is 38 ms or
// more.
constexpr int kPicturesToSettle = 10;

constexpr Spot leftRow(int row) {
    return {100, 18 + 13 * row + 6};
}
constexpr Spot rightRow(int row) {
    return {400, 18 + 13 * row + 6};
}
constexpr Spot keyCell(int key) {
    return {10 + 30 * (key % 10) + 15, 52 + 30 * (key / 10) + 15};
}

class Editor : public testing::Test {
protected:
    void click(Spot at) {
        stage.passPictures(kPicturesToSettle);
        stage.click(kLeft + at.x, kTop + at.y);
    }
    void goTo(Spot at) {
        stage.pointerTo(kLeft + at.x, kTop + at.y);
        stage.passPictures(app::kPicturesToSee);
    }
    void drag(Spot from, Spot to) {
        stage.passPictures(kPicturesToSettle);
        goTo(from);
        stage.mouseDown();
        stage.passPictures(app::kPicturesToSee);
        goTo({(from.x + to.x) / 2, (from.y + to.y) / 2});
        goTo(to);
        stage.mouseUp();
        stage.passPictures(app::kPicturesToSee);
    }
    void openEditor() {
        click(kHomeEdit);
        stage.await([](const Shot& shot) { return shot.at(kLeft + 1, kTop + 1) == kPaper; },
                    "the playlist screen");
    }
    // The folder's entries in the order in which it gives them, which the explorer keeps.
    int rowInVideos(const std::string& name) {
        int row = 0;
        for (const fs::directory_entry& entry :
             fs::directory_iterator(stage.folder.path() + "/videos")) {
            if (entry.path().filename() == name) {
                return row;
            }
            ++row;
        }
        ADD_FAILURE() << name;
        return 0;
    }
    std::string savedLists() { return stage.folder.read("userdata/playlists.xml"); }
    // All of the picture but the four lines of text about the clip.
    void expectPreviewOf(const Shot& picture) {
        const Shot wanted = app::placed(picture);
        stage.await(
            [&](const Shot& shot) {
                for (int y = 0; y < shot.height; ++y) {
                    for (int x = 0; x < shot.width; ++x) {
                        const bool text = x >= 29 && x < 300 && y >= 40 && y < 132;
                        if (!text && shot.at(x, y) != wanted.at(x, y)) {
                            return false;
                        }
                    }
                }
                return true;
            },
            "the preview");
    }

    static constexpr int kLeft = app::pictureX(1280);
    static constexpr int kTop = app::pictureY(720);
    Stage stage;
};

constexpr const char* kOpening = "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n";
constexpr const char* kKept =
    "\t<playlist>\n\t\t<name>KEPT</name>\n\t\t<track>red.m19</track>\n\t</playlist>\n";

}  // namespace

TEST_F(Editor, NewPlaylist_FromNothingToTheStageAndAway) {
    const Shot top = app::richPicture(77);
    const Shot green = app::flatPicture(0x07E0);
    fs::create_directory(stage.folder.path() + "/videos/live");
    stage.folder.addClip("red.m19", app::tinyClip({{app::flatPicture(0xF800), {}}}));
    stage.folder.addClip("green.m19", app::tinyClip({{green, {}}}));
    stage.folder.addClip("live/top.m19", app::tinyClip({{top, {}}}));
    stage.folder.addPlaylist("KEPT", {"red.m19"});
    stage.folder.writePlaylists();
    const std::string before = savedLists();
    ASSERT_EQ(before, std::string(kOpening) + kKept + "</all>\n");
    stage.startAtHome();
    openEditor();

    // The name: "set-1".
    click(kCreate);
    for (const int key : {18, 4, 19, 27, 31, 41}) {
        click(keyCell(key));
    }
    EXPECT_EQ(savedLists(), std::string(kOpening) + kKept +
                                "\t<playlist>\n\t\t<name>set-1</name>\n\t</playlist>\n</all>\n");

    // red, green, live/top; then green, live/top, red; then live/top, red.
    click(kEdit);
    drag(rightRow(rowInVideos("red.m19")), leftRow(0));
    drag(rightRow(rowInVideos("green.m19")), leftRow(1));
    click(rightRow(rowInVideos("live")));
    drag(rightRow(1), leftRow(2));
    drag(leftRow(0), leftRow(5));
    drag(leftRow(0), kTrackDelete);
    drag(leftRow(0), kTrackPreview);
    expectPreviewOf(top);
    stage.passPictures(kPicturesToSettle);
    stage.click(5, 700);
    click(kConfirm);
    const std::string filled =
        std::string(kOpening) + kKept +
        "\t<playlist>\n\t\t<name>set-1</name>\n\t\t<track>live/top.m19</track>\n"
        "\t\t<track>red.m19</track>\n\t</playlist>\n</all>\n";
    EXPECT_EQ(savedLists(), filled);
    click(kBack);
    stage.await([](const Shot& shot) { return app::homeSelection(shot) == 0; }, "home");

    // On the stage.
    stage.tap(XK_x);
    stage.await([](const Shot& shot) { return app::overMenuShown(shot, 2); }, "the over-menu");
    stage.tap(XK_Down);
    stage.tap(XK_x);
    stage.expectShows(app::placed(top), "its first clip plays");
    stage.passPictures(10);  // the second one is loaded meanwhile
    stage.tap(XK_Right);
    stage.expectShows(app::placed(app::flatPicture(0xF800)), "its second clip plays");
    stage.tap(XK_Return);
    stage.tap(XK_z);
    stage.await([](const Shot& shot) { return app::homeSelection(shot) == 0; }, "home again");

    // Away: asked once.
    openEditor();
    click(leftRow(1));
    click(kDelete);
    EXPECT_EQ(savedLists(), filled);
    click(kYes);
    EXPECT_EQ(savedLists(), before);
    stage.tap(XK_z);
    stage.await([](const Shot& shot) { return app::homeSelection(shot) == 0; }, "left by key");
    stage.closeWindow();
}

// No mouse at all: what the letters do elsewhere they do not do while they write.
TEST_F(Editor, NameTypedWithLettersThatSwitch_IsWrittenAndStaysWindowed) {
    stage.folder.addPlaylist("KEPT", {"red.m19"});
    stage.folder.writePlaylists();
    stage.startAtHome();
    stage.tap(XK_Right);
    stage.tap(XK_x);
    stage.await([](const Shot& shot) { return shot.at(kLeft + 1, kTop + 1) == kPaper; },
                "the playlist screen");
    stage.tap(XK_Left);
    stage.tap(XK_x);
    for (const unsigned long key : {XK_f, XK_x, XK_z, XK_s, XK_a, XK_q, XK_w, XK_1}) {
        stage.tap(key);
        EXPECT_FALSE(stage.isFullScreen());
    }
    stage.tap(XK_BackSpace);
    EXPECT_EQ(stage.look().at(kLeft + 1, kTop + 1), kPaper);
    stage.tap(XK_Return);
    stage.passPictures(app::kPicturesToSee);
    EXPECT_FALSE(stage.isFullScreen());
    EXPECT_EQ(savedLists(), std::string(kOpening) + kKept +
                                "\t<playlist>\n\t\t<name>fxzsaqw</name>\n\t</playlist>\n</all>\n");
    // On every other page "f" is what it was.
    stage.tap(XK_f);
    stage.passPictures(app::kPicturesToSee);
    EXPECT_TRUE(stage.isFullScreen());
    stage.tap(XK_f);
    stage.tap(XK_z);
    stage.await([](const Shot& shot) { return app::homeSelection(shot) == 1; }, "home");
    stage.closeWindow();
}

// Real clicks, 60 ms apart.
TEST_F(Editor, DoubleClickOnBack_DoesNotLeadHome) {
    stage.folder.addPlaylist("KEPT", {"red.m19"});
    stage.folder.writePlaylists();
    stage.startAtHome();
    openEditor();
    click(kEdit);
    stage.passPictures(kPicturesToSettle);
    goTo({600, 268});
    for (const int y : {268, 240}) {
        stage.pointerTo(kLeft + 600, kTop + y);
        stage.mouseDown();
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        stage.mouseUp();
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
    }
    stage.passPictures(kPicturesToSettle);
    EXPECT_EQ(stage.look().at(kLeft + 1, kTop + 1), kPaper) << "still the playlist screen";
    click(kBack);
    stage.await([](const Shot& shot) { return app::homeSelection(shot) >= 0; }, "home");
    stage.closeWindow();
}

TEST_F(Editor, BrokenClip_TheEditorStaysWithALine) {
    stage.folder.addClip("broken.m19", {19, 50, 1, 2, 3});
    stage.folder.addPlaylist("BROKEN", {"broken.m19"});
    stage.folder.writePlaylists();
    stage.startAtHome();
    openEditor();
    drag(rightRow(0), kPreview);
    stage.await(
        [](const Shot& shot) {
            return app::countOf(shot, {kLeft + 4, kTop + 294, 300, 14}, kOrange) > 50;
        },
        "the line");
    EXPECT_EQ(stage.look().at(kLeft + 1, kTop + 1), kPaper);
    click(leftRow(0));
    EXPECT_EQ(app::countOf(stage.look(), {kLeft + 4, kTop + 294, 300, 14}, kOrange), 0);
}

// As large as it gets: the pictures keep coming at the stage's pace, 25 a second.
TEST_F(Editor, FiftyFullPlaylistsOfLongNames_KeepTheScreenAlive) {
    const std::string name(92, 'W');
    for (int clip = 0; clip < 150; ++clip) {
        stage.folder.addClip(std::to_string(clip) + std::string(80, 'x') + ".m19", {19, 50});
    }
    for (int list = 0; list < 50; ++list) {
        stage.folder.addPlaylist(name, std::vector<std::string>(49, name.substr(0, 91)));
    }
    stage.folder.writePlaylists();
    stage.startAtHome();
    openEditor();
    click(kEdit);
    const long long from = app::nowMs();
    stage.passPictures(50);
    EXPECT_LT(app::nowMs() - from, 4000 * app::slowness()) << "50 pictures take 2 seconds";
    const Shot shot = stage.look();
    EXPECT_EQ(app::countOf(shot, {kLeft + 320, kTop + 18, 2, 195}, kPaper), 390)
        << "between the columns";
}
