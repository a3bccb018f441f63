#pragma once
// Pictures for tests, made from seeds: 640 x 360 RGB565 pixels, row-major. All arithmetic is on
// 32-bit unsigned values. Also the CRC-32 of zlib over memory.

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "common/limits.h"

namespace frames {

inline uint32_t nextRandom(uint32_t x) {
    x ^= x << 13;
    x ^= x >> 17;
    return x ^ (x << 5);
}

inline std::vector<uint16_t> noise(uint32_t seed, bool keyed = false) {
    std::vector<uint16_t> frame(kFramePixels);
    for (uint16_t& pixel : frame) {
        seed = nextRandom(seed);
        pixel = keyed && (seed >> 16) % 4 == 0 ? uint16_t{0} : static_cast<uint16_t>(seed & 0xFFFF);
    }
    return frame;
}

inline std::vector<uint8_t> alphaNoise(uint32_t seed) {
    std::vector<uint8_t> plane(kFramePixels);
    for (uint8_t& level : plane) {
        seed = nextRandom(seed);
        level = static_cast<uint8_t>((seed >> 8) & 15);
    }
    return plane;
}

inline std::vector<uint16_t> ramp() {
    std::vector<uint16_t> frame(kFramePixels);
    for (uint32_t i = 0; i < kFramePixels; ++i) {
        frame[i] = static_cast<uint16_t>((i * 2654435761u) >> 16);
    }
    return frame;
}

// From {"gen": ..., "seed" or "value": ...}.
inline std::vector<uint16_t> make(const nlohmann::json& input) {
    const std::string kind = input.at("gen");
    if (kind == "noise" || kind == "keyed") {
        return noise(input.at("seed"), kind == "keyed");
    }
    return kind == "ramp" ? ramp()
                          : std::vector<uint16_t>(kFramePixels, input.at("value").get<uint16_t>());
}

inline std::vector<uint8_t> makeAlpha(const nlohmann::json& input) {
    return input.at("gen") == "alpha"
               ? alphaNoise(input.at("seed"))
               : std::vector<uint8_t>(kFramePixels, input.at("value").get<uint8_t>());
}

// CRC-32 as eight lower-case hexadecimal digits.
inline std::string crc(const void* bytes, size_t count) {
    char digits[9];
    const auto sum = crc32(0, static_cast<const Bytef*>(bytes), static_cast<uInt>(count));
    snprintf(digits, sizeof digits, "%08lx", sum);
    return digits;
}

}  // namespace frames
