// The list of playlists over the mix: choosing, loading, leaving.
#include <X11/keysym.h>
#include <gtest/gtest.h>

#include "app/expected.h"
#include "app/pictures.h"
#include "app/screens.h"
#include "app/stage.h"
#include "app/tiny_clip.h"

namespace {

using app::Shot;
using app::Stage;

constexpr int kPlaylists = 3;

class OverMenu : public testing::Test {
protected:
    OverMenu() {
        stage.folder.addClip("red.m19", app::tinyClip({{red, {}}}));
        stage.folder.addClip("rich.m19", app::tinyClip({{rich, {}}}));
        stage.folder.addPlaylist("RED", {"red.m19"});
        stage.folder.addPlaylist("GONE", {"gone.m19", "lost.m19"});
        stage.folder.addPlaylist("RICH", {"rich.m19", "red.m19"});
        stage.folder.writePlaylists();
    }

    bool shown() { return app::overMenuShown(stage.look(), kPlaylists); }
    int selection() { return app::overMenuSelection(stage.look(), kPlaylists); }
    // The picture to the right of the menu, where nothing is drawn over it.
    void expectBeside(const Shot& picture, const char* what) {
        const Shot wanted = app::placed(picture);
        const Shot seen = stage.look();
        for (int y = 0; y < seen.height; ++y) {
            for (int x = 240; x < seen.width; ++x) {
                if (seen.at(x, y) != wanted.at(x, y)) {
                    ADD_FAILURE() << what << ": another pixel at " << x << ", " << y;
                    return;
                }
            }
        }
    }
    bool isHome() { return app::homeSelection(stage.look()) == 0; }

    Shot red = app::flatPicture(0xF800);
    Shot rich = app::richPicture(41);
    Stage stage;
};

}  // namespace

TEST_F(OverMenu, Arrows_MoveTheSelectionAndStopAtTheEnds) {
    stage.startAtOverMenu();
    EXPECT_EQ(selection(), 0);
    stage.tap(XK_Up);
    EXPECT_EQ(selection(), 0);
    stage.tap(XK_Down);
    EXPECT_EQ(selection(), 1);
    stage.tap(XK_Down);
    EXPECT_EQ(selection(), 2);
    stage.tap(XK_Down);
    EXPECT_EQ(selection(), 2);
    stage.tap(XK_Up);
    EXPECT_EQ(selection(), 1);
    // Beside the menu there is nothing to see without clips.
    expectBeside(app::flatPicture(0), "no clip");
    // Return closes it and loads nothing.
    stage.tap(XK_Return);
    stage.expectKeeps(app::blackShot(1280, 720), 10, "closed, nothing loaded");
    stage.tap(XK_Return);
    EXPECT_EQ(selection(), 1);
}

TEST_F(OverMenu, ReturnDuringMix_OpensOverTheRunningMix) {
    stage.startAtOverMenu();
    stage.tap(XK_x);
    stage.expectShows(app::placed(red), "RED");
    stage.tap(XK_Return);
    EXPECT_TRUE(shown());
    expectBeside(red, "RED goes on");
    stage.tap(XK_Return);
    stage.expectShows(app::placed(red), "RED again");

    // Another playlist: the mixer starts afresh, in mode 0 and with the first deck on both layers.
    stage.tap(XK_6);
    stage.tap(XK_Return);
    stage.tap(XK_Down);
    stage.tap(XK_Down);
    stage.tap(XK_x);
    stage.expectShows(app::placed(rich), "RICH");
    stage.tap(XK_Return);
    stage.tap(XK_Up);
    stage.tap(XK_x);
    stage.expectShows(app::blackShot(1280, 720), "GONE has no clip");
    // Keys of the mix find no deck.
    for (const unsigned long key : {XK_Left, XK_Right, XK_Down, XK_Right, XK_2, XK_s, XK_z}) {
        stage.tap(key);
    }
    stage.expectKeeps(app::blackShot(1280, 720), 5, "still nothing");
    EXPECT_EQ(stage.closeWindow(), 1);
    const std::string output = stage.output();
    EXPECT_NE(output.find("./videos/red.m19\n./videos/rich.m19\n./videos/red.m19\n"),
              std::string::npos)
        << output;
}

TEST_F(OverMenu, HomeAndBack_EmptiesTheDecksAndOpensTheMenu) {
    stage.startAtOverMenu();
    stage.tap(XK_x);
    stage.expectShows(app::placed(red), "RED");
    stage.tap(XK_Return);
    stage.tap(XK_z);
    EXPECT_TRUE(isHome());
    stage.tap(XK_x);
    EXPECT_EQ(selection(), 0);
    expectBeside(app::flatPicture(0), "the decks are empty");
    stage.tap(XK_Return);
    stage.expectKeeps(app::blackShot(1280, 720), 5, "nothing loaded");
    stage.tap(XK_Return);
    stage.tap(XK_x);
    stage.expectShows(app::placed(red), "RED loaded again");
}
