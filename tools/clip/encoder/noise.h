#pragma once
// How noisy a block's pictures are: the noise that a camera adds to every picture anew.
//
// It is what changes from one picture to the next and is smooth nowhere: the second differences
// (Immerkaer's mask) of the temporal difference, of the quieter tiles. Motion of anything soft has
// none, and sharp things that move fill few of the quietest tiles. What stands perfectly still in
// more than half of the block is no camera's.

#include "tools/clip/encoder/source_block.h"

namespace maker {

// More than this is wanted: snow, coarse grain.
inline constexpr double kMostNoise = 8;

// Standard deviation on the scale 0 to 255; 0 for a block of one frame, and for more than
// kMostNoise.
double noiseOf(const SourceBlock& block);

}  // namespace maker
