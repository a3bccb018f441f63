#pragma once
// The smallest clip with something of everything: one row of tiles, two frames of one block, seven
// records of seven types, both forms of alpha, a flat, an empty and a changed tile. 912 bytes,
// written out section by section, and the picture that they stand for.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace minimal {

inline constexpr int kFrames = 2;
inline constexpr int kTiles = 80;
inline constexpr int kRowPixels = 640;
inline constexpr int kPixels = kRowPixels * 8;
inline constexpr size_t kBytes = 912;

std::vector<uint8_t> clip();

struct Picture {
    std::vector<uint16_t> pixels;  // 640 x 8
    std::vector<uint8_t> alpha;
};

Picture picture(int frame);

}  // namespace minimal
