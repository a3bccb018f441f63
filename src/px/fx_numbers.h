#pragma once
// The numbers of the filter effects, and the RGB565 colours that follow from them, for the plain
// functions and the fast ones alike. Weights are 0 to kMostWeight, intensities 0 to kMostIntensity;
// directions as in px/fx.h.

#include <algorithm>
#include <array>
#include <cstdint>

#include "common/limits.h"
#include "common/rgb565.h"

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

// 2 red + green + 2 blue, and red + green / 2 + blue, of white.
inline constexpr int kMostWeight = 187;
inline constexpr int kMostIntensity = 93;

constexpr uint16_t burnColour(int direction) {
    return direction >= 0 && direction < 4 ? kBurnColours[direction] : uint16_t{0};
}

constexpr uint16_t gameBoyShade(int weight) {
    int shade = 0;
    while (shade < 3 && weight > kGameBoySteps[shade]) {
        ++shade;
    }
    return kGameBoyShades[shade];
}

constexpr uint16_t tint(int intensity, int direction) {
    const int full = std::min(intensity, 31);
    const int rest = (intensity - full) / 2;
    switch (direction) {
        case 0: {
            const int grey = std::min(intensity / 3, 31);
            return pack(grey, 2 * grey, grey);
        }
        case 1:
            return pack(full, 2 * rest, rest);
        case 2:
            return pack(rest, 2 * full, rest);
        default: {
            const int half = std::min(intensity / 2, 31);
            return pack(half, 2 * half, intensity - 2 * half);
        }
    }
}

// By intensity.
constexpr auto tints(int direction) {
    std::array<uint16_t, kMostIntensity + 1> tints{};
    for (int intensity = 0; intensity <= kMostIntensity; ++intensity) {
        tints[static_cast<size_t>(intensity)] = tint(intensity, direction);
    }
    return tints;
}

}  // namespace px
