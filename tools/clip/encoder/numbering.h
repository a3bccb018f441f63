#pragma once
// The numbers of a block's records: sorted by type, and safe wherever the performer jumps.
//
// A decoder skips a tile whose map entry and code are those of the frame that it drew last, without
// asking whether both frames are of one block. Playing backwards, scrubbing and the loop's end lead
// from any frame of one block to frames of another, so a number that one position uses with the
// same code in two blocks must mean the same picture. The history knows what the blocks so far use;
// a record takes a number that agrees with it, and where the order within a type leaves none,
// filler records take up numbers. A clash that would cost too many fillers is let be.

#include <array>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "clip/format.h"

namespace maker {

// One tile of a frame that a record draws. `look` tells pictures apart: equal looks draw the same
// pixels.
struct TileUse {
    uint32_t record;
    uint16_t position;
    uint8_t code;
    uint64_t look;
};

// Which look each number has at each position and code.
class NumberHistory {
public:
    // Whether a number that an earlier block uses here would show something else.
    bool clashes(const TileUse& use, size_t number) const;

    void add(const TileUse& use, size_t number);

private:
    std::unordered_map<uint32_t, uint64_t> looks_;  // by position, code and number
};

inline constexpr uint32_t kFiller = 0xFFFFFFFF;

struct Numbering {
    std::vector<uint16_t> numberOf;  // of each record
    std::vector<uint32_t> recordAt;  // the record of each number, kFiller for a filler
    std::array<uint16_t, clip::kMaxTypeSlots> typeCounts{};
};

// `types` holds the type of each record, `uses` the tiles of the block, each once or more, sorted
// by record. The block's own uses are added to the history.
Numbering numberRecords(std::span<const uint8_t> types, std::span<const TileUse> uses,
                        NumberHistory& history);

}  // namespace maker
