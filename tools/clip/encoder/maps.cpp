#include "tools/clip/encoder/maps.h"

#include "clip/format.h"

namespace maker {

void appendChanges(std::span<const uint16_t> before, std::span<const uint16_t> after,
                   std::vector<uint8_t>& runs, std::vector<uint16_t>& entries) {
    size_t from = 0;
    while (from < after.size()) {
        const bool changed = after[from] != before[from];
        size_t to = from + 1;
        while (to < after.size() && to - from < clip::kMaxRunLength &&
               (after[to] != before[to]) == changed) {
            ++to;
        }
        runs.push_back(static_cast<uint8_t>((changed ? clip::kRunChanged : 0) | (to - from - 1)));
        if (changed) {
            entries.insert(entries.end(), after.begin() + static_cast<std::ptrdiff_t>(from),
                           after.begin() + static_cast<std::ptrdiff_t>(to));
        }
        from = to;
    }
}

void appendCodeWords(std::span<const uint8_t> codes, std::vector<uint16_t>& words) {
    for (size_t tile = 0; tile < codes.size(); tile += clip::kCodesPerWord) {
        int word = 0;
        for (size_t i = 0; i < clip::kCodesPerWord; ++i) {
            word |= codes[tile + i] << (clip::kCodeBits * i);
        }
        words.push_back(static_cast<uint16_t>(word));
    }
}

}  // namespace maker
