#pragma once
// Decodes and paints tiles in the time that a frame has: the same results as the functions of
// clip/tile.h and clip/paint.h, whose contracts hold here too.
//
// A tile of runs becomes a line first, its 64 pixels in painting order, and the line is turned onto
// the frame a row of 8 pixels at a time. Records are read without branching on the width of their
// colours, up to 8 bytes past their end, which the room promised by clip/tile.h allows.

#include <cstddef>
#include <cstdint>

#include "clip/tile.h"

namespace clip::fast {

// The pixels of a tile in painting order. Runs are written in whole vectors, so what stands behind
// the 64th pixel is left over: the last run of the longest kind starts at pixel 96 and writes 64.
struct TileLine {
    uint16_t pixels[96 + kTilePixels];
};

size_t drawPaletteTile(const uint8_t* record, const uint16_t* palette, uint16_t* out);

// As decodeRuns(), and the runs as a line.
size_t decodeRuns(const uint8_t* record, int colourType, const uint16_t* palette, TileRuns& runs,
                  TileLine& line);

void decodeAlpha(const uint8_t* record, uint8_t* levels);

// What becomes of the rows of a line before they are the rows of a tile.
enum class Turn { kStraight, kReversed, kTransposed };
inline constexpr int kTurns = 3;

struct LineTask {
    const uint16_t* from;  // the first row of 8 pixels
    uint16_t* out;         // where it goes
    int fromStep;          // pixels to the next one
    int outStep;
};

// Paints lines into a frame as paintRuns() paints their runs, some time after they were decoded: a
// line is read back in other pieces than it was written in, which waits for the writes when it
// comes at once, and lines that go the same way through their tiles are painted together.
class LinePainter {
public:
    // Where the next line is to be decoded.
    TileLine& line() { return lines_[count_]; }

    // line() is complete: it goes to the tile at `out` by `code` and `columnOrder` when its turn
    // comes, flush() at the latest.
    void paint(uint16_t* out, int code, int columnOrder);
    void flush();

private:
    static constexpr int kLines = 24;

    TileLine lines_[kLines];
    LineTask tasks_[kTurns][kLines];
    int taskCounts_[kTurns] = {};
    int count_ = 0;
};

}  // namespace clip::fast
