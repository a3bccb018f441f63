// The mixes and transitions on vectors, by row and by doubled picture: the rules of kernels.cpp.
// Included once for every vector width, see pixel_ops-inl.h.
#if defined(VELMORA_MIXES_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMORA_MIXES_INL_H
#undef VELMORA_MIXES_INL_H
#else
#define VELMORA_MIXES_INL_H
#endif

#include <cstring>

#include "common/limits.h"
#include "px/division.h"
#include "px/operations.h"
#include "px/pixel_ops-inl.h"

#if !VELMORA_PLAIN_TARGET
HWY_BEFORE_NAMESPACE();
namespace px::HWY_NAMESPACE {

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
using hn::storeDoubled;
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

#if !VELMORA_PAIRS_TARGET

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

// Whole vectors of two layers; the rest is the plain function's.
template <typename Operation, MixMode mode>
void mixPixels(uint16_t* out, const Layers& layers, int count) {
    const Operation operation;
    const auto [bottom, top, alpha] = layers;
    int i = 0;
    for (; i + lanes() <= count; i += lanes()) {
        store(operation(load(bottom + i), load(top + i)), out + i);
    }
    if (i < count) {
        plain().mixes[mode].pixels(out + i, layers.from(i), count - i);
    }
}

#if VELMORA_PAIRS_TARGET

void keyByAlpha(uint16_t* out, const Layers& layers, int count) {
    if (out != layers.bottom) {
        memcpy(out, layers.bottom, static_cast<size_t>(count) * sizeof *out);
    }
    const int done = px::pairs::keyByAlpha(out, layers.top, layers.alpha, count);
    if (done < count) {
        const Layers rest = layers.from(done);
        plain().mixes[MODE_KEY].pixels(out + done, rest, count - done);
    }
}

#else

void keyByAlpha(uint16_t* out, const Layers& layers, int count) {
    const auto [bottom, top, alpha] = layers;
    int i = 0;
    for (; i + lanes() <= count; i += lanes()) {
        store(keyAlpha(load(bottom + i), load(top + i), loadAlpha(alpha + i)), out + i);
    }
    if (i < count) {
        plain().mixes[MODE_KEY].pixels(out + i, layers.from(i), count - i);
    }
}

#endif

void keyPixels(uint16_t* out, const Layers& layers, int count) {
    (layers.alpha != nullptr ? keyByAlpha : mixPixels<KeyBlack, MODE_KEY>)(out, layers, count);
}

template <typename Operation>
HWY_INLINE int changeVectors(uint16_t* pixels, int count, Operation operation) {
    int i = 0;
    for (; i + lanes() <= count; i += lanes()) {
        store(operation(load(pixels + i)), pixels + i);
    }
    return i;
}

void flashPixels(uint16_t* pixels, int count, int level) {
    const int done = changeVectors(pixels, count, flashOf(level));
    if (done < count) {
        plain().flash(pixels + done, count - done, level);
    }
}

void fadePixels(uint16_t* pixels, int count, int level) {
    const int done = changeVectors(pixels, count, fadeOf(level));
    if (done < count) {
        plain().fade(pixels + done, count - done, level);
    }
}

// Whether the rows lie where storeDoubled can store to.
HWY_INLINE bool takesStores([[maybe_unused]] const OutputView& view) {
#if VELMORA_PAIRS_TARGET
    return (reinterpret_cast<uintptr_t>(view.pixels) | view.pitch) % hn::kDoubledAlignment == 0;
#else
    return true;
#endif
}

// vectorAt(i): the vector that starts at pixel i of the picture. Each of its pixels becomes 2 x 2.
template <typename VectorAt>
HWY_INLINE void doubleRow(const OutputView& view, int y, VectorAt vectorAt) {
    uint16_t* const upper = outputRow(view, 2 * y);
    uint16_t* const lower = outputRow(view, 2 * y + 1);
#if VELMORA_PAIRS_TARGET
#pragma GCC unroll 16
#endif
    for (int x = 0; x < kFrameWidth; x += lanes()) {
        storeDoubled(vectorAt(y * kFrameWidth + x), upper + 2 * x, lower + 2 * x);
    }
}

template <typename VectorAt>
HWY_INLINE bool doublePicture(const OutputView& view, VectorAt vectorAt) {
    if (!takesStores(view)) {
        return false;
    }
    for (int y = 0; y < kFrameHeight; ++y) {
        doubleRow(view, y, vectorAt);
    }
    return true;
}

bool placeDoubled(const OutputView& view, const uint16_t* frame) {
    return doublePicture(view, [=](int i) HWY_ATTR { return load(frame + i); });
}

// `inPlace`: the mixed picture stays in the bottom layer as well.
template <typename Operation, bool inPlace>
bool mixDoubled(const OutputView& view, const Layers& layers) {
    const Operation operation;
    const auto [bottom, top, alpha] = layers;
    return doublePicture(view, [operation, bottom = bottom, top = top](int i) HWY_ATTR {
        const Vector mixed = operation(load(bottom + i), load(top + i));
        if constexpr (inPlace) {
            store(mixed, bottom + i);
        }
        return mixed;
    });
}

#if VELMORA_PAIRS_TARGET

// Keyed and doubled by two loops: the registers do for one of them.
bool keyDoubledByAlpha(const OutputView& view, const Layers& layers) {
    if (!takesStores(view)) {
        return false;
    }
    uint16_t* const bottom = layers.bottom;
    for (int y = 0; y < kFrameHeight; ++y) {
        const int row = y * kFrameWidth;
        keyByAlpha(bottom + row, layers.from(row), kFrameWidth);
        doubleRow(view, y, [bottom](int i) { return load(bottom + i); });
    }
    return true;
}

#else

bool keyDoubledByAlpha(const OutputView& view, const Layers& layers) {
    const auto [bottom, top, alpha] = layers;
    return doublePicture(view, [bottom = bottom, top = top, alpha = alpha](int i) HWY_ATTR {
        const Vector keyed = keyAlpha(load(bottom + i), load(top + i), loadAlpha(alpha + i));
        store(keyed, bottom + i);
        return keyed;
    });
}

#endif

bool keyDoubled(const OutputView& view, const Layers& layers) {
    return (layers.alpha != nullptr ? keyDoubledByAlpha : mixDoubled<KeyBlack, true>)(view, layers);
}

template <typename Operation, MixMode mode>
void addMix(Operations& table) {
    table.mixes[mode].pixels = mixPixels<Operation, mode>;
    table.mixes[mode].doubled = mixDoubled<Operation, false>;
}

void addKernels(Operations& table) {
    addMix<Blend, MODE_BLEND>(table);
    addMix<Add, MODE_ADD>(table);
    addMix<Multiply, MODE_MULTIPLY>(table);
    table.mixes[MODE_KEY].pixels = keyPixels;
    table.mixes[MODE_KEY].doubled = keyDoubled;
    table.placeDoubled = placeDoubled;
    table.flash = flashPixels;
    table.fade = fadePixels;
}

}  // namespace px::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif

#endif
