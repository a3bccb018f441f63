#pragma once
// c_mix: the live state of the performance and the frame that comes of it. One object, the global
// `mix`. Once a frame of the mix screen the main loop draws the clips, then calls finRender
// (filters, mixing, transitions, top bar: into the video surface), lecture (advance the layers) and
// drawUI.
//
// Pixel arguments: `out` is the first pixel of the output surface (its size and pitch are the video
// surface's), `frame` one 640 x 360 slot of finalTilesTracks. RGB565 throughout.

#include <cstdint>

#include "common/limits.h"
#include "px/modes.h"
#include "px/output.h"

enum PlayDirection : int32_t { PLAY_FORWARD = 0, PLAY_BACKWARD = 1 };

inline constexpr int kFlashLevels = 15;  // level of a flash just triggered
inline constexpr int kFadeLevels = 15;   // fade level of black
inline constexpr int kFilterKeyDown = 2;
inline constexpr int kStagePace = 25;  // target frame rate

struct MixLayer {
    int32_t deck;       // clip slot shown
    int32_t frame;      // current frame of it
    int32_t direction;  // PlayDirection; with any other value the frame stands still
};

class c_mix {
public:
    void initMix();  // needs the application resolution
    void lecture();
    // Top bar: `position` of `length` frames played.
    void finRender(int position, int length);
    void drawUI();

    // Each mode by its own name; finRender goes by `mode`.
    void mixBlend(unsigned short* out) { mixOnto(MODE_BLEND, out); }
    void mixAdd(unsigned short* out) { mixOnto(MODE_ADD, out); }
    void mixMultiply(unsigned short* out) { mixOnto(MODE_MULTIPLY, out); }
    // In place in the bottom slot, then scaled.
    void mixKey(unsigned short*) { mixOnto(MODE_KEY); }
    void mixHalfHalf() { mixOnto(MODE_HALF_HALF); }
    void renderWhiteFlash(unsigned short* frame);
    void renderFadeToBlack(unsigned short* frame);
    void scale2x(unsigned short* frame);

    int32_t nbDecks;      // clips ready to play
    int32_t activeLayer;  // 0 bottom, 1 top
    MixLayer layer[kLayers];
    int32_t uiX;
    int32_t uiY;
    int32_t hold;  // non-zero: the layers stand still
    int32_t mode;  // MixMode
    int32_t targetFps;
    int32_t filterKeyHeld;  // 2 while a filter letter is held, else 0
    int32_t showUI;
    int32_t scrubX;      // picture x where the scrub began
    int32_t scrubFrame;  // frame where it began
    int32_t scrubbing;
    int32_t flash;  // 15 when triggered, counts down to 0
    int32_t fade;   // 0 to 15

    int32_t topBar = 0;  // 1: finRender draws it. The main loop hands in the preference

private:
    // The picture that the mode makes of both layers, where it makes one.
    void mixLayers(int which, const px::OutputView& view);
    void mixOnto(MixMode which, uint16_t* out = nullptr);  // null: the video surface's first pixel
};
