#include "px/output_fast.h"

#include "common/limits.h"
#include "px/kernels_fast.h"

#ifdef VELMORA_HIGHWAY
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "px/output_fast.cpp"
#include <hwy/foreach_target.h>

#include "px/pixel_ops-inl.h"

HWY_BEFORE_NAMESPACE();
namespace px::HWY_NAMESPACE {

// The functions answer whether they did it: not without vectors.
#if VELMORA_PLAIN_TARGET

bool placeDoubled(const OutputView&, const uint16_t*) {
    return false;
}
bool mixDoubled(const OutputView&, fast::Mix, const uint16_t*, const uint16_t*) {
    return false;
}
bool keyDoubled(const OutputView&, uint16_t*, const uint16_t*, const uint8_t*) {
    return false;
}

#else

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

template <typename Operation>
HWY_INLINE bool mixDoubledBy(Operation operation, const OutputView& view, const uint16_t* bottom,
                             const uint16_t* top) {
    return doublePicture(
        view, [=](int i) HWY_ATTR { return operation(load(bottom + i), load(top + i)); });
}

bool mixDoubled(const OutputView& view, fast::Mix mix, const uint16_t* bottom,
                const uint16_t* top) {
    switch (mix) {
        case fast::Mix::kBlend:
            return mixDoubledBy(Blend(), view, bottom, top);
        case fast::Mix::kAdd:
            return mixDoubledBy(Add(), view, bottom, top);
        default:
            return mixDoubledBy(Multiply(), view, bottom, top);
    }
}

bool keyDoubled(const OutputView& view, uint16_t* bottom, const uint16_t* top,
                const uint8_t* alpha) {
    if (alpha == nullptr) {
        return doublePicture(view, [=](int i) HWY_ATTR {
            const Vector keyed = KeyBlack()(load(bottom + i), load(top + i));
            store(keyed, bottom + i);
            return keyed;
        });
    }
#if VELMORA_PAIRS_TARGET
    if (!takesStores(view)) {
        return false;
    }
    // Keyed and doubled by two loops: the registers do for one of them.
    for (int y = 0; y < kFrameHeight; ++y) {
        const int row = y * kFrameWidth;
        fast::keyByAlpha(bottom + row, top + row, alpha + row, kFrameWidth);
        doubleRow(view, y, [=](int i) { return load(bottom + i); });
    }
    return true;
#else
    return doublePicture(view, [=](int i) HWY_ATTR {
        const Vector keyed = keyAlpha(load(bottom + i), load(top + i), loadAlpha(alpha + i));
        store(keyed, bottom + i);
        return keyed;
    });
#endif
}

#endif

}  // namespace px::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif

#if !defined(VELMORA_HIGHWAY) || HWY_ONCE
namespace px {

namespace {

using RowMix = void (*)(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count);

RowMix rowMix(fast::Mix mix) {
    switch (mix) {
        case fast::Mix::kBlend:
            return fast::blendPixels;
        case fast::Mix::kAdd:
            return fast::addPixels;
        default:
            return fast::multiplyPixels;
    }
}

#ifdef VELMORA_HIGHWAY
HWY_EXPORT(placeDoubled);
HWY_EXPORT(mixDoubled);
HWY_EXPORT(keyDoubled);

// The surface that takes the doubled picture from its first pixel on, with no column to spare.
bool takesDoubled(const OutputView& view) {
    return !view.composite && view.width == 2 * kFrameWidth && view.height >= 2 * kFrameHeight;
}
#endif

}  // namespace

void fast::placePicture(const OutputView& view, const uint16_t* frame) {
#ifdef VELMORA_HIGHWAY
    if (takesDoubled(view) && HWY_DYNAMIC_DISPATCH(placeDoubled)(view, frame)) {
        return;
    }
#endif
    px::placePicture(view, frame);
}

void fast::mixPicture(const OutputView& view, Mix mix, const uint16_t* bottom,
                      const uint16_t* top) {
#ifdef VELMORA_HIGHWAY
    if (takesDoubled(view) && HWY_DYNAMIC_DISPATCH(mixDoubled)(view, mix, bottom, top)) {
        return;
    }
#endif
    beginPicture(view);
    const RowMix mixRow = rowMix(mix);
    uint16_t mixed[kFrameWidth];
    for (int y = 0; y < kFrameHeight; ++y) {
        mixRow(mixed, bottom + y * kFrameWidth, top + y * kFrameWidth, kFrameWidth);
        placeRow(view, mixed, y);
    }
}

void fast::keyPicture(const OutputView& view, uint16_t* bottom, const uint16_t* top,
                      const uint8_t* alpha) {
#ifdef VELMORA_HIGHWAY
    if (takesDoubled(view) && HWY_DYNAMIC_DISPATCH(keyDoubled)(view, bottom, top, alpha)) {
        return;
    }
#endif
    if (alpha != nullptr) {
        fast::keyByAlpha(bottom, top, alpha, kFramePixels);
    } else {
        fast::keyByBlack(bottom, top, kFramePixels);
    }
    px::placePicture(view, bottom);
}

}  // namespace px
#endif
