#include "clip/block.h"

#include <cstring>
#include <utility>

#include "clip/record.h"

namespace clip {

namespace {

// False when the record does not fit.
bool loadRecord(Source& source, int type, Block& block) {
    const uint8_t* const from = source.record();
    const size_t length = recordLength(from, type);
    if (length > block.room.recordBytes - block.recordsEnd) {
        return false;
    }
    uint8_t* const record = block.records + block.recordsEnd;
    memcpy(record, from, length);
    if (hasFourRuns(type % kColourTypes)) {
        std::swap(record[0], record[1]);
    }
    source.skip(length);
    block.recordTypes[block.recordsDone] = static_cast<uint8_t>(type);
    block.recordOffsets[block.recordsDone] = static_cast<uint32_t>(block.recordsEnd);
    block.recordsEnd += length;
    ++block.recordsDone;
    return true;
}

}  // namespace

void startTypes(const uint16_t* typeCounts, int slots, uint32_t* typeStarts) {
    uint32_t start = 0;
    for (int type = 0; type < slots; ++type) {
        typeStarts[type] = start;
        start += typeCounts[type];
    }
}

bool readChangeRuns(Source& source, int interFrames, int tileCount, uint8_t* runs, size_t capacity,
                    ChangeRuns& result) {
    result = {0, 0};
    for (int frame = 0; frame < interFrames; ++frame) {
        int covered = 0;
        while (covered < tileCount) {
            if (result.runBytes == capacity) {
                return false;
            }
            const uint8_t run = source.byte();
            if (runs != nullptr) {
                runs[result.runBytes] = run;
            }
            ++result.runBytes;
            const int length = (run & kRunLengthMask) + 1;
            covered += length;
            if ((run & kRunChanged) != 0) {
                result.changed += length;
            }
        }
    }
    return true;
}

bool loadMaps(Source& source, Block& block) {
    ChangeRuns runs;
    if (!readChangeRuns(source, block.frames - 1, block.tiles, block.runs, block.room.runBytes,
                        runs)) {
        return false;
    }
    const size_t entries = static_cast<size_t>(block.tiles) + static_cast<size_t>(runs.changed);
    if (entries > block.room.mapEntries) {
        return false;
    }
    source.takeWords(block.map, entries);
    source.takeWords(block.codes, block.room.codeWords);
    return true;
}

Records loadRecords(Source& source, int budget, Block& block) {
    const auto count = static_cast<int>(block.room.records);
    const int end = block.recordsDone + std::clamp(budget, 0, count - block.recordsDone);
    int type = 0;
    while (block.recordsDone < end) {
        while (type + 1 < block.slots &&
               block.typeStarts[type + 1] <= static_cast<uint32_t>(block.recordsDone)) {
            ++type;
        }
        if (!loadRecord(source, type, block)) {
            return Records::kRefused;
        }
    }
    if (block.recordsDone < count) {
        return Records::kMore;
    }
    std::fill_n(block.records + block.recordsEnd, kMaxRecordBytes, uint8_t{0});
    return Records::kAll;
}

}  // namespace clip
