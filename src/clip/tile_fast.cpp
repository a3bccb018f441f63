#include "clip/tile_fast.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "clip/paint.h"
#include "common/bytes.h"

#ifdef VELMORA_HIGHWAY
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "clip/tile_fast.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>
#else
#define HWY_NAMESPACE          basic_set
#define HWY_BEFORE_NAMESPACE() static_assert(true)
#define HWY_AFTER_NAMESPACE()  static_assert(true)
#define HWY_MAX_BYTES          16
#define HWY_ONCE               1
#endif

HWY_BEFORE_NAMESPACE();
namespace clip::fast::HWY_NAMESPACE {

namespace {

// The compiler's own vectors: a row of a tile, and as much as the processor writes at once.
using Row = uint16_t __attribute__((vector_size(16)));
template <int pixels>
using Pixels = uint16_t
    __attribute__((vector_size(std::min<int>(HWY_MAX_BYTES, pixels* int{sizeof(uint16_t)}))));

// The 64 pixels of a tile in painting order. Runs are written in whole vectors, so what stands
// behind the 64th pixel is left over: the last run of the longest kind starts at pixel 96 and
// writes 64.
constexpr int kLinePixels = 96 + kTilePixels;
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

Row load(const void* pixels) {
    Row row;
    memcpy(&row, pixels, sizeof row);
    return row;
}

void store(uint16_t* out, Row row) {
    memcpy(out, &row, sizeof row);
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

// A colour of either width: both are read, one is taken. By a mask, which is 0 for RGB565 and all
// bits for an index, since compilers make branches of anything else, and nothing foretells them.
uint16_t colourAt(const uint8_t* at, const uint16_t* palette, unsigned indexed) {
    const unsigned fromPalette = palette[at[0]];
    const unsigned direct = le16(at);
    return static_cast<uint16_t>(direct ^ ((direct ^ fromPalette) & indexed));
}

// The decoders write the runs of a record to a line and return the record's end. Up to 32 pixels a
// run, and a fourth that covers the rest. Two runs reach pixel 64 at most, three pixel 96. Colours
// that the record does not have are read all the same and painted behind the tile.
const uint8_t* decodeFourRuns(const uint8_t* record, const uint16_t* palette, uint16_t* line) {
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

// Where decoding a record of groups of two runs stands.
struct Groups {
    const uint8_t* at;
    unsigned covered = 0;          // pixels of the line
    const uint8_t* end = nullptr;  // of the record, when the line is full
};

// Groups are decoded whole, also when their first run ends the tile: the second is painted behind
// it then, and the record is shorter.
// What a control byte of short runs says.
struct ShortControl {
    uint8_t first;          // pixels of the first run
    uint8_t both;           // and of both
    uint8_t second;         // where the second colour stands in the group
    uint8_t bytes;          // of the group
    uint16_t firstIndexed;  // all bits set for a palette index
    uint16_t secondIndexed;
};

constexpr auto kShortControls = [] {
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

const uint8_t* decodeTwoColours(const uint8_t* record, const uint16_t* palette, uint16_t* line) {
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

constexpr auto kSteps = [] {
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

// Tiles of one kind, `ends` gets where their colours end.
struct Batch {
    const TileTask* tasks;
    int count;
    TileTarget target;
    const uint8_t* ends[kMostTogether];
};

void drawRaw(Batch& batch) {
    static_assert(std::endian::native == std::endian::little, "colours are copied as they are");
    for (int i = 0; i < batch.count; ++i) {
        const uint8_t* at = batch.tasks[i].record;
        uint16_t* out = batch.target.frame + batch.tasks[i].offset;
        for (int row = 0; row < kTileSize; ++row, at += sizeof(Row), out += kFrameWidth) {
            store(out, load(at));
        }
        batch.ends[i] = at;
    }
}

void drawPalette(Batch& batch) {
    const uint16_t* const palette = batch.target.palette;
    for (int i = 0; i < batch.count; ++i) {
        const uint8_t* at = batch.tasks[i].record;
        uint16_t* out = batch.target.frame + batch.tasks[i].offset;
        for (int row = 0; row < kTileSize; ++row, at += kTileSize, out += kFrameWidth) {
            const Row colours = {palette[at[0]], palette[at[1]], palette[at[2]], palette[at[3]],
                                 palette[at[4]], palette[at[5]], palette[at[6]], palette[at[7]]};
            store(out, colours);
        }
        batch.ends[i] = at;
    }
}

using Decode = const uint8_t*(const uint8_t*, const uint16_t*, uint16_t*);

template <Decode decode>
void decodeLines(Batch& batch, TileLine* lines) {
    for (int i = 0; i < batch.count; ++i) {
        batch.ends[i] = decode(batch.tasks[i].record, batch.target.palette, lines[i].pixels);
    }
}

// Several records side by side: each group waits for the one before it, and nothing foretells how
// many there are. A line that is full before the others takes what stands behind its record, behind
// its last pixel; 32 groups end within the longest record.
template <typename Kind>
void decodeGroups(Batch& batch, TileLine* lines) {
    constexpr int kSideBySide = 2;
    static_assert(kMostTogether % kSideBySide == 0);
    const uint16_t* const palette = batch.target.palette;
    for (int first = 0; first < batch.count; first += kSideBySide) {
        Groups groups[kSideBySide];
        for (int i = 0; i < kSideBySide; ++i) {
            groups[i].at = batch.tasks[std::min(first + i, batch.count - 1)].record;
        }
        uint16_t* const line = lines[first].pixels;
        unsigned covered = 0;
        while (covered < kSideBySide * kTilePixels) {
            covered = 0;
            for (int i = 0; i < kSideBySide; ++i) {
                Kind::decode(groups[i], palette, line + i * kLinePixels);
                groups[i].covered = std::min<unsigned>(groups[i].covered, kTilePixels);
                covered += groups[i].covered;
            }
        }
    }
}

template <typename Kind>
void decodeGroupsToEnds(Batch& batch, TileLine* lines) {
    for (int i = 0; i < batch.count; ++i) {
        Groups groups{batch.tasks[i].record};
        while (groups.covered < kTilePixels) {
            Kind::decode(groups, batch.target.palette, lines[i].pixels);
        }
        batch.ends[i] = groups.end;
    }
}

template <Turn turn>
void turnLines(const Batch& batch, const TileLine* lines) {
    for (int i = 0; i < batch.count; ++i) {
        turnLine<turn>(lines[i].pixels, kSteps[batch.tasks[i].walk],
                       batch.target.frame + batch.tasks[i].offset);
    }
}

// A line is read back in other pieces than it was written in, which waits for the writes when it
// comes at once: all are written first.
void drawRuns(Batch& batch, int pair, int turn, bool alpha) {
    constexpr void (*kDecoders[kRunPairs][2])(Batch&, TileLine*) = {
        {decodeLines<decodeFourRuns>, decodeLines<decodeFourRuns>},
        {decodeGroups<ShortRuns>, decodeGroupsToEnds<ShortRuns>},
        {decodeGroups<PaletteRuns>, decodeGroupsToEnds<PaletteRuns>},
        {decodeLines<decodeTwoColours>, decodeLines<decodeTwoColours>},
    };
    constexpr void (*kTurners[kTurns])(const Batch&, const TileLine*) = {
        turnLines<Turn::kStraight>, turnLines<Turn::kReversed>, turnLines<Turn::kTransposed>};
    TileLine lines[kMostTogether];
    kDecoders[pair][alpha ? 1 : 0](batch, lines);
    kTurners[turn](batch, lines);
}

constexpr int kLongestLevelRun = 16;

void decodeLevels(const uint8_t* record, uint8_t* levels) {
    const uint8_t first = record[0];
    if ((first & kAlphaFlatBit) != 0) {
        memset(levels, first & 15, kTilePixels);
        return;
    }
    int covered = 0;
    while (covered < kTilePixels) {
        const uint8_t run = *++record;
        memset(levels + covered, run & 15, kLongestLevelRun);
        covered += (run >> 4) + 1;
    }
}

void drawLevels(const Batch& batch) {
    uint8_t levels[kMostTogether][kTilePixels + kLongestLevelRun];
    for (int i = 0; i < batch.count; ++i) {
        decodeLevels(batch.ends[i], levels[i]);
    }
    for (int i = 0; i < batch.count; ++i) {
        copyTileAlpha(batch.target.levels + batch.tasks[i].offset, levels[i]);
    }
}

}  // namespace

void drawTiles(int kind, const TileTask* tasks, int count, const TileTarget& target) {
    Batch batch;
    batch.tasks = tasks;
    batch.count = count;
    batch.target = target;
    const int colourKind = kind % kColourKinds;
    if (colourKind == TYPE_RAW) {
        drawRaw(batch);
    } else if (colourKind == TYPE_PALETTE) {
        drawPalette(batch);
    } else {
        drawRuns(batch, (colourKind - kFirstRunKind) / kTurns,
                 (colourKind - kFirstRunKind) % kTurns, kind >= kColourKinds);
    }
    if (kind >= kColourKinds) {
        drawLevels(batch);
    }
}

}  // namespace clip::fast::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace clip::fast {

#ifdef VELMORA_HIGHWAY
HWY_EXPORT(drawTiles);
#endif

namespace {

constexpr int turnOf(Walk walk) {
    return static_cast<int>(walk.columns       ? Turn::kTransposed
                            : walk.lineReverse ? Turn::kReversed
                                               : Turn::kStraight);
}

}  // namespace

constexpr TilePainter::PathTable TilePainter::makePaths(bool alpha) {
    PathTable paths{};
    for (size_t type = 0; type < kMaxTypeSlots; ++type) {
        for (size_t code = CODE_FIRST_RECORD; code <= CODE_EMPTY; ++code) {
            const size_t colourType = type % kColourTypes;
            size_t kind = colourType;
            size_t walk = 0;
            if (colourType >= TYPE_FOUR_RUNS && code != CODE_EMPTY) {
                const size_t number = code - CODE_FIRST_RECORD;
                kind = kFirstRunKind + (colourType - TYPE_FOUR_RUNS) / 2 * kTurns +
                       static_cast<size_t>(turnOf(kWalks[number][colourType % 2]));
                walk = 2 * number + colourType % 2;
            }
            if (alpha && type >= kColourTypes && code != CODE_EMPTY) {
                kind += kColourKinds;
            }
            paths[type][code] = {static_cast<uint8_t>(kind), static_cast<uint8_t>(walk)};
        }
    }
    return paths;
}

constinit const TilePainter::PathTable TilePainter::kPaths = makePaths(false);
constinit const TilePainter::PathTable TilePainter::kAlphaPaths = makePaths(true);

void TilePainter::drawWaiting(size_t kind) {
    const int count = static_cast<int>(counts_[kind]);
#ifdef VELMORA_HIGHWAY
    HWY_DYNAMIC_DISPATCH(drawTiles)(static_cast<int>(kind), tasks_[kind], count, target_);
#else
    basic_set::drawTiles(static_cast<int>(kind), tasks_[kind], count, target_);
#endif
    counts_[kind] = 0;
}

void TilePainter::flush() {
    for (size_t kind = 0; kind < kTileKinds; ++kind) {
        if (counts_[kind] != 0) {
            drawWaiting(kind);
        }
    }
}

}  // namespace clip::fast
#endif
