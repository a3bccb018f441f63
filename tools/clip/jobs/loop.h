#pragma once
// How a clip is made to loop.
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
    BEST,       // from the frame to the frame between which the seam shows least (findSeam)
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

// The search for the loop whose seam shows least.
//
// Works on small copies of the frames. The loop from frame `begin` up to, but not including, frame
// `end` repeats well when the frames around `end` are like those around `begin`: what follows its
// last frame is then what follows it in the source, in picture and in motion. Before the first and
// after the last frame the motion is thought to go on.
inline constexpr int kSeamSearchFrames = 1024;

// 64 x 36 pixels of red, green and blue as seen over black.
using SmallPicture = std::vector<uint8_t>;

SmallPicture smallPicture(const std::vector<uint8_t>& rgba);

struct Seam {
    int begin = 0;
    int end = 0;
    double difference = 0;  // mean of the squared differences of a channel, 0 to 255
};

// The best loop of 256 frames at most and at least half of what is possible, or shorter where that
// would hold the same motion several times over: then it is there once. Of equally good ones the
// longest, then the earliest. One frame or more must be there.
//
// With `frames` the best of that length, of which as many must be there.
Seam findSeam(const std::vector<SmallPicture>& pictures, int frames = 0);

}  // namespace maker
