// The mixer's pixel arithmetic on vectors of RGB565 pixels: one lane, one pixel. Included once for
// every vector width that is compiled, so there is no #pragma once; only *_fast.cpp include it.
//
// Each operation takes vectors of two layers, or of one, and gives the vector that the function of
// the same name in px/kernels.h gives pixel by pixel.
#if defined(VELMORA_PIXEL_OPS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMORA_PIXEL_OPS_INL_H
#undef VELMORA_PIXEL_OPS_INL_H
#else
#define VELMORA_PIXEL_OPS_INL_H
#endif

#include <hwy/highway.h>

#include <cstdint>

#include "px/division.h"
#include "px/vector_choice.h"
#if VELMORA_HAS_PAIRS
#include "px/pairs.h"
#endif

// Targets without vectors: pairs on Arm; elsewhere the plain functions are the better choice.
#undef VELMORA_PAIRS_TARGET
#undef VELMORA_PLAIN_TARGET
#define VELMORA_PAIRS_TARGET \
    (VELMORA_HAS_PAIRS && (HWY_TARGET == HWY_EMU128 || HWY_TARGET == HWY_SCALAR))
#define VELMORA_PLAIN_TARGET \
    (!VELMORA_PAIRS_TARGET && (HWY_TARGET == HWY_EMU128 || HWY_TARGET == HWY_SCALAR))

#if !VELMORA_PLAIN_TARGET
HWY_BEFORE_NAMESPACE();
namespace px::HWY_NAMESPACE {

#if VELMORA_PAIRS_TARGET
namespace hn = px::pairs;
using Pixels = hn::Pixels;
#else
namespace hn = hwy::HWY_NAMESPACE;
// At most 32 lanes, so that a whole number of vectors makes a row, a half row and a quarter row.
using Pixels = hn::CappedTag<uint16_t, 32>;
#endif
using Vector = hn::Vec<Pixels>;
inline constexpr Pixels kPixels;

HWY_INLINE int lanes() {
    return static_cast<int>(hn::Lanes(kPixels));
}
HWY_INLINE Vector all(int value) {
    return hn::Set(kPixels, static_cast<uint16_t>(value));
}
HWY_INLINE Vector load(const uint16_t* pixels) {
    return hn::LoadU(kPixels, pixels);
}
HWY_INLINE void store(Vector pixels, uint16_t* out) {
    hn::StoreU(pixels, kPixels, out);
}

HWY_INLINE Vector redOf(Vector p) {
    return hn::ShiftRight<11>(p);
}
HWY_INLINE Vector greenOf(Vector p) {
    return hn::And(hn::ShiftRight<5>(p), all(63));
}
HWY_INLINE Vector blueOf(Vector p) {
    return hn::And(p, all(31));
}
HWY_INLINE Vector pack(Vector red, Vector green, Vector blue) {
    return hn::Or(hn::Or(hn::ShiftLeft<11>(red), hn::ShiftLeft<5>(green)), blue);
}

HWY_INLINE Vector over15(Vector x) {
    return hn::MulHigh(x, all(kOver15.multiplier));
}
HWY_INLINE Vector over31(Vector x) {
    return hn::MulHigh(x, all(kOver31.multiplier));
}

struct Blend {
    HWY_INLINE Vector operator()(Vector a, Vector b) const {
        const Vector keep = all(0xF7DE);
        return hn::Add(hn::ShiftRight<1>(hn::And(a, keep)), hn::ShiftRight<1>(hn::And(b, keep)));
    }
};

// Each field is added at the top of its lane, where the sum saturates.
struct Add {
    HWY_INLINE Vector operator()(Vector a, Vector b) const {
        const Vector redMask = all(0xF800);
        const Vector greenMask = all(0x07E0);
        const Vector red = hn::SaturatedAdd(hn::And(a, redMask), b);
        const Vector green =
            hn::SaturatedAdd(hn::ShiftLeft<5>(hn::And(a, greenMask)), hn::ShiftLeft<5>(b));
        const Vector blue = hn::SaturatedAdd(hn::ShiftLeft<11>(a), hn::ShiftLeft<11>(b));
        return hn::Or(hn::Or(hn::And(red, redMask), hn::And(hn::ShiftRight<5>(green), greenMask)),
                      hn::ShiftRight<11>(blue));
    }
};

#if VELMORA_PAIRS_TARGET
using hn::Multiply;
#else
struct Multiply {
    HWY_INLINE Vector operator()(Vector a, Vector b) const {
        const Vector red = over31(hn::Mul(redOf(a), redOf(b)));
        const Vector blue = over31(hn::Mul(blueOf(a), blueOf(b)));
        static_assert(kOver63.scale == 1 << 4 && kOver63.shift == 8);
        const Vector scaled = hn::Mul(hn::And(hn::ShiftRight<1>(a), all(63 << 4)), greenOf(b));
        const Vector green =  // the quotient in its place: 8 bits down and 5 up
            hn::And(hn::ShiftRight<3>(hn::MulHigh(scaled, all(kOver63.multiplier))), all(63 << 5));
        return hn::Or(hn::Or(hn::ShiftLeft<11>(red), green), blue);
    }
};
#endif

struct KeyBlack {
    HWY_INLINE Vector operator()(Vector bottom, Vector top) const {
        return hn::IfThenElse(hn::Eq(top, hn::Zero(kPixels)), bottom, top);
    }
};

struct Fade {
    Vector keep;  // 15 - level

    HWY_INLINE Vector operator()(Vector p) const {
        return pack(over15(hn::Mul(redOf(p), keep)), over15(hn::Mul(greenOf(p), keep)),
                    over15(hn::Mul(blueOf(p), keep)));
    }
};
HWY_INLINE Fade fadeOf(int level) {
    return {all(15 - level)};
}

struct Flash {
    Vector light, keep;            // red and blue: 31 k, 15 - k
    Vector greenLight, greenKeep;  // 126 k, 31 - 2 k

    HWY_INLINE Vector operator()(Vector p) const {
        const Vector red = over15(hn::Add(light, hn::Mul(keep, redOf(p))));
        const Vector blue = over15(hn::Add(light, hn::Mul(keep, blueOf(p))));
        const Vector green = over31(hn::Add(greenLight, hn::Mul(greenKeep, greenOf(p))));
        return pack(red, green, blue);
    }
};
HWY_INLINE Flash flashOf(int level) {
    return {all(31 * level), all(15 - level), all(126 * level), all(31 - 2 * level)};
}

#if VELMORA_PAIRS_TARGET
using hn::storeDoubled;
#else

// Alpha levels of a vector's pixels, a lane each.
HWY_INLINE Vector loadAlpha(const uint8_t* alpha) {
    return hn::PromoteTo(kPixels, hn::LoadU(hn::Rebind<uint8_t, Pixels>(), alpha));
}

HWY_INLINE Vector keyAlpha(Vector bottom, Vector top, Vector alpha) {
    const Vector rest = hn::Sub(all(15), alpha);
    const auto mixed = [&](Vector over, Vector under) HWY_ATTR {
        return hn::Add(over15(hn::Mul(over, alpha)), over15(hn::Mul(under, rest)));
    };
    return pack(mixed(redOf(top), redOf(bottom)), mixed(greenOf(top), greenOf(bottom)),
                mixed(blueOf(top), blueOf(bottom)));
}

// Each pixel twice, to two rows.
HWY_INLINE void storeDoubled(Vector pixels, uint16_t* upper, uint16_t* lower) {
    hn::StoreInterleaved2(pixels, pixels, kPixels, upper);
    hn::StoreInterleaved2(pixels, pixels, kPixels, lower);
}

#endif

}  // namespace px::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif

#endif
