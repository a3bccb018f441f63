#pragma once
// What the effects of SNOW and SCROLL need from frame to frame. Directions are 0 to 3.

namespace px {

// Levels of noise that SNOW reads in a direction: 497, 313, 29, 7.
int snowEntries(int direction);
inline constexpr int kMostSnowEntries = 497;
inline constexpr int kSnowLevels = 20;

// The scroll offset of the next frame from the last one's (any 16-bit value): two pixels on (1, 2)
// or back (0, 3) unless `hold`, wrapped for the direction.
int nextScrollOffset(int offset, int direction, bool hold);

}  // namespace px
