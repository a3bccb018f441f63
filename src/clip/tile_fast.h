#pragma once
// Draws the tile records of a frame in the time that a frame has: the same pixels and levels as the
// functions of clip/tile.h and clip/paint.h give, whose contracts hold here too.
//
// Tiles that are drawn alike wait for each other, so that nothing is asked tile by tile and their
// records are on their way from memory before they are read. The widest vectors of the processor
// are chosen at the first drawing; a build without Highway has those of its basic set. Records and
// palette stay as they are until flush(), which the owner calls last.

#include <array>
#include <cstddef>
#include <cstdint>

#include "clip/tile.h"

namespace clip::fast {

// What becomes of the rows of a run record before they are the rows of its tile.
enum class Turn { kStraight, kReversed, kTransposed };
inline constexpr int kTurns = 3;

// Tiles that are drawn alike: raw ones, palette ones, and those of each pair of run types by turn;
// the same again with alpha records.
inline constexpr int kRunPairs = (kColourTypes - TYPE_FOUR_RUNS) / 2;
inline constexpr int kFirstRunKind = TYPE_FOUR_RUNS;
inline constexpr int kColourKinds = kFirstRunKind + kRunPairs * kTurns;
inline constexpr int kTileKinds = 2 * kColourKinds;
inline constexpr int kMostTogether = 32;

// Where frames are drawn and what their palette indices stand for.
struct TileTarget {
    uint16_t* frame;
    uint8_t* levels;  // null when alpha is not wanted
    const uint16_t* palette;
};

struct TileTask {
    const uint8_t* record;
    int32_t offset;  // of the tile's first pixel in the frame, and of its first level
    uint32_t walk;   // which of the walks through a tile, twice its number and the column order
};

class TilePainter {
public:
    explicit TilePainter(const TileTarget& target)
        : paths_(target.levels != nullptr ? kAlphaPaths : kPaths), target_(target) {}

    // The record of `type` (0 to 19) is drawn by `code` (1 to 6; 7 with colour types 0 and 1, then
    // without its levels): when its turn comes, flush() at the latest.
    void add(const uint8_t* record, int type, int code, int offset) {
        const Path path = paths_[static_cast<size_t>(type)][static_cast<size_t>(code)];
        __builtin_prefetch(record);
        tasks_[path.kind][counts_[path.kind]] = {record, offset, path.walk};
        if (++counts_[path.kind] == kMostTogether) {
            drawWaiting(path.kind);
        }
    }
    void flush();

private:
    struct Path {
        uint8_t kind;
        uint8_t walk;
    };
    // By type and code.
    using PathTable = std::array<std::array<Path, CODE_EMPTY + 1>, kMaxTypeSlots>;
    static constexpr PathTable makePaths(bool alpha);
    static const PathTable kPaths;
    static const PathTable kAlphaPaths;

    void drawWaiting(size_t kind);

    const PathTable& paths_;
    TileTarget target_;
    unsigned counts_[kTileKinds] = {};
    TileTask tasks_[kTileKinds][kMostTogether];
};

}  // namespace clip::fast
