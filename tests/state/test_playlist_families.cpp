// Removing and moving playlists in memory.
#include "state/stage.h"

namespace {

using Names = std::vector<std::string>;

class PlaylistFamilles : public StageTest {
protected:
    PlaylistFamilles() {
        addFamille("A", {"a0.m19"});
        addFamille("B", {"b0.m19", "b1.m19"});
        addFamille("C", {"c0.m19", "c1.m19", "c2.m19"});
    }

    static void fillUpTo(int count) {
        while (playlist->nbFamilles < count) {
            const std::string name = numbered("f", playlist->nbFamilles);
            addFamille(name, {name + ".m19"});
        }
    }
};

TEST_F(PlaylistFamilles, RemoveLast_NothingShiftsAndRecordIsBlanked) {
    playlist->removeFamille(2);
    EXPECT_EQ(familleNames(), (Names{"A", "B"}));
    const Famille& unused = playlist->familles[2];
    EXPECT_EQ(unused.nbTracks, 0);
    EXPECT_EQ(unused.tracks[0].path, "m2x/none");
    EXPECT_EQ(unused.tracks[1].path, "m2x/none");
    EXPECT_EQ(unused.tracks[2].path, "m2x/none");
    EXPECT_EQ(unused.tracks[3].path, "");
}

// The paths of the record that falls out of use are blanked, its name stays.
TEST_F(PlaylistFamilles, Remove_UnusedRecordKeepsItsName) {
    playlist->removeFamille(0);
    EXPECT_EQ(playlist->familles[2].name, "C");
    EXPECT_EQ(playlist->familles[2].tracks[0].path, "m2x/none");
    playlist->removeFamille(1);
    EXPECT_EQ(playlist->familles[1].name, "C");
    EXPECT_EQ(playlist->familles[2].name, "C");
    EXPECT_EQ(familleNames(), Names{"B"});
}

TEST_F(PlaylistFamilles, RemoveFirst_OthersMoveUpWithTheirTracks) {
    playlist->removeFamille(0);
    EXPECT_EQ(familleNames(), (Names{"B", "C"}));
    EXPECT_EQ(playlist->familles[0].nbTracks, 2);
    EXPECT_EQ(playlist->familles[0].tracks[1].path, "b1.m19");
    EXPECT_EQ(playlist->familles[1].nbTracks, 3);
    EXPECT_EQ(playlist->familles[1].tracks[2].path, "c2.m19");
}

// The scan's results stay with the place; the next scan rebuilds them.
TEST_F(PlaylistFamilles, Remove_LeavesTheScansResultsInPlace) {
    playlist->familles[0].nbMissing = 1;
    playlist->familles[0].tracks[0].missing = 1;
    playlist->familles[0].weight = 9;
    playlist->removeFamille(0);
    EXPECT_EQ(playlist->familles[0].nbMissing, 1);
    EXPECT_EQ(playlist->familles[0].tracks[0].missing, 1);
    EXPECT_EQ(playlist->familles[0].weight, 9);
}

TEST_F(PlaylistFamilles, RemoveOutOfRange_NothingHappens) {
    for (const int index : {-1, 3, 49, 50, 1000}) {
        playlist->removeFamille(index);
        EXPECT_EQ(familleNames(), (Names{"A", "B", "C"})) << index;
    }
}

TEST_F(PlaylistFamilles, RemoveFrom50_LastRecordIsBlanked) {
    fillUpTo(50);
    playlist->removeFamille(0);
    ASSERT_EQ(playlist->nbFamilles, 49);
    EXPECT_EQ(playlist->familles[0].name, "B");
    EXPECT_EQ(playlist->familles[48].name, "f49");
    EXPECT_EQ(playlist->familles[49].tracks[0].path, "m2x/none");
    EXPECT_EQ(playlist->familles[49].nbTracks, 0);
}

TEST_F(PlaylistFamilles, Remove_DoesNotSave) {
    playlist->removeFamille(1);
    EXPECT_FALSE(std::filesystem::exists("userdata/playlists.xml"));
}

TEST_F(PlaylistFamilles, MoveTowardsTheBack_StandsBeforeTheOneThatWasThere) {
    playlist->deplacerFamille(0, 2);
    EXPECT_EQ(familleNames(), (Names{"B", "A", "C"}));
}

TEST_F(PlaylistFamilles, MoveTowardsTheFront_StandsAtTheTarget) {
    playlist->deplacerFamille(2, 0);
    EXPECT_EQ(familleNames(), (Names{"C", "A", "B"}));
    EXPECT_EQ(playlist->familles[0].tracks[2].path, "c2.m19");
    EXPECT_EQ(playlist->familles[1].tracks[0].path, "a0.m19");
    EXPECT_EQ(playlist->familles[2].tracks[1].path, "b1.m19");
}

TEST_F(PlaylistFamilles, MoveToItsOwnPlaceOrTheNext_OrderStays) {
    playlist->deplacerFamille(1, 1);
    EXPECT_EQ(familleNames(), (Names{"A", "B", "C"}));
    playlist->deplacerFamille(1, 2);
    EXPECT_EQ(familleNames(), (Names{"A", "B", "C"}));
}

TEST_F(PlaylistFamilles, MoveTarget_HeldBetweenFirstAndEnd) {
    playlist->deplacerFamille(1, -7);
    EXPECT_EQ(familleNames(), (Names{"B", "A", "C"}));
    playlist->deplacerFamille(0, 99);
    EXPECT_EQ(familleNames(), (Names{"A", "C", "B"}));
    EXPECT_EQ(playlist->familles[2].nbTracks, 2);
}

TEST_F(PlaylistFamilles, MoveOutOfRange_NothingHappens) {
    for (const int from : {-1, 3, 50}) {
        playlist->deplacerFamille(from, 0);
        EXPECT_EQ(familleNames(), (Names{"A", "B", "C"})) << from;
    }
}

// The record past the last travels one place up with the gap: a trace of it stays beyond the end.
TEST_F(PlaylistFamilles, quirk_move_copies_the_unused_record) {
    Famille& unused = playlist->familles[3];
    unused.name = "stale";
    unused.nbTracks = 2;
    unused.tracks[1].path = "stale.m19";
    playlist->deplacerFamille(0, 2);
    EXPECT_EQ(familleNames(), (Names{"B", "A", "C"}));
    EXPECT_EQ(playlist->familles[4].name, "stale");
    EXPECT_EQ(playlist->familles[4].nbTracks, 2);
    EXPECT_EQ(playlist->familles[4].tracks[1].path, "stale.m19");
}

TEST_F(PlaylistFamilles, MoveAmong50_Works) {
    fillUpTo(50);
    playlist->deplacerFamille(49, 0);
    ASSERT_EQ(playlist->nbFamilles, 50);
    EXPECT_EQ(playlist->familles[0].name, "f49");
    EXPECT_EQ(playlist->familles[1].name, "A");
    EXPECT_EQ(playlist->familles[49].name, "f48");
    playlist->deplacerFamille(0, 50);
    EXPECT_EQ(playlist->familles[0].name, "A");
    EXPECT_EQ(playlist->familles[48].name, "f48");
    EXPECT_EQ(playlist->familles[49].name, "f49");
    EXPECT_EQ(playlist->familles[49].tracks[0].path, "f49.m19");
    playlist->deplacerFamille(10, 20);
    EXPECT_EQ(playlist->familles[19].name, "f10");
    EXPECT_EQ(playlist->nbFamilles, 50);
}

TEST_F(PlaylistFamilles, MoveFamilleOf51Tracks_AllPathsComeAlong) {
    std::vector<std::string> paths;
    for (int t = 0; t < 51; ++t) {
        paths.push_back(numbered("t", t));
    }
    addFamille("long", paths);
    playlist->deplacerFamille(3, 0);
    EXPECT_EQ(playlist->familles[0].nbTracks, 51);
    EXPECT_EQ(playlist->familles[0].tracks[50].path, "t50");
}

}  // namespace
