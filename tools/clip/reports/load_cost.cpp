#include "tools/clip/reports/load_cost.h"

#include "clip/block.h"
#include "moxel/moxel.h"

namespace maker {

namespace {

int stepsFor(std::span<const clip::BlockLayout> blocks, int stepRecords) {
    int steps = clip::kStepsBesideRecords;
    for (const clip::BlockLayout& block : blocks) {
        steps += clip::recordSteps(block.header.recordCount, stepRecords);
    }
    return steps;
}

// A block's buffers.
size_t memoryOf(const clip::BlockLayout& block) {
    const size_t codeWords = block.codeBytes / sizeof(uint16_t);
    const size_t tiles = codeWords / static_cast<size_t>(block.frames) * clip::kCodesPerWord;
    const clip::BlockRoom room =
        clip::blockRoom(block.header.recordCount, block.header.recordWords, block.header.mapWords,
                        block.frames, static_cast<int>(tiles));
    return clip::kPaletteBytes + (room.mapEntries + room.codeWords) * sizeof(uint16_t) +
           room.runBytes + room.guardedRecordBytes() + room.records * sizeof(uint32_t) +
           clip::kMaxTypeSlots * (sizeof(uint16_t) + sizeof(uint32_t));
}

}  // namespace

LoadCost loadCost(std::span<const clip::BlockLayout> blocks) {
    LoadCost cost;
    cost.steps = stepsFor(blocks, clip::kOtherClipBudget);
    cost.seconds = kStepSeconds * cost.steps;
    cost.stepsAsFirst = stepsFor(blocks, clip::kFirstClipBudget);
    cost.secondsAsFirst = kStepSeconds * cost.stepsAsFirst;
    cost.memory = slotBytes();
    for (const clip::BlockLayout& block : blocks) {
        cost.memory += memoryOf(block);
    }
    return cost;
}

size_t slotBytes() {
    return sizeof(c_moxel);
}

}  // namespace maker
