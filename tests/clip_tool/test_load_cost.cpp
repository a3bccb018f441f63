// How long a clip takes to load, its memory, and the verdict that follows.
#include <gtest/gtest.h>

#include <vector>

#include "clip_tool/pictures.h"
#include "tools/clip/reports/describe.h"

namespace {

// A block of a 640 x 360 clip: 3600 tiles, 720 code words a frame. Room as announced.
clip::BlockLayout block(int frames, uint16_t records, uint32_t recordWords = 0,
                        uint32_t mapWords = 1800) {
    clip::BlockLayout layout{};
    layout.frames = frames;
    layout.header.recordCount = records;
    layout.header.recordWords = recordWords;
    layout.header.mapWords = mapWords;
    layout.codeBytes = 2 * 720 * static_cast<size_t>(frames);
    return layout;
}

maker::LoadCost costOf(const std::vector<clip::BlockLayout>& blocks) {
    return maker::loadCost(blocks);
}

// Headers, first block's maps, one call of the record reader, frame maps.
TEST(LoadCost, BlockWithoutRecords_TakesFourSteps) {
    EXPECT_EQ(costOf({block(16, 0)}).steps, 4);
    EXPECT_EQ(costOf({block(16, 0)}).stepsAsFirst, 4);
    EXPECT_DOUBLE_EQ(costOf({block(16, 0)}).seconds, 4 * 0.039);
}

TEST(LoadCost, Records_TakeAStepEveryTwoThousand) {
    EXPECT_EQ(costOf({block(16, 1)}).steps, 4);
    EXPECT_EQ(costOf({block(16, 2000)}).steps, 4);
    EXPECT_EQ(costOf({block(16, 2001)}).steps, 5);
    EXPECT_EQ(costOf({block(16, 4000)}).steps, 5);
}

TEST(LoadCost, BlockEnd_EndsItsStep) {
    EXPECT_EQ(costOf({block(16, 2001), block(16, 1), block(1, 0)}).steps, 3 + 2 + 1 + 1);
}

TEST(LoadCost, FirstClip_TakesSixtyFiveThousandRecordsAStep) {
    const maker::LoadCost cost = costOf({block(16, 65000), block(16, 65001)});
    EXPECT_EQ(cost.stepsAsFirst, 3 + 1 + 2);
    EXPECT_EQ(cost.steps, 3 + 33 + 33);
    EXPECT_DOUBLE_EQ(cost.secondsAsFirst, 6 * 0.039);
}

// Palette 512; 2 x 1800 entries of 2 bytes; 3600 run bytes; 1440 code bytes; 4 x 100 bytes of
// records and the 225 behind them; 10 offsets of 4 bytes; 20 counts of 2 and 20 starts of 4 bytes.
TEST(LoadCost, Memory_IsTheSlotAndTheBlocksBuffers) {
    const size_t buffers = 512 + 7200 + 3600 + 1440 + 400 + 225 + 40 + 40 + 80;
    EXPECT_EQ(costOf({block(1, 10, 100)}).memory, maker::slotBytes() + buffers);
    EXPECT_EQ(costOf({block(1, 10, 100), block(1, 10, 100)}).memory,
              maker::slotBytes() + 2 * buffers);
}

// 10 records of at most 225 bytes; 3600 + 128 entries for one frame.
TEST(LoadCost, RoomBeyondNeed_TakesNoMemory) {
    const size_t buffers = 512 + 2 * 3728 + 3600 + 1440 + 2250 + 225 + 40 + 40 + 80;
    EXPECT_EQ(costOf({block(1, 10, 1'000'000, 1'000'000)}).memory, maker::slotBytes() + buffers);
}

// The maps of 256 frames of 3600 entries lie in the slot itself.
TEST(LoadCost, Slot_HoldsTheMapsOfAllFrames) {
    EXPECT_GE(maker::slotBytes(), 256u * 3600 * 2);
    EXPECT_LT(maker::slotBytes(), 1'900'000u);
}

TEST(Verdict, SecondsAboveTwelve_AreSlow) {
    maker::Description description;
    description.verdict.ok = true;
    description.cost.seconds = 12.0;
    EXPECT_EQ(maker::verdictText(description), "plays");
    description.cost.seconds = 14.196;
    EXPECT_EQ(maker::verdictText(description),
              "plays, but loads slowly: 14.2 s (slow from 12 s on)");
}

TEST(Verdict, TrailingBytes_AreIgnored) {
    maker::Description description;
    description.verdict = {false, clip::FAULT_TRAILING, "7 bytes after the last block", 0, 99};
    EXPECT_TRUE(description.plays());
    EXPECT_EQ(maker::verdictText(description),
              "plays; ignored: 7 bytes after the last block (offset 99)");
}

TEST(Verdict, Fault_NamesItsPlace) {
    maker::Description description;
    description.verdict = {false, clip::FAULT_BROKEN, "the file ends", 3, 1234};
    EXPECT_FALSE(description.plays());
    EXPECT_EQ(maker::verdictText(description), "broken in block 3 at offset 1234: the file ends");
    description.verdict.block = -1;
    EXPECT_EQ(maker::verdictText(description),
              "broken in the file header at offset 1234: the file ends");
}

TEST(Verdict, RealClip_PlaysWithItsCosts) {
    maker::Description description;
    ASSERT_TRUE(maker::describe(pictures::encode({pictures::flat(8, 3)}), description));
    EXPECT_TRUE(description.plays());
    EXPECT_EQ(description.cost.steps, 4);
}

}  // namespace
