#pragma once
// How many frames a clip file has and how many steps it takes to load, found out a bit at a time so
// that nobody waits for it: records have no length of their own, so a whole file must be walked.
//
// A file is broken where the loader would refuse it, and where it ends before its last block does.
// Any bytes will do; the file may change, shrink or be another one from call to call. Nothing is
// allocated.

#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "clip/source.h"

namespace clip {

enum SurveyState : int { SURVEY_GOES_ON, SURVEY_PLAYS, SURVEY_BROKEN };

class Survey {
public:
    // Walks `bytes` more of the file, or a little more: a block's beginning is taken whole. `file`
    // is open for reading and may stand anywhere.
    SurveyState look(FILE* file, size_t bytes);

    int frames() const { return file_.frameCount; }  // of a clip that plays
    int steps() const { return steps_; }             // likewise, as any but a playlist's first clip

private:
    bool seek(FILE* file);
    void readHeader(Source& source);
    void readBlockHead(Source& source);
    void readRecords(Source& source, int64_t end);
    void endBlock();
    void passed(size_t bytes);

    SurveyState state_ = SURVEY_GOES_ON;
    int64_t size_ = 0;    // of the file, now
    int64_t offset_ = 0;  // of what comes next
    FileHeader file_ = {};
    int steps_ = 0;
    int block_ = -1;  // whose records are being walked
    BlockHeader header_ = {};
    uint32_t typeStarts_[kMaxTypeSlots] = {};
    int recordsDone_ = 0;
    size_t recordRoom_ = 0;  // left of the block's
};

}  // namespace clip
