#include "mixer/widen.h"

#ifdef VELMORA_HIGHWAY
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "mixer/widen_fast.cpp"
#include <hwy/foreach_target.h>

#include "mixer/pixel_ops-inl.h"

HWY_BEFORE_NAMESPACE();
namespace px::HWY_NAMESPACE {

#if VELMORA_PLAIN_TARGET

using px::widenChanged;

#else

// Green and blue are the lower half of a wide pixel, red the upper one: both are made in 16 bits
// and stored in turns, the lower half first, as these processors keep their words.
HWY_INLINE void storeWidened(Vector p, uint32_t* wide) {
    const Vector green = hn::And(hn::ShiftLeft<5>(p), all(0xFC00));
    const Vector blue = hn::And(hn::ShiftLeft<3>(p), all(0x00F8));
    const Vector red = hn::And(hn::ShiftRight<8>(p), all(0x00F8));
    hn::StoreInterleaved2(hn::Or(green, blue), red, kPixels, reinterpret_cast<uint16_t*>(wide));
}

// Where the pixels from `start` on first differ, or `count`.
HWY_INLINE int firstChange(const uint32_t* wide, const uint16_t* pixels, int start, int count) {
    while (start < count && wide[start] == widened(pixels[start])) {
        ++start;
    }
    return start;
}

#if VELMORA_PAIRS_TARGET

HWY_INLINE int startOfChange(const uint32_t* wide, const uint16_t* pixels, int count) {
    return firstChange(wide, pixels, 0, count);
}

#else

using Wide = hn::CappedTag<uint32_t, 16>;
inline constexpr Wide kWide;

// The bits in which they differ.
HWY_INLINE hn::Vec<Wide> differing(const uint32_t* wide, const uint16_t* pixels) {
    const auto p = hn::PromoteTo(kWide, hn::LoadU(hn::Rebind<uint16_t, Wide>(), pixels));
    const auto red = hn::ShiftLeft<8>(hn::And(p, hn::Set(kWide, 0xF800u)));
    const auto green = hn::ShiftLeft<5>(hn::And(p, hn::Set(kWide, 0x07E0u)));
    const auto blue = hn::ShiftLeft<3>(hn::And(p, hn::Set(kWide, 0x001Fu)));
    return hn::Xor(hn::LoadU(kWide, wide), hn::Or(hn::Or(red, green), blue));
}

// A place with nothing but equal pixels before it and a change at it or soon after, or `count`.
HWY_INLINE int startOfChange(const uint32_t* wide, const uint16_t* pixels, int count) {
    const int width = static_cast<int>(hn::Lanes(kWide));
    const int step = 4 * width;
    int i = 0;
    for (; i + step <= count; i += step) {
        auto bits = differing(wide + i, pixels + i);
        for (int next = width; next < step; next += width) {
            bits = hn::Or(bits, differing(wide + i + next, pixels + i + next));
        }
        if (!hn::AllTrue(kWide, hn::Eq(bits, hn::Zero(kWide)))) {
            return i;
        }
    }
    return firstChange(wide, pixels, i, count);
}

#endif

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

#endif

}  // namespace px::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace px {

HWY_EXPORT(widenChanged);

bool fast::widenChanged(uint32_t* wide, const uint16_t* pixels, int count) {
    return HWY_DYNAMIC_DISPATCH(widenChanged)(wide, pixels, count);
}

}  // namespace px
#endif
#endif
