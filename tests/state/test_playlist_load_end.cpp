// How a load ends, is broken off and starts again; emptying the slots.
#include "state/stage.h"

namespace {

class PlaylistLoadEnd : public StageTest {
protected:
    PlaylistLoadEnd() { placeClip("one-frame-8.m19", "a.m19"); }
};

void startLoading(int index) {
    printedBy([&] { playlist->initLoad(index); });
}

void loadToTheEnd() {
    printedBy([] {
        for (int steps = 0; playlist->loading != 0 && steps < 10000; ++steps) {
            playlist->loopLoadPlaylist();
        }
    });
    ASSERT_EQ(playlist->loading, 0);
}

int slotsWithMemory() {
    int count = 0;
    for (int slot = 0; slot < kClipSlots; ++slot) {
        count += moxel[slot].hasRAM;
    }
    return count;
}

int slotsReady() {
    int count = 0;
    for (int slot = 0; slot < kClipSlots; ++slot) {
        count += moxel[slot].state == CLIP_READY ? 1 : 0;
    }
    return count;
}

TEST_F(PlaylistLoadEnd, EveryTrackMissing_DoneWithoutASlot) {
    addFamille("gone", {"x.m19", "y.m19", "z.m19"});
    startLoading(0);
    loadToTheEnd();
    EXPECT_EQ(playlist->loadSlot, 0);
    EXPECT_EQ(playlist->loadTrack, 3);
    EXPECT_EQ(playlist->loadDone, 1);
    EXPECT_EQ(slotsWithMemory(), 0);
}

TEST_F(PlaylistLoadEnd, LastTrackMissing_Done) {
    addFamille("set", {"a.m19", "x.m19"});
    startLoading(0);
    loadToTheEnd();
    EXPECT_EQ(playlist->loadSlot, 1);
    EXPECT_EQ(playlist->loadTrack, 2);
    EXPECT_EQ(playlist->loadDone, 1);
}

TEST_F(PlaylistLoadEnd, EmptyPlaylist_EndsAtOnce) {
    addFamille("set", {"a.m19"});
    addFamille("empty");
    startLoading(0);
    loadToTheEnd();
    ASSERT_EQ(playlist->loadSlot, 1);
    startLoading(1);
    EXPECT_EQ(playlist->loadDone, 1);
    EXPECT_EQ(playlist->loading, 0);
    EXPECT_EQ(playlist->loadSlot, 0);
    EXPECT_EQ(playlist->loadTrack, 0);
    EXPECT_EQ(playlist->currentFamille, 1);
    playlist->loopLoadPlaylist();
    EXPECT_EQ(playlist->loadTrack, 0);
    EXPECT_EQ(slotsReady(), 0);
}

TEST_F(PlaylistLoadEnd, FiftyTracks_FillEverySlot) {
    addFamille("full", std::vector<std::string>(50, "a.m19"));
    startLoading(0);
    loadToTheEnd();
    EXPECT_EQ(playlist->loadSlot, 50);
    EXPECT_EQ(playlist->loadTrack, 50);
    EXPECT_EQ(playlist->loadDone, 1);
    EXPECT_EQ(slotsReady(), 50);
}

TEST_F(PlaylistLoadEnd, FiftiethSlotFilled_EndsWithTracksLeft) {
    addFamille("long", std::vector<std::string>(51, "a.m19"));
    startLoading(0);
    loadToTheEnd();
    EXPECT_EQ(playlist->loadSlot, 50);
    EXPECT_EQ(playlist->loadTrack, 50);
    EXPECT_EQ(playlist->loadDone, 1);
    EXPECT_EQ(slotsReady(), 50);
}

TEST_F(PlaylistLoadEnd, FiftyOneTracksOneMissing_AllOthersLoad) {
    std::vector<std::string> paths(51, "a.m19");
    paths[10] = "gone.m19";
    addFamille("long", paths);
    startLoading(0);
    loadToTheEnd();
    EXPECT_EQ(playlist->loadSlot, 50);
    EXPECT_EQ(playlist->loadTrack, 51);
    EXPECT_EQ(playlist->loadDone, 1);
}

TEST_F(PlaylistLoadEnd, ClearMix_FreesEverySlotAndStops) {
    addFamille("other");
    addFamille("set", {"a.m19", "a.m19", "a.m19"});
    startLoading(1);
    printedBy([] {
        for (int steps = 0; steps < 6; ++steps) {  // one clip and half of the next
            playlist->loopLoadPlaylist();
        }
    });
    ASSERT_EQ(playlist->loadSlot, 1);
    ASSERT_EQ(slotsWithMemory(), 2);
    playlist->clearMix();
    EXPECT_EQ(slotsWithMemory(), 0);
    EXPECT_EQ(slotsReady(), 0);
    EXPECT_EQ(moxel[1].file, nullptr);
    EXPECT_EQ(playlist->loadSlot, 0);
    EXPECT_EQ(playlist->loading, 0);
    // These keep their values.
    EXPECT_EQ(playlist->loadTrack, 1);
    EXPECT_EQ(playlist->loadDone, 0);
    EXPECT_EQ(playlist->currentFamille, 1);
    EXPECT_EQ(moxel[0].name, "a.m19");
    playlist->loopLoadPlaylist();
    EXPECT_EQ(slotsWithMemory(), 0);
}

// A slot of another version tells whether it was freed: its drawn map would go.
void pretendOldClip(int slot) {
    pretendClip(slot, 20);
    moxel[slot].version = 18;
    moxel[slot].name = "old.m19";
    moxel[slot].prevMap.assign(5, uint16_t{9});
}

TEST_F(PlaylistLoadEnd, ClearMix_LastSlotAndSlotsWithoutMemory) {
    loadClip(49, "a.m19");
    pretendOldClip(7);
    playlist->clearMix();
    EXPECT_EQ(moxel[49].hasRAM, 0);
    EXPECT_EQ(moxel[49].state, CLIP_LOADING);
    EXPECT_EQ(moxel[49].blockRecords[0], nullptr);
    EXPECT_EQ(moxel[7].state, CLIP_LOADING);
    EXPECT_EQ(moxel[7].prevMap.size(), 5u);
    pretendClip(49, 20);
    playlist->clearMix();
    EXPECT_EQ(slotsReady(), 0);
}

TEST_F(PlaylistLoadEnd, InitLoad_LastSlotAndSlotsWithoutMemory) {
    addFamille("set", {"a.m19"});
    loadClip(49, "a.m19");
    pretendOldClip(7);
    EXPECT_EQ(printedBy([] { playlist->initLoad(0); }), "- - - destroy\1\n");
    EXPECT_EQ(moxel[49].hasRAM, 0);
    EXPECT_EQ(moxel[49].state, CLIP_LOADING);
    EXPECT_EQ(moxel[49].name, "");
    EXPECT_EQ(moxel[49].path, "");
    EXPECT_EQ(moxel[7].state, CLIP_READY);
    EXPECT_EQ(moxel[7].name, "old.m19");
    EXPECT_EQ(moxel[7].prevMap.size(), 5u);
}

TEST_F(PlaylistLoadEnd, AnotherPlaylistWhileLoading_StartsAfreshAtSlot0) {
    placeClip("flat-200.m19", "flat.m19");
    addFamille("first", {"a.m19", "a.m19", "a.m19"});
    addFamille("second", {"flat.m19"});
    startLoading(0);
    printedBy([] {
        for (int steps = 0; steps < 6; ++steps) {
            playlist->loopLoadPlaylist();
        }
    });
    ASSERT_EQ(playlist->loadSlot, 1);
    playlist->clearMix();
    startLoading(1);
    EXPECT_EQ(playlist->loadSlot, 0);
    EXPECT_EQ(playlist->loadTrack, 0);
    loadToTheEnd();
    EXPECT_EQ(playlist->loadSlot, 1);
    EXPECT_EQ(playlist->loadTrack, 1);
    EXPECT_EQ(moxel[0].name, "flat.m19");
    EXPECT_EQ(slotsReady(), 1);
    EXPECT_EQ(slotsWithMemory(), 1);
}

// Without clearMix before it: each slot that holds memory is destroyed, which prints one line.
TEST_F(PlaylistLoadEnd, InitLoadOverLoadedClips_DestroysThem) {
    addFamille("set", {"a.m19", "a.m19"});
    startLoading(0);
    loadToTheEnd();
    ASSERT_EQ(slotsWithMemory(), 2);
    EXPECT_EQ(printedBy([] { playlist->initLoad(0); }), "- - - destroy\1\n- - - destroy\1\n");
    EXPECT_EQ(slotsWithMemory(), 0);
    EXPECT_EQ(slotsReady(), 0);
    EXPECT_EQ(moxel[0].name, "a.m19");
    EXPECT_EQ(moxel[1].name, "");
    EXPECT_EQ(moxel[1].path, "");
}

TEST_F(PlaylistLoadEnd, MissingTrack_PrintsNothing) {
    addFamille("gone", {"x.m19"});
    startLoading(0);
    EXPECT_EQ(printedBy([] { playlist->loopLoadPlaylist(); }), "");
    EXPECT_EQ(playlist->loadDone, 1);
}

}  // namespace
