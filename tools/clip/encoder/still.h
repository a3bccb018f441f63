#pragma once
// What stands still from one block to the next, and goes on showing the very same pixels: the mean
// of other frames, under another palette, would make a still background breathe with every block.

#include <cstdint>
#include <vector>

#include "tools/clip/encoder/source_block.h"

namespace maker {

inline constexpr int16_t kMoves = -1;

// By the source alone, so that it is known before any block is coded.
class StillTracker {
public:
    // The blocks of a clip in order. Of each position the block, counted from 0, in which it came
    // to rest and whose last picture it goes on showing; kMoves for one that moves or has only just
    // come to rest. Nor is less than a quarter of the tiles held to one of the last blocks.
    std::vector<int16_t> next(const SourceBlock& block);

private:
    struct Rest {
        int16_t block = kMoves;
        ColourPlanes mean{};
        AlphaTile alpha{};
    };

    void leaveFewAlone(std::vector<int16_t>& from) const;
    bool goesOn(const Rest& before, const Rest& now, int frames) const;

    std::vector<Rest> rests_;
    int16_t blocks_ = 0;
    double noise_ = 0;
};

}  // namespace maker
