#pragma once
// The letters of the demo loops.
//
// Texts are in the interface's bitmap letters, in whole pixels: capitals are seven pixels high,
// descenders reach two below the line. A scale of 1 is the interface's small size, 2 its large one.
//
// Words are in the display letters, a heavy, round-shouldered alphabet on a 10-unit height. It has
// A, C, D, E, I, L, M, N, O, P, R, T, U, V, X and Y; any other character is a blank. A place gives
// where the top left corner of the word stands and how one unit across and one unit down lie on the
// picture, so words can be scaled, slanted and squeezed.

#include <string_view>

#include "art/loops/canvas.h"

namespace demo {

int textWidth(std::string_view text, int scale);  // no gap after the last letter

// `top` is the upper edge of the capitals.
void drawText(Canvas& canvas, std::string_view text, int left, int top, int scale, Colour colour);
void drawTextCentred(Canvas& canvas, std::string_view text, int middle, int top, int scale,
                     Colour colour);

struct Placement {
    Point origin;
    Point across;  // one unit to the right
    Point down;    // one unit down
};

inline constexpr float kLetterHeight = 10.0F;  // units
inline constexpr float kLetterGap = 1.0F;

float letterWidth(char letter);          // units, without a gap
float wordWidth(std::string_view word);  // units, gaps only between letters

// Adds the outlines of one letter to a path.
void addLetter(Path& path, char letter, const Placement& place);
void drawWord(Canvas& canvas, std::string_view word, Placement place, Colour colour);

}  // namespace demo
