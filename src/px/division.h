#pragma once
// Truncating division by the ranges of fields and levels without a division: the upper 16 bits of a
// 32-bit product. Each number holds up to the largest value that pixels give, proven below.

#include <cstdint>

namespace px {

struct HighHalf {
    int scale;       // the value is taken times this first, still within 16 bits
    int multiplier;  // 16 bits
    int shift;       // right, after the high half
};

constexpr int divide(HighHalf by, int value) {
    return (value * by.scale * by.multiplier >> 16) >> by.shift;
}

constexpr bool divides(HighHalf by, int divisor, int largest) {
    for (int value = 0; value <= largest; ++value) {
        if (divide(by, value) != value / divisor || value * by.scale > 0xFFFF) {
            return false;
        }
    }
    return true;
}

inline constexpr HighHalf kOver3 = {1, 21846, 0};
inline constexpr HighHalf kOver15 = {1, 4370, 0};
inline constexpr HighHalf kOver31 = {1, 2115, 0};
inline constexpr HighHalf kOver63 = {16, 16645, 8};

static_assert(divides(kOver3, 3, 31 + 31 + 31));     // an intensity
static_assert(divides(kOver15, 15, 63 * 15));        // a field at a level
static_assert(divides(kOver31, 31, 126 * 15 + 63));  // a flash's green; products end at 31 x 31
static_assert(divides(kOver63, 63, 63 * 63));

}  // namespace px
