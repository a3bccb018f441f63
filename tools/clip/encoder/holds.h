#pragma once
// How long each tile position of a block shows one and the same picture.
//
// A hold is a stretch of frames at one position that share a picture: the mean of the stretch,
// which averages the noise of a camera away. The stretches of a position are those of the least
// squared error plus cost of new pictures, found over all ways of cutting the block by dynamic
// programming. A stretch never joins frames of unlike alpha, nor any whose pixels move further than
// the visible limit.

#include <cstdint>
#include <vector>

#include "tools/clip/encoder/rate.h"
#include "tools/clip/encoder/source_block.h"

namespace maker {

struct Hold {
    uint16_t position;  // raster
    uint8_t from;       // first frame
    uint8_t to;         // one past the last
    ColourPlanes colours;
};

// In the order of first frames, then positions.
std::vector<Hold> findHolds(const SourceBlock& block, const Rate& rate);

}  // namespace maker
