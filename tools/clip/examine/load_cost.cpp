#include "tools/clip/examine/load_cost.h"

#include <algorithm>

#include "clip/moxel.h"

namespace maker {

namespace {

constexpr int kStepRecords = 2000;
constexpr int kFirstClipStepRecords = 65000;
constexpr int kOtherSteps = 3;  // headers, the first block's maps, the frame maps

int stepsFor(std::span<const clip::BlockLayout> blocks, int stepRecords) {
    int steps = kOtherSteps;
    for (const clip::BlockLayout& block : blocks) {
        steps += std::max(1, (block.header.recordCount + stepRecords - 1) / stepRecords);
    }
    return steps;
}

// A block's buffers. The file announces room; the program never takes more of it than the block's
// frames and records can need.
size_t memoryOf(const clip::BlockLayout& block) {
    const size_t frames = static_cast<size_t>(block.frames);
    const size_t records = block.header.recordCount;
    const size_t codeWords = block.codeBytes / sizeof(uint16_t);
    const size_t tiles = codeWords / frames * clip::kCodesPerWord;
    const size_t entries =
        std::min(size_t{2} * block.header.mapWords, frames * (tiles + clip::kMaxRunLength));
    const size_t runs = std::min(size_t{clip::kMaxRunBytes}, frames * tiles);
    const size_t recordRoom =
        std::min(size_t{4} * block.header.recordWords, records * clip::kMaxRecordBytes);
    return clip::kPaletteBytes + entries * sizeof(uint16_t) + runs + block.codeBytes + recordRoom +
           clip::kMaxRecordBytes + records * sizeof(uint32_t) +
           clip::kMaxTypeSlots * (sizeof(uint16_t) + sizeof(uint32_t));
}

}  // namespace

LoadCost loadCost(std::span<const clip::BlockLayout> blocks) {
    LoadCost cost;
    cost.steps = stepsFor(blocks, kStepRecords);
    cost.seconds = kStepSeconds * cost.steps;
    cost.stepsAsFirst = stepsFor(blocks, kFirstClipStepRecords);
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
