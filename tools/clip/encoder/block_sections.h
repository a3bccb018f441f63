#pragma once
// A coded block in the form in which it is written: records numbered, maps and codes made.

#include "tools/clip/encoder/block_coder.h"
#include "tools/clip/encoder/numbering.h"
#include "tools/clip/encoder/writer.h"

namespace maker {

struct NumberedBlock {
    BlockSections sections;
    int records = 0;
    int fillers = 0;  // of the records, those that only take up a number
};

// Takes the blocks of a clip in order; `history` holds the blocks before and gets this one added.
NumberedBlock numberBlock(CodedBlock coded, NumberHistory& history);

}  // namespace maker
