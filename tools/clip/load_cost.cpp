#include "tools/clip/load_cost.h"

#include <algorithm>

#include "clip/moxel.h"

namespace maker {

namespace {

constexpr int kStepRecords = 2000;
constexpr int kFirstClipStepRecords = 65000;
constexpr double kStepSeconds = 0.039;
constexpr int kOtherSteps = 3;  // headers, the first block's maps, the frame maps

int stepsFor(std::span<const clip::BlockLayout> blocks, int stepRecords) {
    int steps = kOtherSteps;
    for (const clip::BlockLayout& block : blocks) {
        steps += std::max(1, (block.header.recordCount + stepRecords - 1) / stepRecords);
    }
    return steps;
}

size_t memoryOf(const clip::BlockLayout& block, size_t tiles) {
    const size_t frames = static_cast<size_t>(block.frames);
    const size_t runRoom = std::min(size_t{clip::kMaxRunBytes}, frames * tiles);
    return size_t{clip::kPaletteBytes} + size_t{4} * block.header.mapWords + runRoom +
           block.codeBytes + size_t{4} * block.header.recordWords + clip::kMaxRecordBytes +
           sizeof(uint32_t) * block.header.recordCount +
           clip::kMaxTypeSlots * (sizeof(uint16_t) + sizeof(uint32_t));
}

}  // namespace

LoadCost loadCost(std::span<const clip::BlockLayout> blocks) {
    LoadCost cost;
    cost.steps = stepsFor(blocks, kStepRecords);
    cost.seconds = kStepSeconds * cost.steps;
    cost.secondsAsFirst = kStepSeconds * stepsFor(blocks, kFirstClipStepRecords);
    cost.memory = sizeof(c_moxel);
    for (const clip::BlockLayout& block : blocks) {
        const size_t tiles =
            block.codeBytes / 2 / static_cast<size_t>(block.frames) * clip::kCodesPerWord;
        cost.memory += memoryOf(block, tiles);
    }
    return cost;
}

}  // namespace maker
