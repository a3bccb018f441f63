#include "clip/survey.h"

#include "clip/block.h"
#include "clip/load_cost.h"
#include "clip/record.h"

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

// Whether `file` stands at what comes next.
bool Survey::seek(FILE* file) {
    if (fseek(file, static_cast<long>(offset_), SEEK_SET) != 0) {
        state_ = SURVEY_BROKEN;
    }
    return state_ == SURVEY_GOES_ON;
}

SurveyState Survey::look(FILE* file, size_t bytes) {
    size_ = sizeOf(file);
    const int64_t end = offset_ + static_cast<int64_t>(bytes);
    while (state_ == SURVEY_GOES_ON && seek(file) && offset_ < end) {
        Source source(file);
        if (file_.frameCount == 0) {
            readHeader(source);
        } else if (block_ >= 0 && recordsDone_ < header_.recordCount) {
            readRecords(source, end);
        } else {
            endBlock();
            if (state_ == SURVEY_GOES_ON) {
                readBlockHead(source);
            }
        }
    }
    return state_;
}

void Survey::readHeader(Source& source) {
    file_ = readFileHeader(source);
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
void Survey::readBlockHead(Source& source) {
    readBlockHeader(source, file_.alpha, header_);
    passed(blockHeaderBytes(file_.alpha));
    startTypes(header_.typeCounts, typeSlots(file_.alpha), typeStarts_);
    const int tiles = tilesFor(file_.height);
    const int frames = framesInBlock(block_, file_.blockCount, file_.frameCount);
    const BlockRoom room =
        blockRoom(header_.recordCount, header_.recordWords, header_.mapWords, frames, tiles);
    recordRoom_ = room.recordBytes;
    recordsDone_ = 0;

    ChangeRuns runs = {0, 0};
    if (state_ == SURVEY_GOES_ON &&
        !readChangeRuns(source, frames - 1, tiles, nullptr, room.runBytes, runs)) {
        state_ = SURVEY_BROKEN;
    }
    const size_t entries = static_cast<size_t>(tiles) + static_cast<size_t>(runs.changed);
    if (entries > room.mapEntries) {
        state_ = SURVEY_BROKEN;
    }
    passed(runs.runBytes + 2 * (entries + room.codeWords));
}

void Survey::readRecords(Source& source, int64_t end) {
    while (state_ == SURVEY_GOES_ON && recordsDone_ < header_.recordCount && offset_ < end) {
        const int type =
            recordType(typeStarts_, typeSlots(file_.alpha), static_cast<uint32_t>(recordsDone_));
        const size_t length = recordLength(source.record(), type);
        if (length > recordRoom_) {
            state_ = SURVEY_BROKEN;
            return;
        }
        source.skip(length);
        recordRoom_ -= length;
        ++recordsDone_;
        passed(length);
    }
}

}  // namespace clip
