// The mixes, transitions and the scaler: kernels connected to the buffers and the video surface.
#include <cstring>

#include "clip/moxel.h"
#include "core/display.h"
#include "core/globals.h"
#include "mixer/kernels.h"
#include "mixer/mix.h"
#include "mixer/output.h"

namespace {

using RowMix = void (*)(uint16_t* out, const uint16_t* bottom, const uint16_t* top, int count);

// Mixes the two working slots row by row and places each row; the slots stay as they are.
void mixRows(uint16_t* out, RowMix mixRow) {
    px::OutputView view = videoView();
    view.pixels = out;
    px::beginPicture(view);
    const uint16_t* bottom = finalTilesTracks;
    const uint16_t* top = finalTilesTracks + kFramePixels;
    uint16_t mixed[kFrameWidth];
    for (int y = 0; y < kFrameHeight; ++y) {
        mixRow(mixed, bottom + y * kFrameWidth, top + y * kFrameWidth, kFrameWidth);
        px::placeRow(view, mixed, y);
    }
}

}  // namespace

void c_mix::mixBlend(unsigned short* out) {
    mixRows(out, px::blendPixels);
}

void c_mix::mixAdd(unsigned short* out) {
    mixRows(out, px::addPixels);
}

void c_mix::mixMultiply(unsigned short* out) {
    mixRows(out, px::multiplyPixels);
}

void c_mix::mixKey(unsigned short*) {
    uint16_t* bottom = finalTilesTracks;
    const uint16_t* top = finalTilesTracks + kFramePixels;
    if (moxel[layer[1].deck].alpha != 0) {
        px::keyByAlpha(bottom, top, moxelAlpha16, kFramePixels);
    } else {
        px::keyByBlack(bottom, top, kFramePixels);
    }
    scale2x(bottom);
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
    px::flashPixels(frame, kFramePixels, flash);
}

void c_mix::renderFadeToBlack(unsigned short* frame) {
    px::fadePixels(frame, kFramePixels, fade);
}

void c_mix::scale2x(unsigned short* frame) {
    px::placePicture(videoView(), frame);
}
