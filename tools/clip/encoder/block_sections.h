#pragma once
// A coded block in the form in which it is written: records numbered, maps and codes made.

#include <cstdint>
#include <span>
#include <vector>

#include "tools/clip/encoder/block_coder.h"
#include "tools/clip/encoder/numbering.h"
#include "tools/clip/encoder/writer.h"

namespace maker {

struct NumberedBlock {
    BlockSections sections;
    int records = 0;
    int fillers = 0;  // of the records, those that only take up a number
};

// Appends the run bytes that lead from one frame's map entries to the next one's, and the changed
// entries. Both frames have the same number of tiles.
void appendChanges(std::span<const uint16_t> before, std::span<const uint16_t> after,
                   std::vector<uint8_t>& runs, std::vector<uint16_t>& entries);

// Appends one frame's code words: five codes a word. The number of tiles is a multiple of five.
// Codes are stored whole for every frame.
void appendCodeWords(std::span<const uint8_t> codes, std::vector<uint16_t>& words);

// Takes the blocks of a clip in order; `history` holds the blocks before and gets this one added.
NumberedBlock numberBlock(CodedBlock coded, NumberHistory& history);

}  // namespace maker
