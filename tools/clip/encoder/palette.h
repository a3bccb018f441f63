#pragma once
// The palette of a block: the 256 RGB565 colours that save the most bytes.
//
// A colour in the palette costs one byte in a tile record instead of two, and the types 1, 6 and 7
// take palette colours only. The order is by colour value, so equal blocks get equal palettes.

#include <array>
#include <cstdint>
#include <vector>

#include "clip/format.h"

namespace maker {

inline constexpr int kColours = 65536;

using PaletteColours = std::array<uint16_t, clip::kPaletteEntries>;

// `weights` holds kColours entries: how much each colour gains by being in the palette. Colours of
// weight 0 are left out; entries to spare are 0.
PaletteColours choosePalette(const std::vector<uint32_t>& weights);

// The way back from a colour to its palette index.
class PaletteIndex {
public:
    explicit PaletteIndex(const PaletteColours& colours);

    bool has(uint16_t colour) const { return index_[colour] >= 0; }
    uint8_t of(uint16_t colour) const { return static_cast<uint8_t>(index_[colour]); }

private:
    std::vector<int16_t> index_;  // kColours entries, -1 for a colour outside the palette
};

}  // namespace maker
