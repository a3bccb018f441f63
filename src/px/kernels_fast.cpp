#include "px/kernels_fast.h"

#ifdef VELMORA_HIGHWAY
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "px/kernels_fast.cpp"
#include <hwy/foreach_target.h>

#include "px/kernels_pairs.h"
#include "px/pixel_ops-inl.h"

HWY_BEFORE_NAMESPACE();
namespace px::HWY_NAMESPACE {

#if VELMORA_PLAIN_TARGET

using px::addPixels;
using px::blendPixels;
using px::fadePixels;
using px::flashPixels;
using px::keyByAlpha;
using px::keyByBlack;
using px::multiplyPixels;

#else

// Whole vectors of two layers; returns how many pixels that were. The rest is the plain function's.
template <typename Operation>
int mixVectors(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count,
               Operation operation) {
    int i = 0;
    for (; i + lanes() <= count; i += lanes()) {
        store(operation(load(bottom + i), load(top + i)), out + i);
    }
    return i;
}

void blendPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count) {
    const int done = mixVectors(out, bottom, top, count, Blend());
    px::blendPixels(out + done, bottom + done, top + done, count - done);
}

void addPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count) {
    const int done = mixVectors(out, bottom, top, count, Add());
    px::addPixels(out + done, bottom + done, top + done, count - done);
}

void multiplyPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count) {
    const int done = mixVectors(out, bottom, top, count, Multiply());
    px::multiplyPixels(out + done, bottom + done, top + done, count - done);
}

void keyByBlack(uint16_t* bottom, const uint16_t* top, int count) {
    const int done = mixVectors(bottom, bottom, top, count, KeyBlack());
    px::keyByBlack(bottom + done, top + done, count - done);
}

#if VELMORA_PAIRS_TARGET

void keyByAlpha(uint16_t* bottom, const uint16_t* top, const uint8_t* alpha, int count) {
    const int done = px::pairs::keyByAlpha(bottom, top, alpha, count);
    px::keyByAlpha(bottom + done, top + done, alpha + done, count - done);
}

#else

void keyByAlpha(uint16_t* bottom, const uint16_t* top, const uint8_t* alpha, int count) {
    int i = 0;
    for (; i + lanes() <= count; i += lanes()) {
        store(keyAlpha(load(bottom + i), load(top + i), loadAlpha(alpha + i)), bottom + i);
    }
    px::keyByAlpha(bottom + i, top + i, alpha + i, count - i);
}

#endif

void flashPixels(uint16_t* pixels, int count, int level) {
    const Flash flash = flashOf(level);
    int i = 0;
    for (; i + lanes() <= count; i += lanes()) {
        store(flash(load(pixels + i)), pixels + i);
    }
    px::flashPixels(pixels + i, count - i, level);
}

void fadePixels(uint16_t* pixels, int count, int level) {
    const Fade fade = fadeOf(level);
    int i = 0;
    for (; i + lanes() <= count; i += lanes()) {
        store(fade(load(pixels + i)), pixels + i);
    }
    px::fadePixels(pixels + i, count - i, level);
}

#endif

}  // namespace px::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace px {

HWY_EXPORT(blendPixels);
HWY_EXPORT(addPixels);
HWY_EXPORT(multiplyPixels);
HWY_EXPORT(keyByAlpha);
HWY_EXPORT(keyByBlack);
HWY_EXPORT(flashPixels);
HWY_EXPORT(fadePixels);

namespace fast {

void blendPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count) {
    HWY_DYNAMIC_DISPATCH(blendPixels)(out, bottom, top, count);
}

void addPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count) {
    HWY_DYNAMIC_DISPATCH(addPixels)(out, bottom, top, count);
}

void multiplyPixels(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count) {
    HWY_DYNAMIC_DISPATCH(multiplyPixels)(out, bottom, top, count);
}

void keyByAlpha(uint16_t* bottom, const uint16_t* top, const uint8_t* alpha, int count) {
    HWY_DYNAMIC_DISPATCH(keyByAlpha)(bottom, top, alpha, count);
}

void keyByBlack(uint16_t* bottom, const uint16_t* top, int count) {
    HWY_DYNAMIC_DISPATCH(keyByBlack)(bottom, top, count);
}

void flashPixels(uint16_t* pixels, int count, int level) {
    HWY_DYNAMIC_DISPATCH(flashPixels)(pixels, count, level);
}

void fadePixels(uint16_t* pixels, int count, int level) {
    HWY_DYNAMIC_DISPATCH(fadePixels)(pixels, count, level);
}

}  // namespace fast
}  // namespace px
#endif
#endif
