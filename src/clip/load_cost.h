#pragma once
// What the loader takes to load a clip. It does one step a frame: the headers, the first block's
// maps, then tile records, block after block, and one step for the frame maps. A step ends with its
// block. The next clip begins in the frame after; a file that cannot be loaded takes one frame.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "clip/format.h"

namespace clip {

// Tile records a step: the first clip should be there almost at once, the others leave the mix its
// frame rate.
inline constexpr int kFirstClipBudget = 65000;
inline constexpr int kOtherClipBudget = 2000;

inline constexpr double kStepSeconds = 0.039;
inline constexpr int kStepsBesideRecords = 3;  // headers, first block's maps, frame maps

// For one block's records; `budget` is at least 1.
constexpr int recordSteps(int records, int budget) {
    return std::max(1, (records + budget - 1) / budget);
}

// Room for a block's buffers. The file announces room, in words of four bytes; a block never gets
// more than its records, tiles and frames can need, however much that is.
struct BlockRoom {
    size_t mapEntries;
    size_t runBytes;
    size_t recordBytes;
};

// A frame's runs may pass its last tile; the entries of that excess are read all the same.
constexpr BlockRoom blockRoom(uint16_t recordCount, uint32_t recordWords, uint32_t mapWords,
                              int frames, int tiles) {
    const uint64_t frameCount = static_cast<uint64_t>(frames);
    const uint64_t tileCount = static_cast<uint64_t>(tiles);
    return {static_cast<size_t>(
                std::min(uint64_t{2} * mapWords, frameCount * (tileCount + kMaxRunLength))),
            static_cast<size_t>(std::min(uint64_t{kMaxRunBytes}, frameCount * tileCount)),
            static_cast<size_t>(
                std::min(uint64_t{4} * recordWords, uint64_t{recordCount} * kMaxRecordBytes))};
}

}  // namespace clip
