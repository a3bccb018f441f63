#pragma once
// What a clip costs on stage: how long until it is ready, and its memory.
//
// The program loads a clip in one step a frame of 39 ms: the headers, the first block's maps, then
// tile records, 2000 a step, block after block (a step ends with its block), and one step for the
// frame maps. The first clip of a playlist takes 65,000 records a step. The next clip begins in the
// frame after; a file that cannot be loaded takes one frame.

#include <cstddef>
#include <span>

#include "clip/validate.h"

namespace maker {

inline constexpr double kStepSeconds = 0.039;
// A full clip of 256 frames should be ready by then; a slower one keeps a set waiting.
inline constexpr double kSlowSeconds = 12;

struct LoadCost {
    int steps = 0;       // frames that the loader takes, as any clip but the first of a playlist
    double seconds = 0;  // the same in seconds
    int stepsAsFirst = 0;
    double secondsAsFirst = 0;
    size_t memory = 0;  // bytes that the clip takes when loaded, its slot included
};

// `blocks` are all blocks of a clip that plays.
LoadCost loadCost(std::span<const clip::BlockLayout> blocks);

// Bytes of an empty clip slot; the program holds all 50 of them all the time.
size_t slotBytes();

}  // namespace maker
