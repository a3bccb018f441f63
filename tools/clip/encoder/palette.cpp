#include "tools/clip/encoder/palette.h"

#include <algorithm>

namespace maker {

PaletteColours choosePalette(const std::vector<uint32_t>& weights) {
    std::vector<uint16_t> used;
    for (size_t colour = 0; colour < weights.size(); ++colour) {
        if (weights[colour] > 0) {
            used.push_back(static_cast<uint16_t>(colour));
        }
    }
    if (used.size() > clip::kPaletteEntries) {
        std::nth_element(used.begin(), used.begin() + clip::kPaletteEntries, used.end(),
                         [&weights](uint16_t a, uint16_t b) {
                             return weights[a] != weights[b] ? weights[a] > weights[b] : a < b;
                         });
        used.resize(clip::kPaletteEntries);
        std::sort(used.begin(), used.end());
    }
    PaletteColours colours{};
    std::copy(used.begin(), used.end(), colours.begin());
    return colours;
}

// Where a colour stands twice (the 0 of the spare entries), its first place counts.
PaletteIndex::PaletteIndex(const PaletteColours& colours) : index_(kColours, int16_t{-1}) {
    for (size_t i = colours.size(); i-- > 0;) {
        index_[colours[i]] = static_cast<int16_t>(i);
    }
}

}  // namespace maker
