// The page of one playlist: tracks, files explorer, confirm and back.
#include "moxel/moxel.h"
#include "state/editor_hands.h"

namespace {

using Paths = std::vector<std::string>;

class OnePlaylist : public EditorTest {
protected:
    OnePlaylist() {
        writeFile("videos/x.m19", "");
        writeFile("videos/live/y.m19", "");
        addFamille("set", {"A", "B", "C"});
        addFamille("other", {"o"});
        frame();
        editFirst();
    }
    void enter(const std::string& folder) { click(rightRow(rowOfEntry(folder))); }
};

TEST_F(OnePlaylist, Entering_OpensTheExplorerAtItsRootEveryTime) {
    enter("live");
    EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos/live");
    click(kConfirm);
    playlist->curDir = "/";
    editFirst();
    EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos");
    EXPECT_EQ(playlist->scroll[0].count, 3);
    EXPECT_EQ(playlist->scroll[1].count, 2);
}

TEST_F(OnePlaylist, ClickOnAFolder_EntersItAndBackReturns) {
    enter("live");
    EXPECT_EQ(playlist->nbEntries, 2);
    EXPECT_EQ(playlist->entries[0], ".. back");
    EXPECT_EQ(playlist->scroll[1].count, 2);
    click(rightRow(0));
    EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos");
    // Dragged away it stays closed.
    drag(rightRow(rowOfEntry("live")), leftRow(0));
    EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos");
    EXPECT_EQ(paths(0), (Paths{"A", "B", "C"}));
}

TEST_F(OnePlaylist, EntryDraggedIntoTheTracks_IsInsertedThere) {
    const Spot entry = rightRow(rowOfEntry("x.m19"));
    printed.clear();
    drag(entry, leftRow(1));
    EXPECT_EQ(paths(0), (Paths{"A", "x.m19", "B", "C"}));
    EXPECT_EQ(printed, "100\n37\n") << "the pointer, 18 + 13 + 6";
    drag(entry, leftRow(12));
    EXPECT_EQ(paths(0), (Paths{"A", "x.m19", "B", "C", "x.m19"}));
    EXPECT_EQ(playlist->scroll[0].count, 5);
}

TEST_F(OnePlaylist, EntryOfASubFolder_IsStoredWithIt) {
    enter("live");
    drag(rightRow(1), leftRow(0));
    EXPECT_EQ(paths(0), (Paths{"live/y.m19", "A", "B", "C"}));
}

TEST_F(OnePlaylist, EntryDroppedInAScrolledList_CountsFromTheFirstVisibleRow) {
    for (int t = 3; t < 30; ++t) {
        playlist->familles[0].tracks[t].path = numbered("t", t);
    }
    playlist->familles[0].nbTracks = 30;
    frame();
    playlist->scroll[0].pos = 10;
    drag(rightRow(rowOfEntry("x.m19")), leftRow(2));
    EXPECT_EQ(paths(0)[12], "x.m19");
    EXPECT_EQ(paths(0)[13], "t12");
}

TEST_F(OnePlaylist, TrackDragged_Moves) {
    drag(leftRow(0), leftRow(2));
    EXPECT_EQ(paths(0), (Paths{"B", "A", "C"}));
    EXPECT_EQ(playlist->selRow, 1);
    drag(leftRow(2), leftRow(0));
    EXPECT_EQ(paths(0), (Paths{"C", "B", "A"}));
    drag(leftRow(0), leftRow(8));
    EXPECT_EQ(paths(0), (Paths{"B", "A", "C"}));
    EXPECT_EQ(playlist->selRow, 2);
}

TEST_F(OnePlaylist, DeleteByDragClickAndKey_RemovesTheSelectedTrack) {
    drag(leftRow(1), kTrackDelete);
    EXPECT_EQ(paths(0), (Paths{"A", "C"}));
    click(leftRow(1));
    click(kTrackDelete);
    EXPECT_EQ(paths(0), (Paths{"A"}));
    tap(KEY_BACKSPACE);
    EXPECT_EQ(paths(0), Paths{});
    tap(KEY_BACKSPACE);
    click(kTrackDelete);
    EXPECT_EQ(paths(0), Paths{});
}

TEST_F(OnePlaylist, DeleteWithTheExplorerInUse_DoesNothing) {
    click(rightRow(rowOfEntry("x.m19")));
    click(kTrackDelete);
    drag(rightRow(rowOfEntry("x.m19")), kTrackDelete);
    EXPECT_EQ(paths(0), (Paths{"A", "B", "C"}));
}

TEST_F(OnePlaylist, Return_AddsTheSelectedFileBehindTheSelectedTrack) {
    click(leftRow(1));
    tap(KEY_RETURN);
    EXPECT_EQ(paths(0), (Paths{"A", "B", "C"})) << "the tracks are in use";
    click(rightRow(rowOfEntry("x.m19")));
    tap(KEY_RETURN);
    EXPECT_EQ(paths(0), (Paths{"A", "B", "x.m19", "C"}));
    tap(KEY_RETURN);
    EXPECT_EQ(paths(0), (Paths{"A", "B", "x.m19", "x.m19", "C"}));
}

TEST_F(OnePlaylist, Confirm_SavesAndReturnsToThePlaylist) {
    drag(leftRow(0), leftRow(2));
    click(kConfirm);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(playlist->editFamille, 0);
    EXPECT_EQ(playlist->scroll[0].count, 2);
    EXPECT_EQ(playlist->scroll[1].count, 3);
    EXPECT_EQ(readFile("userdata/playlists.xml"),
              "<?xml version=\"1.0\" encoding=\"iso-8859-1\"?>\n\n<all>\n"
              "\t<playlist>\n\t\t<name>set</name>\n\t\t<track>B</track>\n\t\t<track>A</track>\n"
              "\t\t<track>C</track>\n\t</playlist>\n"
              "\t<playlist>\n\t\t<name>other</name>\n\t\t<track>o</track>\n\t</playlist>\n"
              "</all>\n");
    EXPECT_EQ(playlist->familles[0].nbMissing, 3) << "scanned";
}

TEST_F(OnePlaylist, BackWithoutChanges_AsksNothing) {
    tap(KEY_Z);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(all->state, STATE_PLAYLISTS);
    EXPECT_FALSE(std::filesystem::exists("userdata/playlists.xml"));
}

TEST_F(OnePlaylist, BackWithChanges_AsksToSave) {
    drag(leftRow(0), kTrackDelete);
    click(kTracksBack);
    EXPECT_EQ(editor->question, ASK_SAVE);
    EXPECT_EQ(playlist->editPage, page::TRACKS);
    tap(KEY_Z);
    EXPECT_EQ(editor->question, ASK_NOTHING);
    EXPECT_EQ(playlist->editPage, page::TRACKS) << "go on editing";
    tap(KEY_Z);
    click(kNo);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    EXPECT_EQ(paths(0), (Paths{"A", "B", "C"}));
    EXPECT_FALSE(std::filesystem::exists("userdata/playlists.xml"));
    editFirst();
    drag(leftRow(0), kTrackDelete);
    tap(KEY_Z);
    click(kYes);
    EXPECT_EQ(paths(0), (Paths{"B", "C"}));
    EXPECT_TRUE(std::filesystem::exists("userdata/playlists.xml"));
}

TEST_F(OnePlaylist, ChangesTakenBack_AskNothing) {
    drag(leftRow(0), leftRow(2));
    drag(leftRow(0), leftRow(2));
    EXPECT_EQ(paths(0), (Paths{"A", "B", "C"}));
    tap(KEY_Z);
    EXPECT_EQ(playlist->editPage, page::BROWSE);
}

TEST_F(OnePlaylist, KeysInTheExplorer_EnterFoldersAndScroll) {
    for (int clip = 0; clip < 40; ++clip) {
        writeFile(numbered("videos/many/c", clip) + ".m19", "");
    }
    tap(KEY_Z);
    editFirst();
    tap(KEY_RIGHT);
    while (playlist->selItem < rowOfEntry("many")) {
        tap(KEY_DOWN);
    }
    tap(KEY_X);
    EXPECT_EQ(playlist->nbEntries, 41);
    EXPECT_EQ(playlist->selItem, 0);
    for (int i = 0; i < 60; ++i) {
        tap(KEY_DOWN);
    }
    EXPECT_EQ(playlist->selItem, 40);
    EXPECT_EQ(playlist->scroll[1].pos, 26);
    while (playlist->selItem > 0) {
        tap(KEY_UP);
    }
    EXPECT_EQ(playlist->scroll[1].pos, 0);
    tap(KEY_X);
    EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos");
}

TEST_F(OnePlaylist, FolderThatVanished_SaysSoAndLeadsBack) {
    std::filesystem::remove_all("videos/live");
    printed.clear();
    enter("live");
    EXPECT_EQ(printed, "Couldn't open the directory\n");
    EXPECT_EQ(playlist->nbEntries, 1);
    draw();
    click(rightRow(0));
    EXPECT_EQ(playlist->browseDir, playlist->baseDir + "/videos");
}

TEST_F(OnePlaylist, VideosFolderDeletedWhileBrowsed_StaysUsable) {
    std::filesystem::remove_all("videos");
    enter("live");
    click(rightRow(0));
    EXPECT_EQ(playlist->nbEntries, 0);
    draw();
    for (const int slot : {KEY_RIGHT, KEY_DOWN, KEY_X, KEY_RETURN}) {
        tap(slot);
    }
    drag(rightRow(0), leftRow(0));
    EXPECT_EQ(paths(0), (Paths{"A", "B", "C"}));
}

TEST_F(OnePlaylist, The50thTrack_IsRefusedWithALine) {
    playlist->familles[0].nbTracks = 49;
    drag(rightRow(rowOfEntry("x.m19")), leftRow(0));
    EXPECT_EQ(playlist->familles[0].nbTracks, 49);
    EXPECT_NE(editor->notice, "");
    click(kNowhere);
    EXPECT_EQ(editor->notice, "");
    drag(leftRow(0), leftRow(5));
    EXPECT_EQ(paths(0)[0], "A");
    EXPECT_NE(editor->notice, "");
}

TEST_F(OnePlaylist, RecordsPastTheLimit_AreShownAndShrunk) {
    playlist->familles[0].nbTracks = 51;
    drag(rightRow(rowOfEntry("x.m19")), leftRow(0));
    EXPECT_EQ(playlist->familles[0].nbTracks, 51);
    draw();
    drag(leftRow(0), kTrackDelete);
    EXPECT_EQ(playlist->familles[0].nbTracks, 50);
}

TEST_F(OnePlaylist, StateThatPointsNowhere_IsHeldInRange) {
    playlist->selRow = 4000;
    playlist->selItem = -7;
    playlist->editFamille = 77;
    playlist->scroll[0].pos = 0;
    frame();
    EXPECT_EQ(playlist->editFamille, 1);
    EXPECT_EQ(playlist->selRow, 0);
    EXPECT_EQ(playlist->selItem, 0);
    playlist->nbFamilles = 0;
    frame();
    EXPECT_EQ(playlist->editPage, page::BROWSE);
    draw();
}

}  // namespace
