// The loader, step by step: which slot, which track, how much in a step.
#include "common/bytes.h"
#include "state/stage.h"

namespace {

constexpr int kStagesOfOneBlock = 4;  // headers, maps, records, expansion

void step(int times = 1) {
    printedBy([&] {
        for (int i = 0; i < times; ++i) {
            playlist->loopLoadPlaylist();
        }
    });
}

void startLoading(int index) {
    printedBy([&] { playlist->initLoad(index); });
}

// Steps until the load ends; the number of steps.
int loadToTheEnd() {
    int steps = 0;
    while (playlist->loading != 0 && steps < 10000) {
        step();
        ++steps;
    }
    return steps;
}

void append16(std::string& bytes, int value) {
    uint8_t word[2];
    putLe16(word, static_cast<uint16_t>(value));
    bytes.append(reinterpret_cast<const char*>(word), sizeof word);
}

void append32(std::string& bytes, int value) {
    append16(bytes, value & 0xFFFF);
    append16(bytes, value >> 16);
}

// One frame of one row of 80 flat black tiles, and `records` two-colour records of three bytes that
// no tile uses.
void writeClipWithRecords(const std::string& name, int records) {
    std::string bytes("\x13\x4B", 2);
    append16(bytes, 640);
    append16(bytes, 8);
    bytes += std::string("\0\1", 2);  // no alpha, one block
    append16(bytes, 1);               // frames
    append16(bytes, records);
    append32(bytes, records);  // record room, in units of 4 bytes
    append32(bytes, 40);       // map room, in units of 2 entries
    for (int type = 0; type < 10; ++type) {
        append16(bytes, type == 8 ? records : 0);
    }
    bytes += std::string(512, '\0');     // palette
    bytes += std::string(160, '\0');     // map
    bytes += std::string(2 * 16, '\0');  // codes of 80 tiles, five to a word
    for (int record = 0; record < records; ++record) {
        bytes += "\xC1\x02\x03";  // both colours from the palette
    }
    writeFile("videos/" + name, bytes);
}

class PlaylistLoad : public StageTest {};

TEST_F(PlaylistLoad, NotLoading_StepDoesNothing) {
    addFamille("one", {"a.m19"});
    step(3);
    EXPECT_EQ(playlist->loadTrack, 0);
    EXPECT_EQ(playlist->loadSlot, 0);
    EXPECT_EQ(playlist->loadDone, 0);
}

TEST_F(PlaylistLoad, Init_StartsAtTheFirstTrack) {
    addFamille("other", {"x.m19"});
    addFamille("mine", {"a.m19", "b.m19"});
    playlist->loadTrack = 7;
    playlist->loadSlot = 7;
    playlist->loadDone = 1;
    startLoading(1);
    EXPECT_EQ(playlist->currentFamille, 1);
    EXPECT_EQ(playlist->loadTrack, 0);
    EXPECT_EQ(playlist->loadSlot, 0);
    EXPECT_EQ(playlist->loadDone, 0);
    EXPECT_EQ(playlist->loading, 1);
    EXPECT_EQ(moxel[0].name, "a.m19");
    EXPECT_EQ(moxel[0].path, "./videos/a.m19");
}

TEST_F(PlaylistLoad, SecondOfThreeMissing_SlotsHoldTracks0And2) {
    placeClip("one-frame-8.m19", "a.m19");
    placeClip("flat-200.m19", "c.m19");
    addFamille("set", {"a.m19", "gone.m19", "c.m19"});
    startLoading(0);
    loadToTheEnd();
    EXPECT_EQ(playlist->loadSlot, 2);
    EXPECT_EQ(playlist->loadTrack, 3);
    EXPECT_EQ(playlist->loadDone, 1);
    EXPECT_EQ(playlist->loading, 0);
    EXPECT_EQ(moxel[0].name, "a.m19");
    EXPECT_EQ(moxel[0].state, CLIP_READY);
    EXPECT_EQ(moxel[1].name, "c.m19");
    EXPECT_EQ(moxel[1].state, CLIP_READY);
    EXPECT_EQ(moxel[1].frameCount, 18);
    EXPECT_EQ(moxel[2].state, CLIP_LOADING);
}

TEST_F(PlaylistLoad, EachCall_OneStepOfOneClip) {
    placeClip("one-frame-8.m19", "a.m19");
    addFamille("set", {"a.m19", "a.m19"});
    startLoading(0);
    for (int reached = 1; reached < kStagesOfOneBlock; ++reached) {
        step();
        EXPECT_EQ(moxel[0].loadStage, reached);
        EXPECT_EQ(playlist->loadSlot, 0);
        EXPECT_EQ(playlist->loadTrack, 0);
    }
    step();
    EXPECT_EQ(playlist->loadSlot, 1);
    EXPECT_EQ(playlist->loadTrack, 1);
    EXPECT_EQ(moxel[1].name, "a.m19");
    EXPECT_EQ(moxel[1].loadStage, 0);
    EXPECT_EQ(loadToTheEnd(), kStagesOfOneBlock);
    EXPECT_EQ(playlist->loadDone, 1);
}

TEST_F(PlaylistLoad, FirstClip_UpTo65000RecordsAStep) {
    writeClipWithRecords("many.m19", 65500);
    addFamille("set", {"many.m19"});
    startLoading(0);
    step(3);
    EXPECT_EQ(moxel[0].recordsDone, 65000);
    step();
    EXPECT_EQ(moxel[0].recordsDone, 65500);
}

TEST_F(PlaylistLoad, OtherClips_2000RecordsAStep) {
    placeClip("one-frame-8.m19", "a.m19");
    writeClipWithRecords("many.m19", 4100);
    addFamille("set", {"a.m19", "many.m19"});
    startLoading(0);
    step(kStagesOfOneBlock);
    ASSERT_EQ(playlist->loadSlot, 1);
    step(3);
    EXPECT_EQ(moxel[1].recordsDone, 2000);
    step();
    EXPECT_EQ(moxel[1].recordsDone, 4000);
    step();
    EXPECT_EQ(moxel[1].recordsDone, 4100);
    step();
    EXPECT_EQ(playlist->loadDone, 1);
    EXPECT_EQ(playlist->loadSlot, 2);
}

TEST_F(PlaylistLoad, SlotReadyAlready_CountsAsFailedTrack) {
    placeClip("one-frame-8.m19", "a.m19");
    placeClip("one-frame-8.m19", "b.m19");
    addFamille("set", {"a.m19", "b.m19"});
    startLoading(0);
    moxel[0].state = CLIP_READY;
    step();
    EXPECT_EQ(playlist->loadTrack, 1);
    EXPECT_EQ(playlist->loadSlot, 0);
    EXPECT_EQ(moxel[0].name, "b.m19");
    EXPECT_EQ(moxel[0].state, CLIP_LOADING);
}

// A stage that there is not answers 1: more to do.
TEST_F(PlaylistLoad, ClipNotFinished_NothingMoves) {
    addFamille("set", {"a.m19", "b.m19"});
    startLoading(0);
    moxel[0].loadStage = 9;
    step(5);
    EXPECT_EQ(playlist->loadTrack, 0);
    EXPECT_EQ(playlist->loadSlot, 0);
    EXPECT_EQ(playlist->loading, 1);
    EXPECT_EQ(moxel[0].name, "a.m19");
}

// Refused while its records are read, after its headers were good.
TEST_F(PlaylistLoad, ClipBreaksOffHalfWay_SlotGoesToTheNextTrack) {
    placeClip("one-frame-8.m19", "good.m19");
    writeFile("videos/cut.m19", readFile("videos/good.m19").substr(0, 2000));
    addFamille("set", {"cut.m19", "good.m19"});
    startLoading(0);
    loadToTheEnd();
    EXPECT_EQ(playlist->loadDone, 1);
    EXPECT_EQ(playlist->loadTrack, 2);
    ASSERT_GE(playlist->loadSlot, 1);
    EXPECT_EQ(moxel[playlist->loadSlot - 1].name, "good.m19");
}

}  // namespace
