#pragma once
// Draws the tile records on stage, in the time that a frame has: the same pixels and levels as
// drawPlainTile() of clip/plain_tile.h gives, whose contract holds here too.
//
// Tiles that are drawn alike wait for each other, so that nothing is asked tile by tile and their
// records are on their way from memory before they are read. The widest vectors of the processor
// are chosen at the first drawing; a build without Highway has those of its basic set. Records and
// palette stay as they are until flush(), which the owner calls last.

#include <array>
#include <cstddef>
#include <cstdint>

#include "clip/format.h"

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
    uint32_t offset;  // of the tile's first pixel in the frame, and of its first level
    uint32_t walk;    // which of the walks through a tile, twice its number and the column order
};

class TilePainter {
public:
    explicit TilePainter(const TileTarget& target);
    TilePainter(const TilePainter&) = delete;
    TilePainter& operator=(const TilePainter&) = delete;

    // The record of `type` (0 to 19) is drawn by `code` (1 to 6; 7 with colour types 0 and 1, then
    // without its levels): when its turn comes, flush() at the latest.
    void add(const uint8_t* record, int type, int code, int offset) {
        const Path path = paths_[static_cast<size_t>(type) * kCodes + static_cast<size_t>(code)];
        __builtin_prefetch(record);
        Queue& queue = queues_[path.kind];
        *queue.next = {record, static_cast<uint32_t>(offset), path.walk};
        if (++queue.next == queue.end) {
            drawWaiting(path.kind);
        }
    }
    void flush();

private:
    struct Path {
        uint8_t kind;
        uint8_t walk;
    };
    // A row of tasks_, so painters are not copied. Its end never changes; finding it anew would
    // take three instructions a tile on Arm.
    struct Queue {
        TileTask* next;
        const TileTask* end;
    };
    static constexpr size_t kCodes = CODE_EMPTY + 1;
    using PathTable = std::array<Path, kMaxTypeSlots * kCodes>;  // type by type
    static constexpr PathTable makePaths(bool alpha);
    static const PathTable kPaths;
    static const PathTable kAlphaPaths;

    void drawWaiting(size_t kind);

    const PathTable& paths_;
    TileTarget target_;
    Queue queues_[kTileKinds];
    TileTask tasks_[kTileKinds][kMostTogether];
};

}  // namespace clip::fast
