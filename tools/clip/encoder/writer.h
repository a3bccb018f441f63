#pragma once
// The bytes of a clip: sections in, file layout out. No choice is made here.

#include <array>
#include <cstdint>
#include <vector>

#include "clip/format.h"
#include "tools/clip/encoder/palette.h"

namespace maker {

struct BlockSections {
    std::array<uint16_t, clip::kMaxTypeSlots> typeCounts{};
    PaletteColours palette{};
    std::vector<uint8_t> runs;
    std::vector<uint16_t> entries;  // the first frame's map, then the changed entries
    std::vector<uint16_t> codeWords;
    std::vector<uint8_t> records;  // sorted by type
};

void append16(std::vector<uint8_t>& out, unsigned value);  // its lower 16 bits

void appendFileHeader(std::vector<uint8_t>& out, const clip::FileHeader& header);

// The room announced for the map entries and records is what they take, rounded up to words.
void appendBlock(std::vector<uint8_t>& out, const BlockSections& block, int alpha);

}  // namespace maker
