#pragma once
// The interface's bitmap letters on a canvas of the demo loops, in whole pixels.
//
// Capitals are seven pixels high, descenders reach two below the line. A scale of 1 is the
// interface's small size, 2 its large one.

#include <string_view>

#include "art/loops/canvas.h"

namespace demo {

int textWidth(std::string_view text, int scale);  // no gap after the last letter

// `top` is the upper edge of the capitals.
void drawText(Canvas& canvas, std::string_view text, int left, int top, int scale, Colour colour);
void drawTextCentred(Canvas& canvas, std::string_view text, int middle, int top, int scale,
                     Colour colour);

}  // namespace demo
