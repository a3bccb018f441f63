#include "clip/tile_fast.h"

#include <cstring>

#include "common/bytes.h"

namespace clip::fast {

namespace {

// A row of a tile. Every processor that matters has vectors of this size in its basic set, so the
// compiler's own vectors will do.
using Row = uint16_t __attribute__((vector_size(16)));

Row load(const uint16_t* pixels) {
    Row row;
    memcpy(&row, pixels, sizeof row);
    return row;
}

void store(uint16_t* out, Row row) {
    memcpy(out, &row, sizeof row);
}

// `rows` x 8 pixels of one colour.
template <int rows>
void fill(uint16_t* out, uint16_t colour) {
    const Row row = Row{} + colour;
    for (int i = 0; i < rows; ++i) {
        store(out + i * kTileSize, row);
    }
}

Row lowHalves(Row a, Row b) {
    return __builtin_shufflevector(a, b, 0, 8, 1, 9, 2, 10, 3, 11);
}
Row highHalves(Row a, Row b) {
    return __builtin_shufflevector(a, b, 4, 12, 5, 13, 6, 14, 7, 15);
}
Row reversed(Row row) {
    return __builtin_shufflevector(row, row, 7, 6, 5, 4, 3, 2, 1, 0);
}

// Three rounds of interleaving row i with row i + 4 exchange rows and columns.
void transpose(Row rows[kTileSize]) {
    for (int round = 0; round < 3; ++round) {
        Row next[kTileSize];
        for (int i = 0; i < kTileSize / 2; ++i) {
            next[2 * i] = lowHalves(rows[i], rows[i + 4]);
            next[2 * i + 1] = highHalves(rows[i], rows[i + 4]);
        }
        memcpy(rows, next, sizeof next);
    }
}

// A colour of either width: both are read, one is taken.
struct RecordCursor {
    const uint8_t* at;
    const uint16_t* palette;

    uint16_t colour(unsigned indexed) {
        const unsigned fromPalette = palette[at[0]];
        const unsigned direct = le16(at);
        at += 2 - indexed;
        return static_cast<uint16_t>(direct ^ ((direct ^ fromPalette) & (0u - indexed)));
    }
};

// Writes run `i` of the list and `rows` x 8 pixels of the line; returns where the next run starts.
template <int rows>
int addRun(TileRuns& runs, TileLine& line, int i, int start, unsigned length, uint16_t colour) {
    runs.lengths[i] = static_cast<uint16_t>(length);
    runs.colours[i] = colour;
    fill<rows>(line.pixels + start, colour);
    return start + static_cast<int>(length) + 1;
}

// Runs of 1 to 8 pixels: one vector each. Both runs of a group are read, also when the first one
// ends the tile: nothing of the second is painted then, and the record is shorter.
size_t decodeShortRuns(RecordCursor cursor, TileRuns& runs, TileLine& line) {
    const uint8_t* const record = cursor.at;
    const uint8_t* afterFirst = record;
    int covered = 0;
    int coveredByFirst = 0;
    for (int i = 0; covered < kTilePixels; i += 2) {
        const unsigned control = *cursor.at++;
        const uint16_t first = cursor.colour(control >> 1 & 1);
        afterFirst = cursor.at;
        const uint16_t second = cursor.colour(control & 1);
        coveredByFirst = addRun<1>(runs, line, i, covered, control >> 5, first);
        covered = addRun<1>(runs, line, i + 1, coveredByFirst, control >> 2 & 7, second);
    }
    return static_cast<size_t>((coveredByFirst < kTilePixels ? cursor.at : afterFirst) - record);
}

// Runs of 1 to 16 pixels: two vectors each, read like short ones. The first two groups are always
// complete; they cover 64 pixels at most.
size_t decodePaletteRuns(RecordCursor cursor, TileRuns& runs, TileLine& line) {
    const uint8_t* at = cursor.at;
    int covered = 0;
    int coveredByFirst = 0;
    for (int i = 0; covered < kTilePixels; i += 2, at += 3) {
        const unsigned control = at[0];
        coveredByFirst = addRun<2>(runs, line, i, covered, control >> 4, cursor.palette[at[1]]);
        covered = addRun<2>(runs, line, i + 1, coveredByFirst, control & 15, cursor.palette[at[2]]);
    }
    return static_cast<size_t>(at - cursor.at) - (coveredByFirst < kTilePixels ? 0 : 1);
}

// Up to 32 pixels a run, and a fourth that covers the rest. Two runs reach pixel 64 at most, three
// pixel 96. Colours that the record does not have are read all the same and painted behind the
// tile.
size_t decodeFourRuns(RecordCursor cursor, TileRuns& runs, TileLine& line) {
    const unsigned header = be16(cursor.at);
    const unsigned indexed = header >> 15;
    cursor.at += 2;
    runs.lengths[0] = header & 31;
    runs.lengths[1] = header >> 5 & 31;
    runs.lengths[2] = header >> 10 & 31;
    const int pair = runs.lengths[0] + runs.lengths[1] + 2;
    const int three = pair + runs.lengths[2] + 1;
    // Deliberate: the last run comes out one pixel longer than what is left of the tile.
    // [quirk_last_of_four_runs_is_one_too_long]
    runs.lengths[3] = static_cast<uint16_t>(kTilePixels - three);
    uint16_t* at = line.pixels;
    for (int run = 0; run < 3; ++run) {
        runs.colours[run] = cursor.colour(indexed);
        fill<4>(at, runs.colours[run]);
        at += runs.lengths[run] + 1;
    }
    runs.colours[3] = cursor.colour(indexed);
    fill<8>(at, runs.colours[3]);
    const unsigned colours = 2u + (pair < kTilePixels) + (three < kTilePixels);
    return 2 + colours * (2 - indexed);
}

size_t decodeTwoColours(RecordCursor cursor, TileRuns& runs, TileLine& line) {
    const uint8_t* const record = cursor.at;
    const unsigned control = *cursor.at++;
    const unsigned split = control & 63;
    runs.lengths[0] = static_cast<uint16_t>(split);
    runs.lengths[1] = static_cast<uint16_t>(62 - split);
    runs.colours[0] = cursor.colour(control >> 6 & 1);
    runs.colours[1] = cursor.colour(control >> 7);
    fill<8>(line.pixels, runs.colours[0]);
    fill<8>(line.pixels + split + 1, runs.colours[1]);
    return static_cast<size_t>(cursor.at - record);
}

// How a code goes through a tile: where the rows of the line are read from and where the rows of
// the tile are written to, and how far it is to the next one, backward from the last row or not.
struct Way {
    Turn turn;
    int from;
    int fromStep;
    int out;
    int outStep;
};

constexpr Way wayOf(Turn turn, bool lineBackward, bool tileBackward) {
    constexpr int kLast = kTileSize - 1;
    return {turn, lineBackward ? kLast * kTileSize : 0, lineBackward ? -kTileSize : kTileSize,
            tileBackward ? kLast * kFrameWidth : 0, tileBackward ? -kFrameWidth : kFrameWidth};
}

// Walking columns, the lines of the tile are its columns: their order is that of the rows read, and
// walking them from below writes the rows from below.
constexpr Way wayOf(bool columns, bool stepsBackward, bool lastFirst) {
    if (columns) {
        return wayOf(Turn::kTransposed, lastFirst, stepsBackward);
    }
    return wayOf(stepsBackward ? Turn::kReversed : Turn::kStraight, false, lastFirst);
}

constexpr Way kWays[CODE_LAST_RECORD][2] = {
    {wayOf(false, false, false), wayOf(true, false, false)},
    {wayOf(false, true, false), wayOf(true, false, true)},
    {wayOf(false, false, true), wayOf(true, true, false)},
    {wayOf(false, true, true), wayOf(true, true, true)},
    {wayOf(true, true, false), wayOf(false, false, true)},
    {wayOf(true, true, true), wayOf(false, true, true)},
};

}  // namespace

size_t drawPaletteTile(const uint8_t* record, const uint16_t* palette, uint16_t* out) {
    for (int row = 0; row < kTileSize; ++row) {
        const uint8_t* i = record + row * kTileSize;
        const Row colours = {palette[i[0]], palette[i[1]], palette[i[2]], palette[i[3]],
                             palette[i[4]], palette[i[5]], palette[i[6]], palette[i[7]]};
        store(out + row * kFrameWidth, colours);
    }
    return kTilePixels;
}

size_t decodeRuns(const uint8_t* record, int colourType, const uint16_t* palette, TileRuns& runs,
                  TileLine& line) {
    switch (colourType & ~1) {
        case TYPE_FOUR_RUNS:
            return decodeFourRuns({record, palette}, runs, line);
        case TYPE_SHORT_RUNS:
            return decodeShortRuns({record, palette}, runs, line);
        case TYPE_PALETTE_RUNS:
            return decodePaletteRuns({record, palette}, runs, line);
        default:
            return decodeTwoColours({record, palette}, runs, line);
    }
}

void decodeAlpha(const uint8_t* record, uint8_t* levels) {
    constexpr int kLongestRun = 16;
    const uint8_t first = record[0];
    if ((first & kAlphaFlatBit) != 0) {
        memset(levels, first & 15, kTilePixels);
        return;
    }
    uint8_t line[kTilePixels + kLongestRun];
    int covered = 0;
    while (covered < kTilePixels) {
        const uint8_t run = *++record;
        memset(line + covered, run & 15, kLongestRun);
        covered += (run >> 4) + 1;
    }
    memcpy(levels, line, kTilePixels);
}

namespace {

// `turn` is known when it is compiled, so that nothing is asked tile by tile.
template <Turn turn>
void turnLine(const LineTask& task) {
    Row rows[kTileSize];
    const uint16_t* from = task.from;
    for (int row = 0; row < kTileSize; ++row, from += task.fromStep) {
        rows[row] = load(from);
    }
    if constexpr (turn == Turn::kTransposed) {
        transpose(rows);
    }
    uint16_t* out = task.out;
    for (int row = 0; row < kTileSize; ++row, out += task.outStep) {
        store(out, turn == Turn::kReversed ? reversed(rows[row]) : rows[row]);
    }
}

template <Turn turn>
void turnLines(const LineTask* tasks, int& count) {
    for (int i = 0; i < count; ++i) {
        turnLine<turn>(tasks[i]);
    }
    count = 0;
}

}  // namespace

void LinePainter::paint(uint16_t* out, int code, int columnOrder) {
    const Way& way = kWays[code - CODE_FIRST_RECORD][columnOrder];
    const auto turn = static_cast<int>(way.turn);
    tasks_[turn][taskCounts_[turn]++] = {line().pixels + way.from, out + way.out, way.fromStep,
                                         way.outStep};
    if (++count_ == kLines) {
        flush();
    }
}

void LinePainter::flush() {
    turnLines<Turn::kStraight>(tasks_[0], taskCounts_[0]);
    turnLines<Turn::kReversed>(tasks_[1], taskCounts_[1]);
    turnLines<Turn::kTransposed>(tasks_[2], taskCounts_[2]);
    count_ = 0;
}

}  // namespace clip::fast
