#pragma once
// The display letters of the demo loops: a heavy, round-shouldered alphabet on a 10-unit height.
//
// Letters have A, C, D, E, I, L, M, N, O, P, R, T, U, V, X and Y; any other character is a blank.
// A place gives where the top left corner of the word stands and how one unit across and one unit
// down lie on the picture, so words can be scaled, slanted and squeezed.

#include <string_view>

#include "art/loops/canvas.h"

namespace demo {

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
