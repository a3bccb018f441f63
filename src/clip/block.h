#pragma once
// One block of a clip on its way into memory: the room that it needs, and its sections one after
// the other. What does not fit is refused. Its buffers belong to whoever loads it.

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "clip/format.h"
#include "clip/source.h"

namespace clip {

// Room for a block's buffers. The file announces room, in words of four bytes; a block never gets
// more than its records, tiles and frames can need, however much that is.
struct BlockRoom {
    size_t mapEntries;
    size_t runBytes;
    size_t codeWords;
    size_t records;
    size_t recordBytes;

    // Of the file, for the sections before the records.
    size_t mapBytes() const { return runBytes + 2 * (mapEntries + codeWords); }
    // Guard: drawing a record may look past its end when its bytes break the format; the room of
    // one longest record after the last keeps that inside the buffer.
    size_t guardedRecordBytes() const { return recordBytes + kMaxRecordBytes; }
};

// A frame's runs may pass its last tile; the entries of that excess are read all the same.
constexpr BlockRoom blockRoom(uint16_t recordCount, uint32_t recordWords, uint32_t mapWords,
                              int frames, int tiles) {
    const uint64_t frameCount = static_cast<uint64_t>(frames);
    const uint64_t tileCount = static_cast<uint64_t>(tiles);
    return {static_cast<size_t>(
                std::min(uint64_t{2} * mapWords, frameCount * (tileCount + kMaxRunLength))),
            static_cast<size_t>(std::min(uint64_t{kMaxRunBytes}, frameCount * tileCount)),
            static_cast<size_t>(frames * codeWordsFor(tiles)), recordCount,
            static_cast<size_t>(
                std::min(uint64_t{4} * recordWords, uint64_t{recordCount} * kMaxRecordBytes))};
}

// typeStarts[t] is the sum of the counts of the types before t.
void startTypes(const uint16_t* typeCounts, int slots, uint32_t* typeStarts);

struct Block {
    int frames;
    int tiles;
    int slots;  // record types: 10 or 20
    BlockRoom room;
    const uint32_t* typeStarts;
    uint16_t* map;
    uint8_t* runs;
    uint16_t* codes;
    uint8_t* records;  // as in the file, but for the header of four runs: high byte first
    uint32_t* recordOffsets;
    uint8_t* recordTypes;
    int recordsDone = 0;
    size_t recordsEnd = 0;  // bytes of those
};

struct ChangeRuns {
    size_t runBytes;  // taken
    int changed;      // map entries that follow for the changed runs
};

// Section 2 of a block with `interFrames` frames after its first. Its bytes go to `runs`, which may
// be null. False when they do not fit `capacity` bytes.
bool readChangeRuns(Source& source, int interFrames, int tileCount, uint8_t* runs, size_t capacity,
                    ChangeRuns& result);

// Sections 2 to 4. False when they do not fit.
bool loadMaps(Source& source, Block& block);

// The next `budget` records of section 5.
enum class Records { kRefused, kMore, kAll };
Records loadRecords(Source& source, int budget, Block& block);

}  // namespace clip
