#pragma once
// Colours between those of the stage, as patterns that the eye takes for them: ordered dither, in
// so few steps that tiles of nearly one colour share their patterns.

#include <array>

#include "tools/clip/encoder/source_block.h"

namespace maker {

inline constexpr int kPatternSteps = 8;  // from a level of RGB565 to the next

// Each channel in steps above 0.
using PatternColour = std::array<int, kChannels>;

// The nearest to the mean of the tile's colours.
PatternColour patternColourOf(const SourceTile& tile);

// An opaque tile whose mean is that colour. Of one colour where no channel lies between two levels.
Tile patternTile(const PatternColour& colour);

}  // namespace maker
