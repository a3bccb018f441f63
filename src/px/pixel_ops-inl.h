// Vectors of RGB565 pixels: one lane, one pixel. Included once for every vector width that is
// compiled, so there is no #pragma once; operations.cpp includes what is made of it.
#if defined(VELMORA_PIXEL_OPS_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMORA_PIXEL_OPS_INL_H
#undef VELMORA_PIXEL_OPS_INL_H
#else
#define VELMORA_PIXEL_OPS_INL_H
#endif

#include <hwy/highway.h>

#include <cstdint>

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

}  // namespace px::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif

#endif
