#pragma once
// Tile records: how many bytes a tile takes in each of the ten colour types, and the bytes.
//
// Types 0 and 1 hold a picture row by row; types 2-9 hold a sequence, 64 colours in the order of
// some walk, as runs (run-length coding). The pairs of run types share their layout: a RunForm
// stands for the even type of its pair, and the caller adds 1 for the odd one. Alpha records follow
// a colour record and always stand row by row.

#include <cstdint>
#include <vector>

#include "tools/clip/encoder/frame.h"
#include "tools/clip/encoder/palette.h"

namespace maker {

struct Run {
    uint16_t colour;
    int length;
};

// The smallest run form of a sequence.
struct RunForm {
    int type;   // 2, 4, 6 or 8
    int bytes;  // of the colour record
};

// Splits a sequence into its longest runs, at most 64 of them; gives their number.
int findRuns(const Sequence& sequence, Run* runs);

RunForm smallestRunForm(const Run* runs, int count, const PaletteIndex& palette);

// Appends the colour record of a run form that smallestRunForm gave for the same runs.
void appendRuns(int type, const Run* runs, int count, const PaletteIndex& palette,
                std::vector<uint8_t>& out);

// TYPE_PALETTE when every colour of the picture is in the palette, else TYPE_RAW.
int plainType(const Sequence& picture, const PaletteIndex& palette);
int plainBytes(int type);
void appendPlain(int type, const Sequence& picture, const PaletteIndex& palette,
                 std::vector<uint8_t>& out);

inline constexpr size_t kAlphaRunLongest = 16;
int alphaBytes(const AlphaTile& alpha);
void appendAlpha(const AlphaTile& alpha, std::vector<uint8_t>& out);

// A shortest record of type 0 to 19 that any block may hold: palette entry 0 all over, opaque. It
// takes up a record number that no tile uses.
void appendFiller(int type, std::vector<uint8_t>& out);

}  // namespace maker
