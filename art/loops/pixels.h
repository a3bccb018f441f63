#pragma once
// The interface's bitmap letters on a canvas of the demo loops, in whole pixels.
//
// The glyphs are those of art/font, read when this is compiled: ASCII, capitals seven pixels high,
// descenders two below the line. A scale of 1 is the interface's small size, 2 its large one. A
// character that the sheets do not have takes no room and draws nothing.

#include <string_view>

#include "art/loops/canvas.h"

namespace demo {

inline constexpr int kCapitalRows = 7;

int pixelTextWidth(std::string_view text, int scale);  // no gap after the last letter

// `top` is the upper edge of the capitals.
void drawPixelText(Canvas& canvas, std::string_view text, int left, int top, int scale,
                   Color color);
void drawPixelTextCentred(Canvas& canvas, std::string_view text, int middle, int top, int scale,
                          Color color);

}  // namespace demo
