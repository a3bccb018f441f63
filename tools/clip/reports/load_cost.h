#pragma once
// What a clip costs on stage: how long until it is ready, by the steps of clip/load_cost.h, and its
// memory.

#include <cstddef>
#include <span>

#include "clip/load_cost.h"
#include "clip/validate.h"

namespace maker {

using clip::kStepSeconds;
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
