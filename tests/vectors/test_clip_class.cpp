// The clip object step by step: what each call reads, keeps, prints and redraws.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <fstream>

#include "tests/support/clip_stage.h"

namespace {

constexpr uint16_t kMark = 0x4A07;  // no tile of the clips used here is flat in it

// Tiles of `layer` whose pixels no longer hold the mark.
std::vector<bool> repainted(const ClipStage& stage, int layer) {
    std::vector<bool> tiles;
    for (int position = 0; position < stage.clip->tileCount; ++position) {
        bool touched = false;
        for (int i = 0; i < clip::kTilePixels; ++i) {
            const int at = layer * stage.clip->pixelCount +
                           (position / 80 * 8 + i / 8) * kFrameWidth + position % 80 * 8 + i % 8;
            touched = touched || stage.tiles[static_cast<size_t>(at)] != kMark;
        }
        tiles.push_back(touched);
    }
    return tiles;
}

// Draws `frame` over marked buffers; how many tiles were painted.
int paintedTiles(ClipStage& stage, int frame, int layer = 0) {
    std::fill(stage.tiles.begin(), stage.tiles.end(), kMark);
    stage.clip->renderMoxel19(layer, frame, MODE_TOP);
    const std::vector<bool> tiles = repainted(stage, layer);
    return static_cast<int>(std::count(tiles.begin(), tiles.end(), true));
}

int codeOf(const c_moxel& clip, int frame, int position) {
    const int words = clip.tileCount / 5;
    return clip::codeAt(clip.blockCodes[frame / 16].get() + frame % 16 * words, position);
}

// Tiles whose entry or code differs between two frames of the clip.
int differingTiles(const c_moxel& clip, int a, int b) {
    int count = 0;
    for (int position = 0; position < clip.tileCount; ++position) {
        count += clip.frameMaps[a][position] != clip.frameMaps[b][position] ||
                 codeOf(clip, a, position) != codeOf(clip, b, position);
    }
    return count;
}

ClipStage& load(ClipStage& stage, const char* name) {
    EXPECT_EQ(stage.load(name, 65000), 2);
    return stage;
}

TEST(Redraw, FrameZeroFirst_DrawsEverythingThenOnlyChanges) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "runs-360.m19");
    EXPECT_EQ(paintedTiles(stage, 0), 3600);
    const int changed = differingTiles(*stage.clip, 0, 1);
    EXPECT_LT(changed, 3600);
    EXPECT_EQ(paintedTiles(stage, 1), changed);
}

TEST(Redraw, FrameFiveFirst_DrawsEverythingTwice) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "runs-360.m19");
    EXPECT_EQ(paintedTiles(stage, 5), 3600);
    EXPECT_EQ(paintedTiles(stage, 6), 3600);
    EXPECT_EQ(paintedTiles(stage, 7), differingTiles(*stage.clip, 6, 7));
}

TEST(Redraw, NextBlock_DrawsEverything) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "seventeen-200.m19");
    stage.clip->renderMoxel19(0, 0, MODE_TOP);
    stage.clip->renderMoxel19(0, 15, MODE_TOP);
    EXPECT_EQ(paintedTiles(stage, 16), stage.clip->tileCount);
}

TEST(Redraw, JumpBackIntoABlock_DrawsOnlyTheDifference) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "long-256.m19");
    stage.clip->renderMoxel19(0, 0, MODE_TOP);
    stage.clip->renderMoxel19(0, 40, MODE_TOP);
    EXPECT_EQ(paintedTiles(stage, 3), differingTiles(*stage.clip, 40, 3));
}

TEST(Alpha, OutsideMode3_TheBufferKeepsWhatItHeld) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "rgba-all-360.m19");
    std::fill(stage.alpha.begin(), stage.alpha.end(), uint8_t{0x77});
    for (const int mode : {0, 1, 2, 4, 6}) {
        stage.clip->renderMoxel19(1, 0, mode);
    }
    stage.clip->renderMoxel19(0, 0, MODE_KEY);
    EXPECT_EQ(std::count(stage.alpha.begin(), stage.alpha.end(), 0x77),
              static_cast<long>(stage.alpha.size()));
    stage.clip->renderMoxel19(1, 0, MODE_KEY);
    EXPECT_EQ(std::count(stage.alpha.begin(), stage.alpha.begin() + kFramePixels, 0x77), 0);
}

// A position of frame 0 whose record is of the wanted kind.
int positionWithType(const c_moxel& clip, bool direct) {
    for (int position = 0; position < clip.tileCount; ++position) {
        const int code = codeOf(clip, 0, position);
        if (code == clip::CODE_FLAT || code == clip::CODE_EMPTY) {
            continue;
        }
        const int type = clip::recordType(clip.blockTypeStarts[0].get(),
                                          clip::typeSlots(clip.alpha), clip.frameMaps[0][position]);
        if ((type % clip::kColourTypes < clip::TYPE_FOUR_RUNS) == direct) {
            return position;
        }
    }
    ADD_FAILURE() << "no such tile";
    return 0;
}

void makeEmpty(c_moxel& clip, int position) {
    clip.blockCodes[0][static_cast<size_t>(position / 5)] |=
        static_cast<uint16_t>(7 << (3 * (position % 5)));
}

std::vector<uint16_t> tilePixels(const ClipStage& stage, int position) {
    std::vector<uint16_t> pixels;
    for (int i = 0; i < clip::kTilePixels; ++i) {
        const int at = stage.clip->pixelCount + (position / 80 * 8 + i / 8) * kFrameWidth +
                       position % 80 * 8 + i % 8;
        pixels.push_back(stage.tiles[static_cast<size_t>(at)]);
    }
    return pixels;
}

int alphaAt(const ClipStage& stage, int position) {
    return stage.alpha[static_cast<size_t>(position / 80 * 8 * kFrameWidth + position % 80 * 8)];
}

TEST(EmptyTile, quirk_empty_tile_shows_raw_record) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "rgba-all-360.m19");
    const int position = positionWithType(*stage.clip, true);
    stage.clip->renderMoxel19(1, 0, MODE_KEY);
    const std::vector<uint16_t> shown = tilePixels(stage, position);
    EXPECT_NE(std::count(shown.begin(), shown.end(), 0), 64);
    makeEmpty(*stage.clip, position);
    stage.clip->renderMoxel19(1, 0, MODE_KEY);
    EXPECT_EQ(tilePixels(stage, position), shown);
    EXPECT_EQ(alphaAt(stage, position), 0);
}

TEST(EmptyTile, WithARunRecord_IsBlackAndTransparent) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "rgba-all-360.m19");
    const int position = positionWithType(*stage.clip, false);
    makeEmpty(*stage.clip, position);
    stage.clip->renderMoxel19(1, 0, MODE_KEY);
    EXPECT_EQ(tilePixels(stage, position), std::vector<uint16_t>(64, 0));
    EXPECT_EQ(alphaAt(stage, position), 0);
}

// A clip of 200 lines: its top layer starts 128,000 pixels in, not at the mixer's 230,400.
TEST(LowClip, quirk_low_clip_moves_top_layer) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "flat-200.m19");
    std::fill(stage.tiles.begin(), stage.tiles.end(), kMark);
    stage.clip->renderMoxel19(1, 0, MODE_TOP);
    const auto begin = stage.tiles.begin();
    EXPECT_EQ(std::count(begin, begin + 128000, kMark), 128000);
    EXPECT_LT(std::count(begin + 128000, begin + 256000, kMark), 128000);
    EXPECT_EQ(std::count(begin + 256000, stage.tiles.end(), kMark), 460800 - 256000);
}

// What the mixer sees of it: lines 160 to 199 at the top of its slot, and nothing more.
TEST(LowClip, OnTheTopLayer_OnlyItsLastLinesShow) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "flat-200.m19");
    stage.clip->renderMoxel19(0, 0, MODE_TOP);
    const std::vector<uint16_t> whole(stage.tiles.begin(), stage.tiles.begin() + 200 * 640);
    std::fill(stage.tiles.begin(), stage.tiles.end(), kMark);
    stage.clip->renderMoxel19(1, 0, MODE_TOP);
    const auto slot = stage.tiles.begin() + 360 * 640;
    EXPECT_TRUE(std::equal(slot, slot + 40 * 640, whole.begin() + 160 * 640));
    EXPECT_EQ(std::count(slot + 40 * 640, stage.tiles.end(), kMark), 320 * 640);
}

TEST(Loading, WrongVersion_IsRefusedSilently) {
    ClipStage stage(TEST_DATA "/broken");
    testing::internal::CaptureStdout();
    EXPECT_EQ(stage.load("version-18.m19", 2000), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(stage.clip->miniLoad("./videos/version-18.m19"), 0);
}

TEST(Loading, MissingFile_IsRefusedSilently) {
    ClipStage stage(TEST_DATA "/clips");
    testing::internal::CaptureStdout();
    EXPECT_EQ(stage.load("no-such.m19", 2000), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST(Loading, PipeOrFolder_IsRefusedWithoutWaiting) {
    ClipStage stage(TEST_DATA "/clips");
    std::filesystem::remove("videos");
    std::filesystem::create_directories("videos/folder.m19");
    ASSERT_EQ(mkfifo("videos/pipe.m19", 0600), 0);
    EXPECT_EQ(stage.load("pipe.m19", 2000), 0);
    EXPECT_EQ(stage.load("folder.m19", 2000), 0);
    EXPECT_EQ(stage.clip->miniLoad("./videos/pipe.m19"), 0);
}

TEST(Loading, FileThatVanishedAfterTheCheck_SaysSo) {
    ClipStage stage(TEST_DATA "/clips");
    stage.clip->init("", "no-such.m19");
    testing::internal::CaptureStdout();
    EXPECT_EQ(stage.clip->load19A(), 0);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "./videos/no-such.m19\nvideo n'existe pas\n");
}

TEST(Loading, Start_PrintsThePath) {
    ClipStage stage(TEST_DATA "/clips");
    testing::internal::CaptureStdout();
    load(stage, "one-frame-8.m19");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "./videos/one-frame-8.m19\n");
}

TEST(Loading, ReadyClip_RepeatsTheExpansionAndAnswersDone) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "seventeen-200.m19");
    EXPECT_EQ(stage.clip->loadStage, 3);
    const uint16_t entry = stage.clip->frameMaps[16][7];
    stage.clip->frameMaps[16][7] = static_cast<uint16_t>(entry + 1);
    EXPECT_EQ(stage.clip->loopLoad(2000), 2);
    EXPECT_EQ(stage.clip->frameMaps[16][7], entry);
    EXPECT_EQ(stage.clip->state, CLIP_READY);
}

// As the playlists' scan does while the performer edits with a clip on stage.
TEST(MiniLoad, OnAPlayingSlot_FramesThatItDoesNotHoldAreNotDrawn) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "seventeen-200.m19");
    EXPECT_EQ(stage.clip->miniLoad("./videos/long-256.m19"), 1);
    EXPECT_EQ(stage.clip->frameCount, 256);
    EXPECT_EQ(paintedTiles(stage, 16), 2000);  // 80 x 25 tiles: the second block's first frame
    for (const int frame : {17, 32, 255}) {
        EXPECT_EQ(paintedTiles(stage, frame), 0) << "frame " << frame;
    }
}

TEST(MiniLoad, BetweenTheStepsOfALoad_DoesNotChangeWhatLoads) {
    ClipStage stage(TEST_DATA "/clips");
    stage.clip->init("", "seventeen-200.m19");
    int result = 1;
    while (result == 1) {
        result = stage.clip->loopLoad(100);
        stage.clip->miniLoad("./videos/long-256.m19");
    }
    EXPECT_EQ(result, 2);
    EXPECT_EQ(stage.clip->loopLoad(100), 2);
    EXPECT_EQ(stage.clip->frameCount, 17);
    EXPECT_EQ(stage.clip->blockCount, 2);
    EXPECT_EQ(paintedTiles(stage, 16), 2000);
}

TEST(Loading, StagePastThree_AnswersMore) {
    ClipStage stage(TEST_DATA "/clips");
    stage.clip->init("", "one-frame-8.m19");
    stage.clip->loadStage = 4;
    EXPECT_EQ(stage.clip->loopLoad(2000), 1);
}

TEST(Loading, ClipOfOneBlock_ClosesItsFileWithTheRecords) {
    ClipStage stage(TEST_DATA "/clips");
    stage.clip->init("", "block-16-200.m19");
    EXPECT_EQ(stage.clip->loopLoad(65000), 1);
    EXPECT_EQ(stage.clip->loadStage, 1);
    EXPECT_EQ(stage.clip->loopLoad(65000), 1);
    EXPECT_EQ(stage.clip->loadStage, 2);
    EXPECT_NE(stage.clip->file, nullptr);
    EXPECT_EQ(stage.clip->loopLoad(65000), 1);
    EXPECT_EQ(stage.clip->loadStage, 3);
    EXPECT_EQ(stage.clip->file, nullptr);
    EXPECT_EQ(stage.clip->state, CLIP_LOADING);
    EXPECT_EQ(stage.clip->loopLoad(65000), 2);
    EXPECT_EQ(stage.clip->state, CLIP_READY);
}

TEST(Loading, BudgetPastABlock_ReadsTheNextBlocksMapsInTheSameCall) {
    ClipStage stage(TEST_DATA "/clips");
    stage.clip->init("", "seventeen-200.m19");
    stage.clip->loopLoad(65000);
    stage.clip->loopLoad(65000);
    EXPECT_EQ(stage.clip->currentBlock, 0);
    EXPECT_EQ(stage.clip->loopLoad(65000), 1);
    EXPECT_EQ(stage.clip->currentBlock, 1);
    EXPECT_EQ(stage.clip->blocksAllocated, 2);
    EXPECT_EQ(stage.clip->recordsDone, 0);
    // The last block's only frame: its codes are there already, so its map is too.
    stage.clip->unRLEMap19(0);
    const std::vector<uint16_t> map(stage.clip->scratchMap,
                                    stage.clip->scratchMap + stage.clip->tileCount);
    while (stage.clip->loopLoad(65000) == 1) {
    }
    EXPECT_TRUE(std::equal(map.begin(), map.end(), stage.clip->frameMaps[16]));
}

TEST(Loading, SmallBudget_ReadsThatManyRecordsACall) {
    ClipStage stage(TEST_DATA "/clips");
    stage.clip->init("", "rgb-all-360.m19");
    stage.clip->loopLoad(10);
    stage.clip->loopLoad(10);
    stage.clip->loopLoad(10);
    EXPECT_EQ(stage.clip->recordsDone, 10);
    stage.clip->loopLoad(10);
    EXPECT_EQ(stage.clip->recordsDone, 20);
}

TEST(LastBlock, OfOneFrame_HoldsOneMap) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "seventeen-200.m19");
    EXPECT_EQ(stage.clip->blockCount, 2);
    EXPECT_EQ(clip::framesInBlock(1, 2, 17), 1);
    EXPECT_EQ(clip::framesInBlock(0, 2, 17), 16);
    EXPECT_EQ(clip::framesInBlock(0, 1, 16), 16);
}

TEST(KillRAM, Loaded_FreesTheBlocksAndClosesTheFile) {
    ClipStage stage(TEST_DATA "/clips");
    stage.clip->init("", "seventeen-200.m19");
    stage.clip->loopLoad(10);
    stage.clip->loopLoad(10);
    ASSERT_NE(stage.clip->file, nullptr);
    EXPECT_EQ(stage.clip->hasRAM, 1);
    stage.clip->killRAM();
    EXPECT_EQ(stage.clip->hasRAM, 0);
    EXPECT_EQ(stage.clip->file, nullptr);
    EXPECT_EQ(stage.clip->blockRecords[0], nullptr);
}

TEST(KillRAM, quirk_drawn_map_outlives_the_clip) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "rgb-all-360.m19");
    const uint16_t* map = stage.clip->prevMap.data();
    const uint16_t* codes = stage.clip->prevCodes.data();
    stage.clip->killRAM();
    EXPECT_EQ(stage.clip->prevMap.size(), 3600u);
    load(stage, "one-frame-8.m19");
    EXPECT_EQ(stage.clip->prevMap.data(), map);
    stage.clip->killRAM();
    load(stage, "runs-360.m19");
    EXPECT_EQ(stage.clip->prevMap.data(), map);
    EXPECT_EQ(stage.clip->prevCodes.data(), codes);
}

// A slot whose header was read anew from another version's file: that version's buffers go, the
// drawn map with them; the blocks are not of that version and stay.
TEST(KillRAM, OfAnotherVersion_FreesTheDrawnMapAndLeavesTheBlocks) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "one-frame-8.m19");
    stage.clip->version = 18;
    stage.clip->killRAM();
    EXPECT_EQ(stage.clip->hasRAM, 0);
    EXPECT_TRUE(stage.clip->prevMap.empty());
    EXPECT_TRUE(stage.clip->prevCodes.empty());
    EXPECT_NE(stage.clip->blockMaps[0], nullptr);
    EXPECT_EQ(stage.load("seventeen-200.m19", 2000), 2)
        << "the slot takes the next clip all the same";
}

TEST(Destroy, quirk_destroy_logs_block_count_as_character) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "one-frame-8.m19");
    stage.clip->blockCount = 10;
    testing::internal::CaptureStdout();
    stage.clip->destroy();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "- - - destroy\n\n");
    EXPECT_EQ(stage.clip->state, CLIP_LOADING);
    EXPECT_EQ(stage.clip->hasRAM, 0);
    EXPECT_EQ(stage.clip->name, "");
    EXPECT_EQ(stage.clip->path, "");
}

TEST(Init, UsedSlot_NamesTheFileAndStartsOver) {
    ClipStage stage(TEST_DATA "/clips");
    load(stage, "one-frame-8.m19");
    stage.clip->killRAM();
    stage.clip->init("ignored", "sub/other.m19");
    EXPECT_EQ(stage.clip->name, "sub/other.m19");
    EXPECT_EQ(stage.clip->path, "./videos/sub/other.m19");
    EXPECT_EQ(stage.clip->state, CLIP_LOADING);
    EXPECT_EQ(stage.clip->loadStage, 0);
    EXPECT_EQ(stage.clip->redrawCount, 2);
    EXPECT_EQ(stage.clip->width, 640);
}

TEST(TileDecoder, ColourOnlyRecordOfAnAlphaClip_IsOpaque) {
    ClipStage stage(TEST_DATA "/clips");
    c_moxel& clip = *stage.clip;
    clip.alpha = 1;
    std::vector<uint8_t> record(clip::kMaxRecordBytes, 0);
    clip.unRLETile19(record.data(), 3, 1);
    EXPECT_EQ(std::count(clip.tileAlpha, clip.tileAlpha + 64, 15), 64);
    EXPECT_EQ(clip.columnOrder, 1);
}

// Four runs of palette colours (6 bytes), then the alpha byte.
TEST(TileDecoder, Type13WithOneAlphaByte_HasThatLevel) {
    ClipStage stage(TEST_DATA "/clips");
    c_moxel& clip = *stage.clip;
    clip.alpha = 1;
    std::vector<uint8_t> record(clip::kMaxRecordBytes, 0);
    record[0] = 0x80;
    record[6] = 0x27;
    clip.unRLETile19(record.data(), 13, 1);
    EXPECT_EQ(std::count(clip.tileAlpha, clip.tileAlpha + 64, 7), 64);
}

TEST(TileDecoder, ClipWithoutAlpha_LeavesTheLevels) {
    ClipStage stage(TEST_DATA "/clips");
    c_moxel& clip = *stage.clip;
    clip.alpha = 0;
    std::fill_n(clip.tileAlpha, 64, uint8_t{9});
    std::vector<uint8_t> record(clip::kMaxRecordBytes, 0);
    clip.unRLETile19(record.data(), 4, 1);
    EXPECT_EQ(std::count(clip.tileAlpha, clip.tileAlpha + 64, 9), 64);
    EXPECT_EQ(clip.columnOrder, 0);
}

}  // namespace
