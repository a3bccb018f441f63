#pragma once
// A clip as one small picture, for file managers.

#include <cstdint>
#include <vector>

#include "tools/clip/reports/clip_frames.h"

namespace maker {

// The frame that tells most: of a few all over the clip the one whose brightness differs most from
// pixel to pixel. What is transparent counts as black.
int tellingFrame(const ClipFrames& clip);

// That frame as a PNG file, at most `size` pixels wide and high; alpha is kept.
std::vector<uint8_t> thumbnail(const ClipFrames& clip, int size);

}  // namespace maker
