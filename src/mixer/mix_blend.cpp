// The mixes, transitions and the scaler: kernels connected to the buffers and the video surface.
#include <cstring>

#include "core/display.h"
#include "core/globals.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "px/kernels_fast.h"
#include "px/output_fast.h"

namespace {

void mixPicture(uint16_t* out, px::fast::Mix mix) {
    px::OutputView view = videoView();
    view.pixels = out;
    px::fast::mixPicture(view, mix, finalTilesTracks, finalTilesTracks + kFramePixels);
}

}  // namespace

void c_mix::mixBlend(unsigned short* out) {
    mixPicture(out, px::fast::Mix::kBlend);
}

void c_mix::mixAdd(unsigned short* out) {
    mixPicture(out, px::fast::Mix::kAdd);
}

void c_mix::mixMultiply(unsigned short* out) {
    mixPicture(out, px::fast::Mix::kMultiply);
}

void c_mix::mixKey(unsigned short*) {
    const bool hasAlpha = moxel[layer[1].deck].alpha != 0;
    px::fast::keyPicture(videoView(), finalTilesTracks, finalTilesTracks + kFramePixels,
                         hasAlpha ? moxelAlpha16 : nullptr);
}

void c_mix::mixHalfHalf() {
    constexpr size_t kHalfRowBytes = kFrameWidth / 2 * sizeof(uint16_t);
    uint16_t* bottom = finalTilesTracks;
    const uint16_t* top = finalTilesTracks + kFramePixels;
    for (int y = 0; y < kFrameHeight; ++y) {
        memcpy(bottom + y * kFrameWidth, top + y * kFrameWidth, kHalfRowBytes);
    }
    scale2x(bottom);
}

void c_mix::renderWhiteFlash(unsigned short* frame) {
    px::fast::flashPixels(frame, kFramePixels, flash);
}

void c_mix::renderFadeToBlack(unsigned short* frame) {
    px::fast::fadePixels(frame, kFramePixels, fade);
}

void c_mix::scale2x(unsigned short* frame) {
    px::fast::placePicture(videoView(), frame);
}
