// Run records into lines of 64 pixels, and lines into tiles: what clip/tile_fast.cpp draws with.
// Included once for every vector width that is compiled, so there is no #pragma once; only
// tile_fast.cpp includes it.
//
// Decoders read kMaxRecordBytes at most, whatever the bytes are, and a line has room for all that
// they can make of them.
#if defined(VELMORA_TILE_LINES_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMORA_TILE_LINES_INL_H
#undef VELMORA_TILE_LINES_INL_H
#else
#define VELMORA_TILE_LINES_INL_H
#endif

#include <algorithm>
#include <array>
#include <cstring>

#include "clip/paint.h"
#include "clip/tile_fast.h"
#include "common/bytes.h"

#ifdef VELMORA_HIGHWAY
#include <hwy/highway.h>
#else
#undef HWY_NAMESPACE
#undef HWY_BEFORE_NAMESPACE
#undef HWY_AFTER_NAMESPACE
#undef HWY_MAX_BYTES
#define HWY_NAMESPACE          basic_set
#define HWY_BEFORE_NAMESPACE() static_assert(true)
#define HWY_AFTER_NAMESPACE()  static_assert(true)
#define HWY_MAX_BYTES          16
#endif

HWY_BEFORE_NAMESPACE();
namespace clip::fast::HWY_NAMESPACE {

// The compiler's own vectors: a row of a tile, and as much as the processor writes at once.
using Row = uint16_t __attribute__((vector_size(16)));
template <int pixels>
using Pixels = uint16_t
    __attribute__((vector_size(std::min<int>(HWY_MAX_BYTES, pixels* int{sizeof(uint16_t)}))));

// The 64 pixels of a tile in painting order. Runs are written in whole vectors, so what stands
// behind the 64th pixel is left over: the last run of the longest kind starts at pixel 96 and
// writes 64.
inline constexpr int kLinePixels = 96 + kTilePixels;
struct alignas(64) TileLine {
    uint16_t pixels[kLinePixels];
};

template <int count>
void fill(uint16_t* out, uint16_t colour) {
    const Pixels<count> vector = Pixels<count>{} + colour;
    for (size_t i = 0; i < count * sizeof colour; i += sizeof vector) {
        memcpy(reinterpret_cast<uint8_t*>(out) + i, &vector, sizeof vector);
    }
}

// A row at any address. GCC makes two 64-bit words of a memcpy from memory to memory, and on Arm an
// addition of most addresses. The attribute stands in front, where Clang lowers the alignment too.
using RowAnywhere __attribute__((aligned(1), may_alias)) = Row;
static_assert(alignof(RowAnywhere) == 1);

inline Row load(const void* pixels) {
    return *static_cast<const RowAnywhere*>(pixels);
}

inline void store(uint16_t* out, Row row) {
    *reinterpret_cast<RowAnywhere*>(out) = row;
}

// As many levels as a run has at most, four in a word: without vectors, putting them together one
// by one takes three times the instructions.
using LevelRun = uint32_t __attribute__((vector_size(16)));
using LevelRunAnywhere __attribute__((aligned(1), may_alias)) = LevelRun;
using LevelRow = uint8_t __attribute__((vector_size(kTileSize)));
using LevelRowAnywhere __attribute__((aligned(1), may_alias)) = LevelRow;
static_assert(alignof(LevelRunAnywhere) == 1 && alignof(LevelRowAnywhere) == 1);

inline void fillLevelRun(uint8_t* out, unsigned level) {
    constexpr uint32_t kFourLevels = 0x01010101;
    *reinterpret_cast<LevelRunAnywhere*>(out) = LevelRun{} + level * kFourLevels;
}

inline void copyLevelRow(uint8_t* out, const uint8_t* levels) {
    *reinterpret_cast<LevelRowAnywhere*>(out) = *reinterpret_cast<const LevelRowAnywhere*>(levels);
}

inline Row lowHalves(Row a, Row b) {
    return __builtin_shufflevector(a, b, 0, 8, 1, 9, 2, 10, 3, 11);
}
inline Row highHalves(Row a, Row b) {
    return __builtin_shufflevector(a, b, 4, 12, 5, 13, 6, 14, 7, 15);
}
inline Row reversed(Row row) {
    return __builtin_shufflevector(row, row, 7, 6, 5, 4, 3, 2, 1, 0);
}

// Three rounds of interleaving row i with row i + 4 exchange rows and columns.
inline void transpose(Row rows[kTileSize]) {
    for (int round = 0; round < 3; ++round) {
        Row next[kTileSize];
        for (int i = 0; i < kTileSize / 2; ++i) {
            next[2 * i] = lowHalves(rows[i], rows[i + 4]);
            next[2 * i + 1] = highHalves(rows[i], rows[i + 4]);
        }
        memcpy(rows, next, sizeof next);
    }
}

// A colour of either width: both are read, one is taken. By a mask, which is 0 for RGB565 and all
// bits for an index, since compilers make branches of anything else, and nothing foretells them.
inline uint16_t colourAt(const uint8_t* at, const uint16_t* palette, unsigned indexed) {
    const unsigned fromPalette = palette[at[0]];
    const unsigned direct = le16(at);
    return static_cast<uint16_t>(direct ^ ((direct ^ fromPalette) & indexed));
}

// The decoders write the runs of a record to a line and return the record's end. Up to 32 pixels a
// run, and a fourth that covers the rest. Two runs reach pixel 64 at most, three pixel 96. Colours
// that the record does not have are read all the same and painted behind the tile.
inline const uint8_t* decodeFourRuns(const uint8_t* record, const uint16_t* palette,
                                     uint16_t* line) {
    const unsigned header = be16(record);
    const unsigned indexed = header >> 15;
    const unsigned width = 2 - indexed;
    const unsigned second = (header & 31) + 1;
    const unsigned third = second + (header >> 5 & 31) + 1;
    const unsigned fourth = third + (header >> 10 & 31) + 1;
    const uint8_t* const colours = record + 2;
    fill<32>(line, colourAt(colours, palette, 0 - indexed));
    fill<32>(line + second, colourAt(colours + width, palette, 0 - indexed));
    fill<32>(line + third, colourAt(colours + 2 * width, palette, 0 - indexed));
    fill<64>(line + fourth, colourAt(colours + 3 * width, palette, 0 - indexed));
    return colours + width * (2u + (third < kTilePixels) + (fourth < kTilePixels));
}

// Where decoding a record of groups of two runs stands. A group is decoded whole, also when its
// first run ends the tile: the second is painted behind it then, and the record is shorter.
struct Groups {
    const uint8_t* at;
    unsigned covered = 0;          // pixels of the line
    const uint8_t* end = nullptr;  // of the record, when the line is full
};

// What a control byte of short runs says.
struct ShortControl {
    uint8_t first;          // pixels of the first run
    uint8_t both;           // and of both
    uint8_t second;         // where the second colour stands in the group
    uint8_t bytes;          // of the group
    uint16_t firstIndexed;  // all bits set for a palette index
    uint16_t secondIndexed;
};

inline constexpr auto kShortControls = [] {
    std::array<ShortControl, 256> controls{};
    for (unsigned control = 0; control < controls.size(); ++control) {
        const unsigned first = (control >> 5) + 1;
        const unsigned indexed[] = {control >> 1 & 1, control & 1};
        controls[control] = {static_cast<uint8_t>(first),
                             static_cast<uint8_t>(first + (control >> 2 & 7) + 1),
                             static_cast<uint8_t>(3 - indexed[0]),
                             static_cast<uint8_t>(5 - indexed[0] - indexed[1]),
                             static_cast<uint16_t>(0u - indexed[0]),
                             static_cast<uint16_t>(0u - indexed[1])};
    }
    return controls;
}();

struct ShortRuns {  // of 1 to 8 pixels
    [[gnu::always_inline]] static void decode(Groups& groups, const uint16_t* palette,
                                              uint16_t* line) {
        const ShortControl& control = kShortControls[groups.at[0]];
        const uint8_t* const second = groups.at + control.second;
        const unsigned afterFirst = groups.covered + control.first;
        fill<8>(line + groups.covered, colourAt(groups.at + 1, palette, control.firstIndexed));
        fill<8>(line + afterFirst, colourAt(second, palette, control.secondIndexed));
        groups.covered += control.both;
        groups.at += control.bytes;
        groups.end = afterFirst < kTilePixels ? groups.at : second;
    }
};

struct PaletteRuns {  // of 1 to 16 pixels; the first two groups cover 64 pixels at most
    [[gnu::always_inline]] static void decode(Groups& groups, const uint16_t* palette,
                                              uint16_t* line) {
        const unsigned control = groups.at[0];
        const unsigned afterFirst = groups.covered + (control >> 4) + 1;
        fill<16>(line + groups.covered, palette[groups.at[1]]);
        fill<16>(line + afterFirst, palette[groups.at[2]]);
        groups.covered = afterFirst + (control & 15) + 1;
        groups.at += 3;
        groups.end = afterFirst < kTilePixels ? groups.at : groups.at - 1;
    }
};

inline const uint8_t* decodeTwoColours(const uint8_t* record, const uint16_t* palette,
                                       uint16_t* line) {
    const unsigned control = record[0];
    const unsigned firstIndexed = control >> 6 & 1;
    const unsigned secondIndexed = control >> 7;
    const uint8_t* const second = record + 3 - firstIndexed;
    fill<64>(line, colourAt(record + 1, palette, 0 - firstIndexed));
    fill<64>(line + (control & 63) + 1, colourAt(second, palette, 0 - secondIndexed));
    return second + 2 - secondIndexed;
}

// Where the rows of a line are read from and where the rows of the tile are written to, and how far
// it is to the next one, backward from the last row or not.
struct Steps {
    int from;
    int fromStep;
    int out;
    int outStep;
};

// Walking columns, the lines of the tile are its columns: their order is that of the rows read, and
// walking them from below writes the rows from below.
constexpr Steps stepsOf(Walk walk) {
    constexpr int kLast = kTileSize - 1;
    const bool lineBackward = walk.columns && walk.lastFirst;
    const bool tileBackward = walk.columns ? walk.lineReverse : walk.lastFirst;
    return {lineBackward ? kLast * kTileSize : 0, lineBackward ? -kTileSize : kTileSize,
            tileBackward ? kLast * kFrameWidth : 0, tileBackward ? -kFrameWidth : kFrameWidth};
}

inline constexpr auto kSteps = [] {
    std::array<Steps, 2 * kWalkCodes> steps{};
    for (size_t i = 0; i < steps.size(); ++i) {
        steps[i] = stepsOf(kWalks[i / 2][i % 2]);
    }
    return steps;
}();

template <Turn turn>
void turnLine(const uint16_t* line, const Steps& steps, uint16_t* out) {
    Row rows[kTileSize];
    const uint16_t* from = line + steps.from;
    for (int row = 0; row < kTileSize; ++row, from += steps.fromStep) {
        rows[row] = load(from);
    }
    if constexpr (turn == Turn::kTransposed) {
        transpose(rows);
    }
    out += steps.out;
    for (int row = 0; row < kTileSize; ++row, out += steps.outStep) {
        store(out, turn == Turn::kReversed ? reversed(rows[row]) : rows[row]);
    }
}

}  // namespace clip::fast::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
