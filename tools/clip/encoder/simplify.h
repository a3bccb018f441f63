#pragma once
// The lossy stage of the encoder: what a block shows instead of its source, and the palette for it.
//
// Every hold (holds.h) becomes the picture of least squared error plus rate x bytes: one flat
// colour, a picture that the block draws anyway (also mirrored or turned), runs in palette or
// RGB565 colours, palette pixels, or RGB565 pixels. Alpha stays as it is (what can be given up of
// it, soft_alpha.h has). The pictures are coded without further loss (record_choice.h).

#include <vector>

#include "tools/clip/encoder/holds.h"
#include "tools/clip/encoder/palette.h"
#include "tools/clip/encoder/rate.h"
#include "tools/clip/encoder/source_block.h"

namespace maker {

// Of each position the tile that it goes on showing from the block before, or null; empty for none.
using StandingTiles = std::vector<const Tile*>;

class Simplifier {
public:
    // `rate.perByte` is above 0. The block and the standing tiles must outlive this.
    Simplifier(const SourceBlock& block, const Rate& rate, StandingTiles standing = {});

    // Frame by frame, in raster order.
    std::vector<Tile> show() const;

    const PaletteColours& palette() const { return palette_; }

private:
    const SourceBlock& block_;
    StandingTiles standing_;
    Rate rate_;
    std::vector<Hold> holds_;
    PaletteColours palette_;
};

}  // namespace maker
