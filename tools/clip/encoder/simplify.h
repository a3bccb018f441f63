#pragma once
// The lossy stage of the encoder: what a block shows instead of its source, and the palette for it.
//
// Every hold (holds.h) becomes the picture of least squared error plus rate x bytes: one flat
// colour, a picture that the block draws anyway (also mirrored or turned), runs in palette or
// RGB565 colours, palette pixels, or RGB565 pixels. Alpha is kept exactly. The pictures are coded
// without further loss (record_choice.h).

#include <vector>

#include "tools/clip/encoder/holds.h"
#include "tools/clip/encoder/palette.h"
#include "tools/clip/encoder/rate.h"
#include "tools/clip/encoder/source_block.h"

namespace maker {

struct ShownBlock {
    std::vector<Tile> tiles;  // frame by frame, raster order
    // What each new record saves over the best picture without one: error plus rate x bytes. It is
    // infinite where nothing else has the tile's alpha.
    std::vector<double> savings;
};

class Simplifier {
public:
    // `rate.perByte` is above 0. The block must outlive this.
    Simplifier(const SourceBlock& block, const Rate& rate);

    // New records that save no more than `leastSaving`, which is finite, are done without.
    ShownBlock show(double leastSaving) const;

    const PaletteColours& palette() const { return palette_; }

private:
    const SourceBlock& block_;
    Rate rate_;
    std::vector<Hold> holds_;
    PaletteColours palette_;
};

}  // namespace maker
