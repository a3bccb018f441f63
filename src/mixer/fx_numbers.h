#pragma once
// The numbers of the filter effects, for the plain functions and the fast ones alike.

#include <cstdint>

#include "common/limits.h"

namespace px {

inline constexpr int kBurnThreshold = 90;  // the first weight that is not black
inline constexpr uint16_t kBurnColours[4] = {0xF79E, 0xF800, 0x07E0, 0xFFE0};
// Deliberate: the two short tables repeat every 29 and 7 pixels and show as stripes.
// [quirk_short_snow_tables_make_stripes]
inline constexpr int kSnowEntries[4] = {497, 313, 29, 7};
inline constexpr int kSnowCentre = 10;
// Room to repeat a table in: twice the longest and a vector more, at least.
inline constexpr int kSnowRun = 2048;
// The zoom's source, taken from the middle of the frame.
inline constexpr int kZoomWidth = kFrameWidth / 2;
inline constexpr int kZoomHeight = kFrameHeight / 2;
inline constexpr int kZoomX = 160;
inline constexpr int kZoomY = 90;
inline constexpr uint16_t kGameBoyShades[4] = {0x39E0, 0x6304, 0xAD4D, 0xFFFD};
inline constexpr int kGameBoySteps[3] = {45, 90, 135};  // the last weight of each darker shade

constexpr uint16_t burnColour(int direction) {
    return direction >= 0 && direction < 4 ? kBurnColours[direction] : uint16_t{0};
}

}  // namespace px
