#include "clip/survey.h"

#include <algorithm>

#include "clip/load_cost.h"
#include "clip/reader.h"

namespace clip {

namespace {

int64_t sizeOf(FILE* file) {
    return fseek(file, 0, SEEK_END) == 0 ? ftell(file) : 0;
}

}  // namespace

// Everything that was read or is skipped goes through here: what lies past the end of the file ends
// the survey, so that it never walks through bytes that are not there.
void Survey::passed(size_t bytes) {
    offset_ += static_cast<int64_t>(bytes);
    if (offset_ > size_) {
        state_ = SURVEY_BROKEN;
    }
}

SurveyState Survey::look(FILE* file, size_t bytes) {
    size_ = sizeOf(file);
    if (state_ == SURVEY_GOES_ON && fseek(file, static_cast<long>(offset_), SEEK_SET) != 0) {
        state_ = SURVEY_BROKEN;
    }
    const int64_t end = offset_ + static_cast<int64_t>(bytes);
    while (state_ == SURVEY_GOES_ON && offset_ < end) {
        if (file_.frameCount == 0) {
            readHeader(file);
        } else if (block_ >= 0 && recordsDone_ < header_.recordCount) {
            readOneRecord(file);
        } else {
            endBlock();
            if (state_ == SURVEY_GOES_ON) {
                readBlockHead(file);
            }
        }
    }
    return state_;
}

void Survey::readHeader(FILE* file) {
    file_ = readFileHeader(file);
    passed(kHeaderBytes);
    if (file_.version != kVersion || !headerFits(file_)) {
        state_ = SURVEY_BROKEN;
    }
    steps_ = kStepsBesideRecords;
}

// Counts the block that was walked, and ends the survey after the last one.
void Survey::endBlock() {
    if (block_ >= 0) {
        steps_ += recordSteps(header_.recordCount, kOtherClipBudget);
    }
    ++block_;
    if (block_ == file_.blockCount) {
        state_ = SURVEY_PLAYS;
    }
}

// All of the next block that stands before its records.
void Survey::readBlockHead(FILE* file) {
    const int slots = typeSlots(file_.alpha);
    readBlockHeader(file, file_.alpha, header_);
    passed(size_t{kBlockHeaderBytes} + 2 * static_cast<size_t>(slots) + size_t{kPaletteBytes});
    uint32_t start = 0;
    for (int type = 0; type < slots; ++type) {
        typeStarts_[type] = start;
        start += header_.typeCounts[type];
    }
    const int tiles = tilesFor(file_.height);
    const int frames = framesInBlock(block_, file_.blockCount, file_.frameCount);
    const BlockRoom room =
        blockRoom(header_.recordCount, header_.recordWords, header_.mapWords, frames, tiles);
    recordRoom_ = room.recordBytes;
    recordsDone_ = 0;

    ChangeRuns runs = {0, 0};
    uint8_t runBytes[kFramesPerBlock * kMaxTiles];
    static_assert(sizeof runBytes <= kMaxRunBytes);
    if (state_ == SURVEY_GOES_ON && frames > 1 &&
        !readChangeRuns(file, frames - 1, tiles, runBytes, room.runBytes, runs)) {
        state_ = SURVEY_BROKEN;
    }
    const size_t entries = static_cast<size_t>(tiles) + static_cast<size_t>(runs.changed);
    if (entries > room.mapEntries) {
        state_ = SURVEY_BROKEN;
    }
    const auto codeWords = static_cast<size_t>(frames) * static_cast<size_t>(codeWordsFor(tiles));
    passed(runs.runBytes + 2 * (entries + codeWords));
    if (state_ == SURVEY_GOES_ON && fseek(file, static_cast<long>(offset_), SEEK_SET) != 0) {
        state_ = SURVEY_BROKEN;
    }
}

void Survey::readOneRecord(FILE* file) {
    uint8_t record[kMaxRecordBytes];
    const int type =
        recordType(typeStarts_, typeSlots(file_.alpha), static_cast<uint32_t>(recordsDone_));
    const int length = readRecord(file, type, record, std::min(recordRoom_, sizeof record));
    if (length == 0) {
        state_ = SURVEY_BROKEN;
        return;
    }
    recordRoom_ -= static_cast<size_t>(length);
    ++recordsDone_;
    passed(static_cast<size_t>(length));
}

}  // namespace clip
