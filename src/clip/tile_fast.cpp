#include "clip/tile_fast.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#ifdef VELMORA_HIGHWAY
#define HWY_WANT_AVX3_DL  // AVX-512 with look-ups of bytes, which Highway leaves out unless asked
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "clip/tile_fast.cpp"
#include <hwy/foreach_target.h>
#else
#define HWY_ONCE 1
#endif

#include "clip/paint.h"
#include "clip/tile_bytes-inl.h"
#include "clip/tile_lines-inl.h"

HWY_BEFORE_NAMESPACE();
namespace clip::fast::HWY_NAMESPACE {

namespace {

// Tiles of one kind, `ends` gets where their colours end.
struct Batch {
    const TileTask* tasks;
    int count;
    TileTarget target;
    const uint8_t* ends[kMostTogether];
};

void drawRaw(Batch& batch) {
    static_assert(std::endian::native == std::endian::little, "colours are copied as they are");
    // A row that is stored may alias anything, so the batch would be read again for each tile.
    const TileTask* const tasks = batch.tasks;
    uint16_t* const frame = batch.target.frame;
    const int count = batch.count;
    for (int i = 0; i < count; ++i) {
        const uint8_t* at = tasks[i].record;
        uint16_t* out = frame + tasks[i].offset;
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

constexpr int kShortRunPair = (TYPE_SHORT_RUNS - TYPE_FOUR_RUNS) / 2;
constexpr int kPaletteRunPair = (TYPE_PALETTE_RUNS - TYPE_FOUR_RUNS) / 2;

// A line is read back in other pieces than it was written in, which waits for the writes when it
// comes at once: all are written first.
void drawLines(Batch& batch, int pair, int turn, bool alpha) {
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

// The tiles of the batch that are not drawn yet.
void drawRest(Batch& batch, uint32_t drawn, int pair, int turn, bool alpha) {
    TileTask tasks[kMostTogether];
    uint8_t numbers[kMostTogether];
    Batch rest;
    rest.tasks = tasks;
    rest.count = 0;
    rest.target = batch.target;
    for (int i = 0; i < batch.count; ++i) {
        if ((drawn >> i & 1) == 0) {
            numbers[rest.count] = static_cast<uint8_t>(i);
            tasks[rest.count++] = batch.tasks[i];
        }
    }
    drawLines(rest, pair, turn, alpha);
    for (int i = 0; alpha && i < rest.count; ++i) {
        batch.ends[numbers[i]] = rest.ends[i];
    }
}

void drawRuns(Batch& batch, int pair, int turn, bool alpha) {
    uint32_t drawn = 0;
    if (pair == kShortRunPair || pair == kPaletteRunPair) {
        drawn = drawGroupsAtOnce(pair == kPaletteRunPair, batch.tasks, batch.count, batch.target,
                                 alpha ? batch.ends : nullptr);
    }
    if (drawn == 0) {
        drawLines(batch, pair, turn, alpha);
    } else if (std::popcount(drawn) < batch.count) {
        drawRest(batch, drawn, pair, turn, alpha);
    }
}

constexpr int kLongestLevelRun = sizeof(LevelRun);
static_assert(kLongestLevelRun == 16);

void decodeLevels(const uint8_t* record, uint8_t* levels) {
    const uint8_t first = record[0];
    if ((first & kAlphaFlatBit) != 0) {
        memset(levels, first & 15, kTilePixels);
        return;
    }
    int covered = 0;
    while (covered < kTilePixels) {
        const uint8_t run = *++record;
        fillLevelRun(levels + covered, run & 15u);
        covered += (run >> 4) + 1;
    }
}

void drawLevels(const Batch& batch) {
    uint8_t levels[kMostTogether][kTilePixels + kLongestLevelRun];
    for (int i = 0; i < batch.count; ++i) {
        decodeLevels(batch.ends[i], levels[i]);
    }
    for (int i = 0; i < batch.count; ++i) {
        uint8_t* out = batch.target.levels + batch.tasks[i].offset;
        for (int row = 0; row < kTileSize; ++row, out += kFrameWidth) {
            copyLevelRow(out, levels[i] + row * kTileSize);
        }
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
            paths[type * kCodes + code] = {static_cast<uint8_t>(kind), static_cast<uint8_t>(walk)};
        }
    }
    return paths;
}

constinit const TilePainter::PathTable TilePainter::kPaths = makePaths(false);
constinit const TilePainter::PathTable TilePainter::kAlphaPaths = makePaths(true);

TilePainter::TilePainter(const TileTarget& target)
    : paths_(target.levels != nullptr ? kAlphaPaths : kPaths), target_(target) {
    for (size_t kind = 0; kind < kTileKinds; ++kind) {
        queues_[kind] = {tasks_[kind], tasks_[kind] + kMostTogether};
    }
}

void TilePainter::drawWaiting(size_t kind) {
    const int count = static_cast<int>(queues_[kind].next - tasks_[kind]);
#ifdef VELMORA_HIGHWAY
    HWY_DYNAMIC_DISPATCH(drawTiles)(static_cast<int>(kind), tasks_[kind], count, target_);
#else
    basic_set::drawTiles(static_cast<int>(kind), tasks_[kind], count, target_);
#endif
    queues_[kind].next = tasks_[kind];
}

void TilePainter::flush() {
    for (size_t kind = 0; kind < kTileKinds; ++kind) {
        if (queues_[kind].next != tasks_[kind]) {
            drawWaiting(kind);
        }
    }
}

}  // namespace clip::fast
#endif
