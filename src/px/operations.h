#pragma once
// A way of doing pixels: what the mixer does to them, as a table of functions. Every way writes the
// same pixels to the bit. The plain way is the contract, and complete; another one has functions of
// its own where they are faster, and the plain ones elsewhere.
//
// Pixels are RGB565. Frames and layers are 640 x 360 pixels, row-major, 640 pixels a row. "/" in a
// rule truncates toward zero.

#include <cstdint>

#include "px/filters.h"
#include "px/modes.h"
#include "px/output.h"

namespace px {

// Two layers, or runs of pixels of both.
struct Layers {
    uint16_t* bottom;  // a mix in place leaves its result here
    const uint16_t* top;
    const uint8_t* alpha;  // of the top layer, 0 to 15 a pixel; null when it has none

    Layers from(int pixel) const {
        return {bottom + pixel, top + pixel, alpha != nullptr ? alpha + pixel : nullptr};
    }
};

// The rules stand in kernels.cpp.
struct Mix {
    // A row, or a part of one; `out` may equal `bottom`. Null where a mode mixes nothing.
    void (*pixels)(uint16_t* out, const Layers& layers, int count);
    bool inPlace;  // a picture's result stays in the bottom layer
    // A picture onto the surface that takesDoubled() means, in one pass. Null where the way has
    // none, false where it was not done.
    bool (*doubled)(const OutputView& view, const Layers& layers);
};

// Flash and fade, level 1 to 15, in place. The rules stand in kernels.cpp.
using Transition = void (*)(uint16_t* pixels, int count, int level);

// What an effect is told beside the frame, which it rewrites in place.
struct Setting {
    int direction;         // 0 to 3
    int offset;            // SCROLL: what nextScrollOffset() said
    const uint8_t* noise;  // SNOW: snowEntries(direction) levels of 0 to 19
};
// The rules stand in fx.cpp.
using Effect = void (*)(uint16_t* frame, const Setting& setting);

struct Operations {
    const char* name;
    Mix mixes[kMixModes];  // by MixMode
    Transition flash;
    Transition fade;
    Effect effects[kFilterIds];  // by FilterId, null where there is nothing to do
    // As Mix::doubled, of one frame.
    bool (*placeDoubled)(const OutputView& view, const uint16_t* frame);
    // Makes `wide` the `count` pixels widened (widen.h). False when they stood there already: then
    // nothing is written. The two do not overlap.
    bool (*widenChanged)(uint32_t* wide, const uint16_t* pixels, int count);

    // Whole pictures onto any surface: px::placePicture() and what comes to the same as mixing row
    // by row and px::placeRow().
    void placePicture(const OutputView& view, const uint16_t* frame) const;
    void mixPicture(const OutputView& view, int mode, const Layers& layers) const;
};

const Operations& plain();

// The fastest way that the processor has: the widest vectors, on 32-bit Arm without them pairs of
// pixels in plain registers, else the plain way. Found out at the first call.
const Operations& operations();

}  // namespace px
