#pragma once
// The numbers of a block's records: sorted by type, and safe at the block's seams.
//
// A decoder skips a tile whose map entry and code are those of the frame that it drew last, without
// asking whether both frames are of one block. Playing backwards steps from the first frame of a
// block to the last of the block before, so a number that one position uses with the same code on
// both sides of a seam must mean the same picture. Such numbers are banned for the record, and
// where the order within a type cannot keep clear of them, filler records take up the number.

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "clip/format.h"

namespace maker {

// One frame as a decoder sees it. `looks` tells pictures apart: equal looks draw the same pixels.
struct SeamFrame {
    std::vector<uint16_t> entries;
    std::vector<uint8_t> codes;
    std::vector<uint64_t> looks;
};

struct Ban {
    uint32_t record;
    uint16_t number;

    auto operator<=>(const Ban&) const = default;
};

inline constexpr uint32_t kFiller = 0xFFFFFFFF;

struct Numbering {
    std::vector<uint16_t> numberOf;  // of each record
    std::vector<uint32_t> recordAt;  // the record of each number, kFiller for a filler
    std::array<uint16_t, clip::kMaxTypeSlots> typeCounts{};
};

// `types` holds the type of each record. Bans may repeat. A ban is dropped when keeping it would
// take more numbers than a block has.
Numbering numberRecords(std::span<const uint8_t> types, std::vector<Ban> bans);

// Bans for the seam between a finished frame and a frame of the block to be numbered: `records` and
// `codes` are what that frame draws its tiles with, kFiller where it uses no record.
void addSeamBans(const SeamFrame& beside, std::span<const uint32_t> records,
                 std::span<const uint8_t> codes, std::span<const uint64_t> looks,
                 std::vector<Ban>& bans);

}  // namespace maker
