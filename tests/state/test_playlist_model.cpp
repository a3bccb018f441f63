// Set-up of the playlists, the scan of their files, new playlists.
#include "state/stage.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kUserFile = "userdata/playlists.xml";

class PlaylistModel : public StageTest {};

TEST_F(PlaylistModel, Init_StartsEmptyInTheWorkingDirectory) {
    const std::string here = fs::current_path();
    EXPECT_EQ(playlist->currentFamille, 0);
    EXPECT_EQ(playlist->loadSlot, 0);
    EXPECT_EQ(playlist->loading, 0);
    EXPECT_EQ(playlist->file, nullptr);
    EXPECT_EQ(playlist->baseDir, here);
    EXPECT_EQ(playlist->browseDir, here);
    EXPECT_EQ(playlist->curDir, here);
    EXPECT_EQ(playlist->editPage, 0);
    EXPECT_EQ(playlist->editFamille, 0);
    EXPECT_EQ(playlist->selRow, 0);
    EXPECT_EQ(playlist->selItem, 0);
    EXPECT_EQ(playlist->newName, "");
    EXPECT_EQ(playlist->nbEntries, 0);
    EXPECT_EQ(playlist->dragging, 0);
    EXPECT_EQ(playlist->dropRow, 0);
    ASSERT_NE(playlist->previewClip, nullptr);
    EXPECT_EQ(playlist->previewClip->hasRAM, 0);
    EXPECT_EQ(playlist->previewClip->name, "");
    EXPECT_EQ(playlist->previewActive, 0);
    EXPECT_EQ(playlist->previewFrame, 0);
}

TEST_F(PlaylistModel, Init_ClearsTheScansResults) {
    Famille& last = playlist->familles[49];
    last.weight = 4;
    last.nbMissing = 5;
    last.tracks[0].missing = 1;
    last.tracks[49].missing = 1;
    delete playlist->previewClip;
    playlist->initPlaylist();
    EXPECT_EQ(last.weight, 0);
    EXPECT_EQ(last.nbMissing, 0);
    EXPECT_EQ(last.tracks[0].missing, 0);
    EXPECT_EQ(last.tracks[49].missing, 0);
}

TEST_F(PlaylistModel, Scan_MarksWhatIsMissingOrNoClip) {
    placeClip("one-frame-8.m19", "good.m19");
    placeClip("flat-200.m19", "folder/deep.m19");
    writeFile("videos/old.m19", std::string(1, '\x12') + "not version 19");
    writeFile("videos/empty.m19", "");
    addFamille("mixed", {"good.m19", "gone.m19", "folder/deep.m19", "old.m19", "empty.m19"});
    addFamille("whole", {"good.m19", "good.m19"});
    playlist->scanFamilles();
    const int expected[] = {0, 1, 0, 1, 1};
    for (int t = 0; t < 5; ++t) {
        EXPECT_EQ(playlist->familles[0].tracks[t].missing, expected[t]) << t;
    }
    EXPECT_EQ(playlist->familles[0].nbMissing, 3);
    EXPECT_EQ(playlist->familles[1].nbMissing, 0);
}

TEST_F(PlaylistModel, ScanAgain_CountsAfresh) {
    addFamille("late", {"late.m19"});
    playlist->scanFamilles();
    EXPECT_EQ(playlist->familles[0].nbMissing, 1);
    EXPECT_EQ(playlist->familles[0].tracks[0].missing, 1);
    placeClip("one-frame-8.m19", "late.m19");
    playlist->scanFamilles();
    EXPECT_EQ(playlist->familles[0].nbMissing, 0);
    EXPECT_EQ(playlist->familles[0].tracks[0].missing, 0);
}

TEST_F(PlaylistModel, quirk_playlist_weight_is_zero) {
    placeClip("one-frame-8.m19", "good.m19");
    addFamille("full", std::vector<std::string>(49, "good.m19"));
    playlist->familles[0].weight = 7;
    playlist->scanFamilles();
    EXPECT_EQ(playlist->familles[0].weight, 0);  // 49 / 250000
}

// There are 51 tracks and 50 clip slots.
TEST_F(PlaylistModel, ScanOf51Tracks_LastOneIsJudgedToo) {
    placeClip("one-frame-8.m19", "good.m19");
    std::vector<std::string> paths(51, "gone.m19");
    paths[50] = "good.m19";
    addFamille("long", paths);
    playlist->scanFamilles();
    EXPECT_EQ(playlist->familles[0].nbMissing, 50);
    EXPECT_EQ(playlist->familles[0].tracks[50].missing, 0);
    std::swap(paths[0], paths[50]);
    playlist->nbFamilles = 0;
    addFamille("long", paths);
    playlist->scanFamilles();
    EXPECT_EQ(playlist->familles[0].nbMissing, 50);
    EXPECT_EQ(playlist->familles[0].tracks[0].missing, 0);
    EXPECT_EQ(playlist->familles[0].tracks[50].missing, 1);
}

// A header stays in the slot of the track's number until the next playlist's track of that number.
TEST_F(PlaylistModel, Scan_ReadsTrackNThroughSlotN) {
    placeClip("one-frame-8.m19", "one.m19");
    placeClip("seventeen-200.m19", "seventeen.m19");
    placeClip("long-256.m19", "long.m19");
    addFamille("first", {"one.m19", "seventeen.m19", "gone.m19", "long.m19"});
    playlist->scanFamilles();
    EXPECT_EQ(moxel[0].frameCount, 1);
    EXPECT_EQ(moxel[1].frameCount, 17);
    EXPECT_EQ(moxel[2].frameCount, 0);
    EXPECT_EQ(moxel[3].frameCount, 256);
    addFamille("second", {"long.m19"});
    playlist->scanFamilles();
    EXPECT_EQ(moxel[0].frameCount, 256);
    EXPECT_EQ(moxel[1].frameCount, 17);
}

TEST_F(PlaylistModel, CreateNew_AppendsWithoutTracksAndSaves) {
    addFamille("first", {"a.m19"});
    playlist->familles[1].nbTracks = 5;
    playlist->newName = "SECOND";
    playlist->createNewFamille();
    EXPECT_EQ(familleNames(), (std::vector<std::string>{"first", "SECOND"}));
    EXPECT_EQ(playlist->familles[1].nbTracks, 0);
    EXPECT_NE(readFile(kUserFile).find("\t\t<name>SECOND</name>\n\t</playlist>\n</all>\n"),
              std::string::npos);
}

TEST_F(PlaylistModel, CreateNewAt50_DoesNothing) {
    for (int f = 0; f < 49; ++f) {
        addFamille(numbered("f", f));
    }
    playlist->newName = "last";
    playlist->createNewFamille();
    ASSERT_EQ(playlist->nbFamilles, 50);
    EXPECT_EQ(playlist->familles[49].name, "last");
    fs::remove(kUserFile);
    playlist->newName = "too many";
    playlist->createNewFamille();
    EXPECT_EQ(playlist->nbFamilles, 50);
    EXPECT_EQ(playlist->familles[49].name, "last");
    EXPECT_EQ(playlist->familles[50].name, "");
    EXPECT_FALSE(fs::exists(kUserFile));
}

TEST_F(PlaylistModel, SaveFamille_SavesAndScans) {
    addFamille("one", {"gone.m19"});
    playlist->saveFamille();
    EXPECT_NE(readFile(kUserFile).find("<track>gone.m19</track>"), std::string::npos);
    EXPECT_EQ(playlist->familles[0].nbMissing, 1);
}

}  // namespace
