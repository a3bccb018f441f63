#pragma once
// Two RGB565 pixels in a 32-bit register, for Arm processors without vectors. First, what
// pixel_ops-inl.h and the functions made of it use of Highway's operations, under the same names
// and with the same meaning; then what only this processor can do. It adds and subtracts halves of
// a register by itself, with saturation, multiplies them, and chooses between them; the rest is
// masks and shifts. Pairs are little-endian: the left pixel is the lower half.
//
// Empty where __ARM_FEATURE_SIMD32 is not defined; 32-bit Arm has had it since ARMv6.

#ifdef __ARM_FEATURE_SIMD32

#include <arm_acle.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "px/division.h"

namespace px::pairs {

struct Pair {
    uint32_t bits;
};

// Names of the kinds of vectors, for calls.
struct Pixels {};
template <typename>
using Vec = Pair;

constexpr uint32_t kOnes = 0x00010001;

// `value` in both halves.
constexpr uint32_t both(uint32_t value) {
    return value * kOnes;
}

constexpr size_t Lanes(Pixels) {
    return 2;
}
inline Pair Set(Pixels, uint16_t value) {
    return {both(value)};
}
inline Pair Zero(Pixels) {
    return {0};
}
inline Pair LoadU(Pixels, const uint16_t* from) {
    Pair pair;
    memcpy(&pair, from, sizeof pair);
    return pair;
}
inline void StoreU(Pair pair, Pixels, uint16_t* to) {
    memcpy(to, &pair, sizeof pair);
}

inline Pair And(Pair a, Pair b) {
    return {a.bits & b.bits};
}
inline Pair Or(Pair a, Pair b) {
    return {a.bits | b.bits};
}
inline Pair Not(Pair a) {
    return {~a.bits};
}
inline Pair Xor(Pair a, Pair b) {
    return {a.bits ^ b.bits};
}
template <int n>
Pair ShiftRight(Pair a) {
    return {a.bits >> n & both(0xFFFF >> n)};
}
template <int n>
Pair ShiftLeft(Pair a) {
    return {a.bits << n & both(0xFFFF << n & 0xFFFF)};
}

// No sum that is asked for leaves its half, so plain arithmetic on the register does.
inline Pair Add(Pair a, Pair b) {
    return {a.bits + b.bits};
}
inline Pair SaturatedAdd(Pair a, Pair b) {
    return {__uqadd16(a.bits, b.bits)};
}

// Products of 16 bits at most.
inline Pair Mul(Pair a, Pair b) {
    const uint32_t low = (a.bits & 0xFFFF) * (b.bits & 0xFFFF);
    return {low + ((a.bits >> 16) * (b.bits >> 16) << 16)};
}
inline Pair MulHigh(Pair a, Pair b) {
    const uint32_t low = (a.bits & 0xFFFF) * (b.bits & 0xFFFF);
    const uint32_t high = (a.bits >> 16) * (b.bits >> 16);
    return {(high & 0xFFFF0000) | low >> 16};
}

// 1 to all bits, half by half.
inline Pair spread(uint32_t ones) {
    return {(ones << 16) - ones};
}
inline Pair Eq(Pair a, Pair b) {
    return spread(__uqsub16(kOnes, a.bits ^ b.bits));
}
inline Pair IfThenElse(Pair mask, Pair yes, Pair no) {
    return {(yes.bits & mask.bits) | (no.bits & ~mask.bits)};
}
inline Pair Reverse(Pixels, Pair a) {
    return {a.bits << 16 | a.bits >> 16};
}

// One instruction packs two halves, which the compiler does not see by itself.
inline void StoreInterleaved2(Pair a, Pair b, Pixels d, uint16_t* to) {
    uint32_t left, right;
    asm("pkhbt %0, %1, %2, lsl #16" : "=r"(left) : "r"(a.bits), "r"(b.bits));
    asm("pkhtb %0, %1, %2, asr #16" : "=r"(right) : "r"(b.bits), "r"(a.bits));
    StoreU({left}, d, to);
    StoreU({right}, d, to + 2);
}
inline void LoadInterleaved2(Pixels d, const uint16_t* from, Pair& a, Pair& b) {
    const uint32_t left = LoadU(d, from).bits;
    const uint32_t right = LoadU(d, from + 2).bits;
    a = {(left & 0xFFFF) | right << 16};
    b = {left >> 16 | (right & 0xFFFF0000)};
}

// A constant that stays in a register, where a mask takes the shift before it into its own
// instruction. Call outside of the loop.
inline uint32_t held(uint32_t value) {
    asm("" : "+r"(value));
    return value;
}

// Takes the fields of pairs. Make it outside of the loop.
struct Fields {
    uint32_t mask31 = held(both(31));
    uint32_t mask63 = held(both(63));

    Pair red(Pair p) const { return {p.bits >> 11 & mask31}; }
    Pair green(Pair p) const { return {p.bits >> 5 & mask63}; }
    Pair halfGreen(Pair p) const { return {p.bits >> 6 & mask31}; }
    Pair blue(Pair p) const { return {p.bits & mask31}; }
};

// Half by half: `yes` where `value` is at least `limit`, else `no`.
inline Pair IfAtLeast(Pair value, Pair limit, Pair yes, Pair no) {
    __usub16(value.bits, limit.bits);  // leaves the choice in the flags
    return {__sel(yes.bits, no.bits)};
}

// The whole part of the left (right) half of `number`, below 32768, times `scale` / 65536.
inline uint32_t leftScaled(uint32_t scale, Pair number) {
    uint32_t whole;
    asm("smulwb %0, %1, %2" : "=r"(whole) : "r"(scale), "r"(number.bits));
    return whole;
}
inline uint32_t rightScaled(uint32_t scale, Pair number) {
    uint32_t whole;
    asm("smulwt %0, %1, %2" : "=r"(whole) : "r"(scale), "r"(number.bits));
    return whole;
}

// The same, added to `sum`.
inline uint32_t addLeftScaled(uint32_t sum, uint32_t scale, Pair number) {
    return static_cast<uint32_t>(__smlawb(
        static_cast<int32_t>(scale), static_cast<int32_t>(number.bits), static_cast<int32_t>(sum)));
}
inline uint32_t addRightScaled(uint32_t sum, uint32_t scale, Pair number) {
    return static_cast<uint32_t>(__smlawt(
        static_cast<int32_t>(scale), static_cast<int32_t>(number.bits), static_cast<int32_t>(sum)));
}

// Each pixel twice, to two rows that begin at multiples of kDoubledAlignment bytes. Two words at a
// time, which the compiler would store one by one.
constexpr size_t kDoubledAlignment = 4;

inline void storeDoubled(Pair pixels, uint16_t* upper, uint16_t* lower) {
    using Words [[gnu::may_alias, gnu::aligned(kDoubledAlignment)]] = uint64_t;
    uint64_t doubled;
    asm("pkhbt %Q0, %1, %1, lsl #16\n\t"
        "pkhtb %R0, %1, %1, asr #16"
        : "=&r"(doubled)
        : "r"(pixels.bits));
    asm("strd %Q1, %R1, %0" : "=m"(*reinterpret_cast<Words*>(upper)) : "r"(doubled));
    asm("strd %Q1, %R1, %0" : "=m"(*reinterpret_cast<Words*>(lower)) : "r"(doubled));
}

// A product and its quotient take an instruction each.
struct Multiply {
    Fields fields;
    uint32_t over31 = held(kHighOver31);
    uint32_t over63 = held(kHighOver63);

    Pair operator()(Pair a, Pair b) const {
        const Halves red = mixed(fields.red(a), fields.red(b), over31);
        const Halves green = mixed(fields.green(a), fields.green(b), over63);
        const Halves blue = mixed(fields.blue(a), fields.blue(b), over31);
        const uint32_t left = red.left << 11 | green.left << 5 | blue.left;
        const uint32_t right = red.right << 11 | green.right << 5 | blue.right;
        return {left | right << 16};
    }

private:
    struct Halves {
        uint32_t left, right;
    };
    // 2^32 / 31 and 2^32 / 63, rounded up, which changes no quotient of a product below 2^26.
    static constexpr uint32_t kHighOver31 = 0xFFFFFFFF / 31 + 1;
    static constexpr uint32_t kHighOver63 = 0xFFFFFFFF / 63 + 1;

    static uint32_t high(int product, uint32_t by) {
        return static_cast<uint32_t>(int64_t{product} * static_cast<int32_t>(by) >> 32);
    }
    static Halves mixed(Pair a, Pair b, uint32_t by) {
        const auto half = [](uint32_t bits) { return static_cast<int16_t>(bits); };
        return {high(half(a.bits) * half(b.bits), by),
                high(half(a.bits >> 16) * half(b.bits >> 16), by)};
    }
};

inline constexpr int kGroup = 16;
inline constexpr uint32_t kClear = 0;  // four levels in a word
inline constexpr uint32_t kSolid = 0x0F0F0F0F;

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

inline uint32_t fourLevels(const uint8_t* alpha) {
    uint32_t four;
    memcpy(&four, alpha, sizeof four);
    return four;
}

// Whether all levels of a group are as its first four.
inline bool allAs(uint32_t four, const uint8_t* alpha) {
    return ((fourLevels(alpha + 4) ^ four) | (fourLevels(alpha + 8) ^ four) |
            (fourLevels(alpha + 12) ^ four)) == 0;
}

// Groups up to the next one that begins clear or solid, the first one in any case; returns how many
// pixels that were. By itself, so that the loop has all registers.
[[gnu::noinline]] inline int keyMixed(uint16_t* bottom, const uint16_t* top, const uint8_t* alpha,
                                      int count) {
    const KeyAlpha key;
    const uint8_t* const begin = alpha;
    const uint8_t* const end = alpha + count;
    uint32_t next;
    do {
#pragma GCC unroll 8
        for (int i = 0; i < kGroup; i += 2) {
            StoreU(key(LoadU(Pixels(), bottom + i), LoadU(Pixels(), top + i), alpha + i), Pixels(),
                   bottom + i);
        }
        alpha += kGroup;
        bottom += kGroup;
        top += kGroup;
        next = alpha != end ? fourLevels(alpha) : kClear;
    } while (next != kClear && next != kSolid);
    return static_cast<int>(alpha - begin);
}

// The rule of MODE_KEY for whole groups of pixels, in place; returns how many pixels that were.
inline int keyByAlpha(uint16_t* bottom, const uint16_t* top, const uint8_t* alpha, int count) {
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
