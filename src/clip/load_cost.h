#pragma once
// What the loader takes to load a clip. It does one step a frame: the headers, the first block's
// maps, then tile records, block after block, and one step for the frame maps. A step ends with its
// block. The next clip begins in the frame after; a file that cannot be loaded takes one frame.

#include <algorithm>

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

}  // namespace clip
