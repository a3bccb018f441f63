#pragma once
// RGBA pictures to RGB565 with 4-bit alpha, each channel rounded to the nearest level.
//
// This is the only step of the encoder that loses colour: what it gives is what every decoder
// shows. A pixel whose alpha level comes out as 0 becomes black, so that hidden colours cost
// nothing and a transparent tile is the format's empty tile.

#include <cstdint>

#include "tools/clip/frame.h"

namespace maker {

struct QuantiseOptions {
    bool alpha = false;   // keep the alpha channel; else it is ignored
    bool dither = false;  // spread the rounding error over an 8 x 8 threshold pattern
};

// `rgba` holds 640 x height x 4 bytes.
void quantise(const uint8_t* rgba, int height, const QuantiseOptions& options, Frame& frame);

}  // namespace maker
