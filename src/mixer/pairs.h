#pragma once
// Two RGB565 pixels in a 32-bit register, for Arm processors without vectors: what pixel_ops-inl.h
// and the functions made of it use of Highway's operations, under the same names and with the same
// meaning. The processor adds and subtracts halves of a register by itself, with saturation; the
// rest is masks and shifts. Pairs are little-endian: the left pixel is the lower half.
//
// Empty where __ARM_FEATURE_SIMD32 is not defined; 32-bit Arm has had it since ARMv6.

#ifdef __ARM_FEATURE_SIMD32

#include <arm_acle.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace px::pairs {

struct Pair {
    uint32_t bits;
};

// Names of the kinds of vectors, for calls.
struct Pixels {};
struct Levels {};
template <typename, typename>
using Rebind = Levels;
template <typename>
using Vec = Pair;
template <typename>
using Mask = Pair;  // all bits of a half, or none

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
inline Pair LoadU(Levels, const uint8_t* from) {
    return {from[0] | uint32_t{from[1]} << 16};
}
inline Pair PromoteTo(Pixels, Pair levels) {
    return levels;
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
template <int n>
Pair ShiftRight(Pair a) {
    return {a.bits >> n & both(0xFFFF >> n)};
}
template <int n>
Pair ShiftLeft(Pair a) {
    return {a.bits << n & both(0xFFFF << n & 0xFFFF)};
}

// No sum or difference that is asked for leaves its half, so plain arithmetic on the register does.
inline Pair Add(Pair a, Pair b) {
    return {a.bits + b.bits};
}
inline Pair Sub(Pair a, Pair b) {
    return {a.bits - b.bits};
}
inline Pair SaturatedAdd(Pair a, Pair b) {
    return {__uqadd16(a.bits, b.bits)};
}
inline Pair SaturatedSub(Pair a, Pair b) {
    return {__uqsub16(a.bits, b.bits)};
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
inline Pair IfThenElseZero(Pair mask, Pair yes) {
    return {yes.bits & mask.bits};
}
inline Pair Reverse(Pixels, Pair a) {
    return {a.bits << 16 | a.bits >> 16};
}

inline void StoreInterleaved2(Pair a, Pair b, Pixels d, uint16_t* to) {
    StoreU({(a.bits & 0xFFFF) | b.bits << 16}, d, to);
    StoreU({a.bits >> 16 | (b.bits & 0xFFFF0000)}, d, to + 2);
}
inline void LoadInterleaved2(Pixels d, const uint16_t* from, Pair& a, Pair& b) {
    const uint32_t left = LoadU(d, from).bits;
    const uint32_t right = LoadU(d, from + 2).bits;
    a = {(left & 0xFFFF) | right << 16};
    b = {left >> 16 | (right & 0xFFFF0000)};
}

// kFieldShares[level][field]: field x level / 15, for keying by alpha.
struct FieldShares {
    uint8_t of[16][64];

    const uint8_t* operator[](uint32_t level) const { return of[level]; }
};

constexpr FieldShares fieldShares() {
    FieldShares shares{};
    for (int level = 0; level < 16; ++level) {
        for (int field = 0; field < 64; ++field) {
            shares.of[level][field] = static_cast<uint8_t>(field * level / 15);
        }
    }
    return shares;
}

inline constexpr FieldShares kFieldShares = fieldShares();

}  // namespace px::pairs

#endif
