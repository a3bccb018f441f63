#include "mixer/mix.h"

#include <cstring>

#include "common/geometry.h"
#include "core/all.h"
#include "core/display.h"
#include "core/filters.h"
#include "core/globals.h"
#include "moxel/moxel.h"
#include "px/operations.h"

namespace {

constexpr int kTopBarRow = 5;
constexpr uint16_t kWhite = 0xFFFF;

void advance(MixLayer& layer, int frameCount) {
    if (layer.direction == PLAY_FORWARD) {
        ++layer.frame;
        // Deliberate: only the exact end wraps; a frame already past it keeps counting.
        // [quirk_frame_past_the_end_keeps_counting]
        if (layer.frame == frameCount) {
            layer.frame = 0;
        }
    } else if (layer.direction == PLAY_BACKWARD) {
        layer.frame = layer.frame != 0 ? layer.frame - 1 : frameCount - 1;
    }
}

}  // namespace

void c_mix::initMix() {
    const Point offset = pictureOffset(all->appW, all->appH);
    nbDecks = 0;
    activeLayer = 1;
    layer[0] = {0, 0, PLAY_FORWARD};
    layer[1] = {0, 0, PLAY_FORWARD};
    uiX = offset.x;
    uiY = offset.y;
    hold = 0;
    mode = MODE_TOP;
    targetFps = kStagePace;
    filterKeyHeld = 0;
    showUI = 0;
    flash = 0;
    fade = 0;
}

void c_mix::lecture() {
    if (hold == 0) {
        for (MixLayer& each : layer) {
            advance(each, moxel[each.deck].frameCount);
        }
    }
    // A running flash counts down whether or not the layers are held.
    if (flash != 0) {
        --flash;
    }
}

void c_mix::finRender(int position, int length) {
    uint16_t* const bottom = finalTilesTracks;
    uint16_t* const top = finalTilesTracks + kFramePixels;
    if (mode != MODE_TOP) {
        memcpy(bottom, moxelTiles16, kLayers * kFrameBytes);
    } else {
        memcpy(top, moxelTiles16 + kFramePixels, kFrameBytes);
    }

    _filters->applyAll(hold);

    const VideoOutput output;
    mixLayers(mode, videoView());

    // Deliberate: outside mode 0 the picture is on the surface already, so fade and flash show in
    // mode 0 alone; the next frame's copy overwrites what they changed.
    // [quirk_fade_and_flash_show_in_mode_0_only]
    uint16_t* const faded = mode == MODE_TOP ? top : bottom;
    if (fade > 0) {
        renderFadeToBlack(faded);
    }
    if (flash > 0) {
        renderWhiteFlash(faded);
    }
    if (mode == MODE_TOP) {
        scale2x(top);
    }
    // Guard: the playlists' scan may have read the header of a file without frames into the slot.
    if (topBar != 0 && length > 0) {
        const px::OutputView view = videoView();
        const int64_t bar = int64_t{position} * all->appW / length;
        px::fillRowStart(view, kTopBarRow, static_cast<int>(bar), kWhite);
    }
}

void c_mix::mixLayers(int which, const px::OutputView& view) {
    const bool hasAlpha = moxel[layer[1].deck].alpha != 0;
    px::operations().mixPicture(
        view, which,
        {finalTilesTracks, finalTilesTracks + kFramePixels, hasAlpha ? moxelAlpha16 : nullptr});
}

void c_mix::mixOnto(MixMode which, uint16_t* out) {
    px::OutputView view = videoView();
    view.pixels = out != nullptr ? out : view.pixels;
    mixLayers(which, view);
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
