#pragma once
// Reads the sections of a clip file, one at a time, from a stream into the caller's buffers. It
// knows the grammar of clip/format.h and allocates nothing.
//
// A file that ends early is not an error here: every byte past its end counts as zero. The caller
// keeps the section order and gives capacities; a section that would pass its capacity is refused.

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "clip/format.h"

namespace clip {

FileHeader readFileHeader(FILE* file);

// Whether a clip with this header fits the program's buffers: 1 to 256 frames in the right number
// of blocks, at most 360 lines, alpha 0 or 1. The version is not looked at.
bool headerFits(const FileHeader& header);

// Section 1. `alpha` (0 or 1) decides how many type counts there are; the others become 0.
void readBlockHeader(FILE* file, int alpha, BlockHeader& header);

struct ChangeRuns {
    size_t runBytes;  // bytes stored
    int changed;      // map entries that follow for the changed runs
};

// Section 2 of a block with `interFrames` frames after its first: stores the run bytes in `runs`.
// False when they do not fit `capacity` bytes.
bool readChangeRuns(FILE* file, int interFrames, int tileCount, uint8_t* runs, size_t capacity,
                    ChangeRuns& result);

// Sections 3 and 4: `count` little-endian 16-bit words into `words`, in the machine's own order.
void readWords(FILE* file, uint16_t* words, size_t count);

// One record of section 5 of the given type (0 to 19), stored at `out`. Returns its length in
// bytes, or 0 when it does not fit `capacity`. The 16-bit header of the four-run types is stored
// high byte first; everything else as it stands in the file.
int readRecord(FILE* file, int type, uint8_t* out, size_t capacity);

}  // namespace clip
