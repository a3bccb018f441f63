// The mixes, transitions and the scaler: operations on pixels connected to the buffers and the
// video surface.
#include "core/display.h"
#include "core/globals.h"
#include "mixer/mix.h"
#include "moxel/moxel.h"
#include "px/operations.h"

void c_mix::mixLayers(int which, const px::OutputView& view) {
    const bool hasAlpha = moxel[layer[1].deck].alpha != 0;
    px::operations().mixPicture(
        view, which,
        {finalTilesTracks, finalTilesTracks + kFramePixels, hasAlpha ? moxelAlpha16 : nullptr});
}

void c_mix::mixOnto(MixMode which, uint16_t* out) {
    px::OutputView view = videoView();
    view.pixels = out;
    mixLayers(which, view);
}

void c_mix::mixBlend(unsigned short* out) {
    mixOnto(MODE_BLEND, out);
}

void c_mix::mixAdd(unsigned short* out) {
    mixOnto(MODE_ADD, out);
}

void c_mix::mixMultiply(unsigned short* out) {
    mixOnto(MODE_MULTIPLY, out);
}

void c_mix::mixKey(unsigned short*) {
    mixLayers(MODE_KEY, videoView());
}

void c_mix::mixHalfHalf() {
    mixLayers(MODE_HALF_HALF, videoView());
}

void c_mix::renderWhiteFlash(unsigned short* frame) {
    px::operations().flash(frame, kFramePixels, flash);
}

void c_mix::renderFadeToBlack(unsigned short* frame) {
    px::operations().fade(frame, kFramePixels, fade);
}

void c_mix::scale2x(unsigned short* frame) {
    px::operations().placePicture(videoView(), frame);
}
