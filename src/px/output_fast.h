#pragma once
// Whole pictures onto an output surface: mixed, keyed or as they are. The result is, to the bit,
// that of a function of px/kernels.h and placeRow() row by row, and that is what happens on most
// surfaces; onto a doubled one of 1280 pixels by 720 and more it is one pass over the pixels.
//
// `bottom`, `top` and `frame` are 640 x 360 pixels, `alpha` as many levels of 0 to 15.

#include <cstdint>

#include "px/output.h"

namespace px::fast {

enum class Mix { kBlend, kAdd, kMultiply };

void placePicture(const OutputView& view, const uint16_t* frame);

// Both layers stay as they are.
void mixPicture(const OutputView& view, Mix mix, const uint16_t* bottom, const uint16_t* top);

// Keys `top` over `bottom`, where the result stays: by `alpha`, or by black when that is null.
void keyPicture(const OutputView& view, uint16_t* bottom, const uint16_t* top,
                const uint8_t* alpha);

}  // namespace px::fast
