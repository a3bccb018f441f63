#pragma once
// The filter effects on one frame: 640 x 360 pixels of RGB565, row-major, 640 pixels a row,
// rewritten in place. Plain functions: which slot, which direction and where the snow comes from is
// the caller's business. Directions are 0 to 3.
//
// Two measures of a pixel: weight L = 2 r + g + 2 b (0 to 187), intensity S = r + g / 2 + b (0 to
// 93).

#include <cstdint>

namespace px {

// Photographic negative.
void invertFrame(uint16_t* frame);

// Two tones: black where L is below 90, else the direction's colour: light grey, red, green,
// yellow; black for any other direction.
void burnFrame(uint16_t* frame, int direction);

// Brightness noise. Pixel i takes entry (i + 1) mod `entries` of the table, t = 0 to 19, and gains
// t - 10 in red and blue and 2 t - 20 in green, each held in its range.
void snowFrame(uint16_t* frame, const uint8_t* table, int entries);

// Entries of the snow table for a direction: 497, 313, 29, 7.
int snowEntries(int direction);

// The centre, 320 x 180 pixels from column 160 of row 90 on, enlarged twice. Direction 0 fills the
// frame; any other writes the even columns of the even rows only.
void zoomFrame(uint16_t* frame, int direction);

// Four shades of green by L: up to 45, 90, 135 and above.
void gameBoyFrame(uint16_t* frame);

// One half mirrored over the other: 0 keeps the bottom, 1 the left, 2 the top, 3 the right.
void mirrorFrame(uint16_t* frame, int direction);

// Monochrome by S: 0 grey, 1 red, 2 green, 3 yellow.
void hueFrame(uint16_t* frame, int direction);

// The scroll offset of the next frame from the last one's (any 16-bit value): two pixels on (1, 2)
// or back (0, 3) unless `hold`, wrapped for the direction.
int nextScrollOffset(int offset, int direction, bool hold);

// Rotates the frame right by `offset` pixels (directions 1, 3; at most 640) or down by `offset`
// rows (0, 2; at most 360).
void scrollFrame(uint16_t* frame, int direction, int offset);

}  // namespace px
