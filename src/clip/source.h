#pragma once
// The bytes of a clip in their order, from memory or from a file that stands at the first of them.
//
// A clip that ends early is not an error here: every byte past its end counts as zero. Little is
// read ahead; the file gets back what was not taken, and stands behind the last byte that was.
// Nothing is allocated.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>

#include "clip/format.h"

namespace clip {

class Source {
public:
    explicit Source(std::span<const uint8_t> bytes)
        : file_(nullptr), at_(bytes.data()), end_(at_ + bytes.size()), real_(end_) {}
    explicit Source(FILE* file) : file_(file), at_(window_), end_(window_), real_(window_) {}
    ~Source();
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    // As many bytes as the longest record has are readable from there on.
    const uint8_t* record() {
        if (end_ - at_ < kMaxRecordBytes) {
            refill();
        }
        return at_;
    }
    // Takes `count` of them.
    void skip(size_t count) { at_ += count; }

    uint8_t byte() {
        if (at_ == end_) {
            refill();
        }
        return *at_++;
    }
    void take(uint8_t* bytes, size_t count);
    // Little-endian words, in the machine's own order.
    void takeWords(uint16_t* words, size_t count);

private:
    static constexpr size_t kWindow = 1024;

    void refill();
    size_t readFile(uint8_t* bytes, size_t count);

    FILE* file_;  // null for memory
    bool ended_ = false;
    const uint8_t* at_;
    const uint8_t* end_;   // of what is there
    const uint8_t* real_;  // where zeros begin that stand for what the clip does not have
    uint8_t window_[kWindow];
};

FileHeader readFileHeader(Source& source);

// Whether a clip with this header fits the program's buffers: 1 to 256 frames in the right number
// of blocks, at most 360 lines, alpha 0 or 1. The version is not looked at.
bool headerFits(const FileHeader& header);

// Section 1. `alpha` (0 or 1) decides how many type counts there are; the others become 0.
void readBlockHeader(Source& source, int alpha, BlockHeader& header);

}  // namespace clip
