// Widening on vectors: the rule of widen.h. Included once for every vector width, see
// pixel_ops-inl.h.
#if defined(VELMORA_WIDEN_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMORA_WIDEN_INL_H
#undef VELMORA_WIDEN_INL_H
#else
#define VELMORA_WIDEN_INL_H
#endif

#include "px/pixel_ops-inl.h"
#include "px/widen.h"

#if !VELMORA_PLAIN_TARGET
HWY_BEFORE_NAMESPACE();
namespace px::HWY_NAMESPACE {

// Green and blue are the lower half of a wide pixel, red the upper one. Both are made in 16 bits,
// and stand in memory in turns, the lower half first, as these processors keep their words.
struct Halves {
    Vector lower, upper;
};

HWY_INLINE Halves halvesOf(Vector p) {
    const Vector green = hn::ShiftLeft<5>(hn::And(p, all(0x07E0)));
    const Vector blue = hn::ShiftLeft<3>(hn::And(p, all(0x001F)));
    const Vector red = hn::ShiftRight<8>(hn::And(p, all(0xF800)));
    return {hn::Or(green, blue), red};
}

HWY_INLINE void storeWidened(Vector p, uint32_t* wide) {
    const Halves halves = halvesOf(p);
    hn::StoreInterleaved2(halves.lower, halves.upper, kPixels, reinterpret_cast<uint16_t*>(wide));
}

// Where the pixels from `start` on first differ, or `count`.
HWY_INLINE int firstChange(const uint32_t* wide, const uint16_t* pixels, int start, int count) {
    while (start < count && wide[start] == widened(pixels[start])) {
        ++start;
    }
    return start;
}

// The bits in which they differ.
HWY_INLINE Vector differing(const uint32_t* wide, const uint16_t* pixels) {
    const Halves halves = halvesOf(load(pixels));
    Vector lower, upper;
    hn::LoadInterleaved2(kPixels, reinterpret_cast<const uint16_t*>(wide), lower, upper);
    return hn::Or(hn::Xor(lower, halves.lower), hn::Xor(upper, halves.upper));
}

HWY_INLINE bool isZero(Vector bits) {
#if VELMORA_PAIRS_TARGET
    return bits.bits == 0;
#else
    return hn::AllTrue(kPixels, hn::Eq(bits, hn::Zero(kPixels)));
#endif
}

// A place with nothing but equal pixels before it and a change at it or soon after, or `count`.
HWY_INLINE int startOfChange(const uint32_t* wide, const uint16_t* pixels, int count) {
    const int step = 4 * lanes();
    int i = 0;
    for (; i + step <= count; i += step) {
        auto bits = differing(wide + i, pixels + i);
        for (int next = lanes(); next < step; next += lanes()) {
            bits = hn::Or(bits, differing(wide + i + next, pixels + i + next));
        }
        if (!isZero(bits)) {
            return i;
        }
    }
    return firstChange(wide, pixels, i, count);
}

// Behind the first pixel that differs most others do as well: they are written without a look.
bool widenChanged(uint32_t* wide, const uint16_t* pixels, int count) {
    int i = startOfChange(wide, pixels, count);
    const bool changed = i < count;
    for (; i + lanes() <= count; i += lanes()) {
        storeWidened(load(pixels + i), wide + i);
    }
    for (; i < count; ++i) {
        wide[i] = widened(pixels[i]);
    }
    return changed;
}

}  // namespace px::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif

#endif
