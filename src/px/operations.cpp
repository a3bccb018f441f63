#include "px/operations.h"

#include "common/limits.h"
#include "px/plain.h"
#include "px/widen.h"

#ifdef VELMORA_HIGHWAY
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "px/operations.cpp"
#include <hwy/foreach_target.h>

#include "px/fx-inl.h"
#include "px/mixes-inl.h"
#include "px/widen-inl.h"

HWY_BEFORE_NAMESPACE();
namespace px::HWY_NAMESPACE {

const Operations* table() {
#if VELMORA_PLAIN_TARGET
    return &plain();
#else
    static const Operations kTable = [] {
        Operations table = plain();
        table.name = VELMORA_PAIRS_TARGET ? "pairs" : hwy::TargetName(HWY_TARGET);
        addKernels(table);
        addEffects(table);
        table.widenChanged = widenChanged;
        return table;
    }();
    return &kTable;
#endif
}

}  // namespace px::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif

#if !defined(VELMORA_HIGHWAY) || HWY_ONCE
namespace px {

#ifdef VELMORA_HIGHWAY
HWY_EXPORT(table);

const Operations& operations() {
    return *HWY_DYNAMIC_DISPATCH(table)();
}
#else
const Operations& operations() {
    return plain();
}
#endif

const Operations& plain() {
    static const Operations kPlain = [] {
        Operations table{};
        table.name = "plain";
        addPlainKernels(table);
        addPlainEffects(table);
        table.widenChanged = widenChanged;
        return table;
    }();
    return kPlain;
}

namespace {

// The surface that takes the doubled picture from its first pixel on, with no column to spare.
bool takesDoubled(const OutputView& view) {
    return !view.composite && view.width == 2 * kFrameWidth && view.height >= 2 * kFrameHeight;
}

}  // namespace

void Operations::placePicture(const OutputView& view, const uint16_t* frame) const {
    if (placeDoubled == nullptr || !takesDoubled(view) || !placeDoubled(view, frame)) {
        px::placePicture(view, frame);
    }
}

void Operations::mixPicture(const OutputView& view, int mode, const Layers& layers) const {
    if (mode < 0 || mode >= kMixModes || mixes[mode].pixels == nullptr) {
        return;
    }
    const Mix& mix = mixes[mode];
    if (mix.doubled != nullptr && takesDoubled(view) && mix.doubled(view, layers)) {
        return;
    }
    if (mix.inPlace) {
        for (int i = 0; i < kFramePixels; i += kFrameWidth) {
            mix.pixels(layers.bottom + i, layers.from(i), kFrameWidth);
        }
        placePicture(view, layers.bottom);
        return;
    }
    beginPicture(view);
    uint16_t mixed[kFrameWidth];
    for (int y = 0; y < kFrameHeight; ++y) {
        mix.pixels(mixed, layers.from(y * kFrameWidth), kFrameWidth);
        placeRow(view, mixed, y);
    }
}

}  // namespace px
#endif
