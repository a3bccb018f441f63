#pragma once
// Alpha levels that give up one of sixteen where that saves more bytes than it shows.
//
// A soft edge takes a run for every step, and one that flickers by a level takes a record of its
// own in every picture. What is transparent or opaque stays so, and nothing else becomes it.

#include "tools/clip/encoder/rate.h"
#include "tools/clip/encoder/source_block.h"

namespace maker {

// The tile's alpha in runs of levels that are at most one off, at the least error and price.
AlphaTile fittedAlpha(const AlphaTile& alpha, const Rate& rate);

// The block with the alpha to be shown: fitted, and that of the picture before for as long as it is
// at most one off.
SourceBlock withSoftAlpha(const SourceBlock& block, const Rate& rate);

bool hasSoftAlpha(const SourceBlock& block);  // any level between transparent and opaque

}  // namespace maker
