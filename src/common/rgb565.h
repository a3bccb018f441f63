#pragma once
// RGB565: red in bits 15-11 (0-31), green in bits 10-5 (0-63), blue in bits 4-0 (0-31). So are all
// of the program's surfaces, whatever the display shows.

#include <cstdint>

namespace px {

inline constexpr int kDepth = 16;  // bits a pixel
inline constexpr uint16_t kRedMask = 0xF800;
inline constexpr uint16_t kGreenMask = 0x07E0;
inline constexpr uint16_t kBlueMask = 0x001F;

constexpr int redOf(uint16_t pixel) {
    return pixel >> 11;
}
constexpr int greenOf(uint16_t pixel) {
    return (pixel >> 5) & 63;
}
constexpr int blueOf(uint16_t pixel) {
    return pixel & 31;
}

// The channels on the scale 0 to 255 as a display shows them: the top bits repeated below.
constexpr int red8Of(uint16_t pixel) {
    return redOf(pixel) << 3 | redOf(pixel) >> 2;
}
constexpr int green8Of(uint16_t pixel) {
    return greenOf(pixel) << 2 | greenOf(pixel) >> 4;
}
constexpr int blue8Of(uint16_t pixel) {
    return blueOf(pixel) << 3 | blueOf(pixel) >> 2;
}

// Fields are combined by addition: the caller keeps each of them in its range.
constexpr uint16_t pack(int red, int green, int blue) {
    return static_cast<uint16_t>((red << 11) + (green << 5) + blue);
}

// 0x00RRGGBB to RGB565 by dropping the low bits of each channel.
constexpr uint16_t fromRgb(int rgb) {
    return static_cast<uint16_t>(((rgb >> 8) & kRedMask) + ((rgb >> 5) & kGreenMask) +
                                 ((rgb & 0xFF) >> 3));
}

}  // namespace px
