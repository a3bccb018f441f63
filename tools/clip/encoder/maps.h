#pragma once
// Frame maps: what stands at each tile of a frame, and how it changes from frame to frame.
//
// A frame has one map entry (flat colour or record number) and one code a tile, in raster order.
// Only entries travel as changes; codes are stored whole for every frame.

#include <cstdint>
#include <span>
#include <vector>

namespace maker {

struct FrameMap {
    std::vector<uint16_t> entries;
    std::vector<uint8_t> codes;
};

// Appends the run bytes that lead from one frame's entries to the next one's, and the changed
// entries. Both frames have the same number of tiles.
void appendChanges(std::span<const uint16_t> before, std::span<const uint16_t> after,
                   std::vector<uint8_t>& runs, std::vector<uint16_t>& entries);

// Appends one frame's code words: five codes a word. The number of tiles is a multiple of five.
void appendCodeWords(std::span<const uint8_t> codes, std::vector<uint16_t>& words);

}  // namespace maker
