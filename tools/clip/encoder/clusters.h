#pragma once
// The palette of a block that has more colours than a palette holds: the 256 RGB565 colours that
// stand nearest to all of them.
//
// The colours are counted by RGB565 value, split into groups where they spread the most, and the
// groups' means settled by a few rounds of reassigning: median cut, then k-means.

#include <array>
#include <cstdint>
#include <vector>

#include "tools/clip/encoder/palette.h"
#include "tools/clip/encoder/source_block.h"

namespace maker {

class ColourCounts {
public:
    ColourCounts();

    void add(const ColourPlanes& colours, int weight);

    struct Bin {
        uint32_t weight = 0;
        std::array<uint32_t, kChannels> sums{};  // of the colours, times their weights
    };
    const std::vector<Bin>& bins() const { return bins_; }  // one for each RGB565 value

private:
    std::vector<Bin> bins_;
};

PaletteColours clusterColours(const ColourCounts& counts);

// Finds palette entries for colours. What was asked once is remembered.
class NearestEntry {
public:
    explicit NearestEntry(const PaletteColours& palette);

    // The entry nearest to an RGB565 colour.
    uint8_t of(uint16_t colour) {
        const uint16_t known = known_[colour];
        return known != kUnknown ? static_cast<uint8_t>(known) : find(colour);
    }

    // Channels of an entry, 0 to 255.
    int channel(size_t channel, uint8_t entry) const { return channels_[channel][entry]; }

private:
    static constexpr uint16_t kUnknown = 0xFFFF;

    uint8_t find(uint16_t colour);

    std::array<std::array<int16_t, clip::kPaletteEntries>, kChannels> channels_;
    std::vector<uint16_t> known_;  // kColours entries
};

}  // namespace maker
