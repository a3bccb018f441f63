#pragma once
// A decoder of clips for the tests, made for being right at a glance and for nothing else.
//
// It shares no code with the program's decoder or with the encoder. It expects clips in order: use
// it on bytes that have passed the validator; anything else throws std::out_of_range.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace reference {

struct Picture {
    std::vector<uint16_t> pixels;  // 640 x height
    std::vector<uint8_t> alpha;    // as many; 15 everywhere in a clip without alpha

    bool operator==(const Picture&) const = default;
};

struct Frame {
    std::vector<unsigned> entries;  // one a tile
    std::vector<unsigned> codes;
};

struct Block {
    std::vector<unsigned> typeCounts;
    std::vector<unsigned> palette;
    std::vector<Frame> frames;
    std::vector<std::vector<uint8_t>> records;
    std::vector<unsigned> types;    // of each record
    unsigned announcedRecordBytes;  // four for each word of room
    unsigned recordBytes;
    unsigned announcedEntries;  // two for each word of room
    unsigned mapEntries;
};

struct Clip {
    unsigned quality, storedWidth, height, alpha, frameCount;
    std::vector<Block> blocks;
    size_t length;  // bytes up to the end of the last block
};

Clip parse(const std::vector<uint8_t>& bytes);

// Every frame drawn whole.
std::vector<Picture> decode(const Clip& clip);

// Draws frames in any order the way the program does: a tile whose entry and code are those of the
// frame drawn last is left as it is, except in the first frame of a block, and in the first frame
// of all.
class Player {
public:
    explicit Player(const Clip& clip);
    const Picture& show(int frame);

private:
    const Clip& clip_;
    Picture picture_;
    const Frame* last_ = nullptr;
};

}  // namespace reference
