#include "px/kernels_pairs.h"

#ifdef __ARM_FEATURE_SIMD32

#include <cstring>

#include "px/division.h"
#include "px/pairs.h"

namespace px::pairs {

namespace {

constexpr Pixels kPixels;
constexpr int kGroup = 16;
constexpr uint32_t kClear = 0;  // four levels in a word
constexpr uint32_t kSolid = 0x0F0F0F0F;

// A field's product with its level, the quotient by 15 and the sum of both layers take an
// instruction for each layer.
struct KeyAlpha {
    Fields fields;
    uint32_t step = held(kOver15.multiplier);
    uint32_t whole = held(15 * kOver15.multiplier);

    Pair operator()(Pair bottom, Pair top, const uint8_t* alpha) const {
        const uint32_t leftOver = alpha[0] * step;
        const uint32_t rightOver = alpha[1] * step;
        const uint32_t leftUnder = whole - leftOver;
        const uint32_t rightUnder = whole - rightOver;
        Pair under = fields.red(bottom);
        Pair over = fields.red(top);
        uint32_t left = addLeftScaled(leftScaled(leftUnder, under), leftOver, over);
        uint32_t right = addRightScaled(rightScaled(rightUnder, under), rightOver, over);
        under = fields.green(bottom);
        over = fields.green(top);
        left = addLeftScaled(addLeftScaled(left << 6, leftUnder, under), leftOver, over);
        right = addRightScaled(addRightScaled(right << 6, rightUnder, under), rightOver, over);
        under = fields.blue(bottom);
        over = fields.blue(top);
        left = addLeftScaled(addLeftScaled(left << 5, leftUnder, under), leftOver, over);
        right = addRightScaled(addRightScaled(right << 5, rightUnder, under), rightOver, over);
        return {left | right << 16};
    }
};

uint32_t fourLevels(const uint8_t* alpha) {
    uint32_t four;
    memcpy(&four, alpha, sizeof four);
    return four;
}

// Whether all levels of a group are as its first four.
bool allAs(uint32_t four, const uint8_t* alpha) {
    return ((fourLevels(alpha + 4) ^ four) | (fourLevels(alpha + 8) ^ four) |
            (fourLevels(alpha + 12) ^ four)) == 0;
}

// Groups up to the next one that begins clear or solid, the first one in any case; returns how many
// pixels that were. By itself, so that the loop has all registers.
[[gnu::noinline]] int keyMixed(uint16_t* bottom, const uint16_t* top, const uint8_t* alpha,
                               int count) {
    const KeyAlpha key;
    const uint8_t* const begin = alpha;
    const uint8_t* const end = alpha + count;
    uint32_t next;
    do {
#pragma GCC unroll 8
        for (int i = 0; i < kGroup; i += 2) {
            StoreU(key(LoadU(kPixels, bottom + i), LoadU(kPixels, top + i), alpha + i), kPixels,
                   bottom + i);
        }
        alpha += kGroup;
        bottom += kGroup;
        top += kGroup;
        next = alpha != end ? fourLevels(alpha) : kClear;
    } while (next != kClear && next != kSolid);
    return static_cast<int>(alpha - begin);
}

}  // namespace

int keyByAlpha(uint16_t* bottom, const uint16_t* top, const uint8_t* alpha, int count) {
    const int end = count & ~(kGroup - 1);
    int i = 0;
    while (i < end) {
        const uint32_t four = fourLevels(alpha + i);
        if (four == kClear && allAs(four, alpha + i)) {
            i += kGroup;
        } else if (four == kSolid && allAs(four, alpha + i)) {
            memcpy(bottom + i, top + i, kGroup * sizeof *bottom);
            i += kGroup;
        } else {
            i += keyMixed(bottom + i, top + i, alpha + i, end - i);
        }
    }
    return end;
}

}  // namespace px::pairs

#endif
