#pragma once
// A whole clip in memory checked against every bound of the format.
//
// The verdict names the first fault found, the byte where it stands and the block that holds it.
// Nothing is read outside `bytes`, whatever they hold. A clip whose only fault is that bytes follow
// its last block plays; its fault has a kind of its own. With `layouts`, the sections of every
// block that passed are appended there, so that a caller can describe even a clip that breaks off.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "clip/format.h"

namespace clip {

// Room announced for one section beyond which a block is refused: no block can hold as much (its
// records need at most 65,535 x 225 bytes, its map entries 115,200).
inline constexpr uint64_t kMaxAnnouncedBytes = uint64_t{64} << 20;

enum FaultKind : int {
    FAULT_NONE,
    FAULT_BROKEN,    // a bound is broken: the clip must not be played
    FAULT_TRAILING,  // bytes after the last block: the clip plays
};

struct Verdict {
    bool ok;
    FaultKind kind;
    std::string message;  // empty when ok; no file name, no offset
    int block;            // the block that holds the fault, -1 for the file header
    size_t offset;        // of the byte at fault, from the start of the file
};

struct BlockLayout {
    size_t offset;  // of the block header
    int frames;
    BlockHeader header;
    size_t headerBytes;
    size_t runBytes;
    size_t mapBytes;
    size_t codeBytes;
    size_t recordBytes;
};

// Reads the ten header bytes; false when there are fewer.
bool readHeader(std::span<const uint8_t> bytes, FileHeader& header);

Verdict validate(std::span<const uint8_t> bytes, std::vector<BlockLayout>* layouts = nullptr);

}  // namespace clip
