#pragma once
// What a clip costs on stage: how long until it is ready, and its memory.
//
// The program loads a clip in one step a frame of 39 ms: the headers, the first block's maps, then
// tile records, 2000 a step, block after block (a step ends with its block), and one step for the
// frame maps. The first clip of a playlist takes 65,000 records a step.

#include <cstddef>
#include <span>

#include "clip/validate.h"

namespace maker {

struct LoadCost {
    int steps = 0;       // frames that the loader takes, as any clip but the first of a playlist
    double seconds = 0;  // the same in seconds
    double secondsAsFirst = 0;
    size_t memory = 0;  // bytes that the clip takes when loaded
};

LoadCost loadCost(std::span<const clip::BlockLayout> blocks);

}  // namespace maker
