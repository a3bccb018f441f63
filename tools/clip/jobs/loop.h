#pragma once
// How a clip is made to loop, apart from the search for the best seam (seam.h).
//
// All is counted in frames. A loop takes some frames of the source and gives some to the clip, 256
// at most.

#include <cstdint>
#include <vector>

namespace maker {

enum class LoopKind {
    NONE,
    PINGPONG,   // forwards, then backwards; the two turning points are shown once
    CROSSFADE,  // the last frames are blended into the first ones
    BEST,       // from the frame to the frame between which the seam shows least
};

struct LoopSettings {
    LoopKind kind = LoopKind::NONE;
    int blend = 0;  // CROSSFADE: frames blended
};

// Frames that make the longest clip there can be. BEST: those among which a loop is looked for.
int framesTaken(const LoopSettings& loop);

// Frames blended when `taken` are there: half of them at most, so that none is blended twice.
int blendOf(const LoopSettings& loop, int taken);

// Frames of the clip made from `taken` ones by NONE, PINGPONG or CROSSFADE.
int framesGiven(const LoopSettings& loop, int taken);

// Mixes frame `index` of `blend` that fade from the clip's last frames to its first ones: `first`
// becomes `last` and `first` mixed. Colours count as much as they are opaque.
void crossfade(int index, int blend, const std::vector<uint8_t>& last, std::vector<uint8_t>& first);

}  // namespace maker
