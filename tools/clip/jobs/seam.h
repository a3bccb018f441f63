#pragma once
// The search for the loop whose seam shows least.
//
// Works on small copies of the frames. The loop from frame `begin` up to, but not including, frame
// `end` repeats well when the frames around `end` are like those around `begin`: what follows its
// last frame is then what follows it in the source, in picture and in motion. Before the first and
// after the last frame the motion is thought to go on.

#include <cstdint>
#include <vector>

namespace maker {

inline constexpr int kSeamSearchFrames = 1024;

// 64 x 36 pixels of red, green and blue as seen over black.
using SmallPicture = std::vector<uint8_t>;

SmallPicture smallPicture(const std::vector<uint8_t>& rgba);

struct Seam {
    int begin = 0;
    int end = 0;
    double difference = 0;  // mean of the squared differences of a channel, 0 to 255
};

// The best loop of 256 frames at most and at least half of what is possible; of equally good ones
// the longest, then the earliest. One frame or more must be there.
Seam findSeam(const std::vector<SmallPicture>& pictures);

}  // namespace maker
