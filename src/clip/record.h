#pragma once
// The grammar of a tile record, which stands here alone: how long a record is, which runs it has
// and whether they are in order all come from one walk. Only the fast painter has its own way of
// decoding, and tests hold it to this one.
//
// At least kMaxRecordBytes bytes are readable from `record` on, whatever the record says; no walk
// looks further.

#include <cstddef>
#include <cstdint>
#include <initializer_list>

#include "clip/format.h"
#include "common/bytes.h"

namespace clip {

// The 16-bit header of the four-run types: low byte first, or high byte first as a loaded block
// holds it. Everything else is the same in both.
enum class RecordForm { kFile, kStored };

constexpr bool hasFourRuns(int colourType) {
    return colourType / 2 == TYPE_FOUR_RUNS / 2;
}

struct Run {
    const uint8_t* control;  // the byte that gives its length
    int length;              // pixels; broken records have runs that pass the 64th, or of none
    const uint8_t* colour;   // null for a run that the record ends before: of four runs alone
    bool indexed;            // the colour is a palette index, else RGB565
};

namespace walk {

template <typename OnRun>
struct Cursor {
    OnRun& onRun;
    const uint8_t* at;
    int covered = 0;

    void run(const uint8_t* control, int length, bool indexed) {
        onRun(Run{control, length, at, indexed});
        at += indexed ? 1 : 2;
        covered += length;
    }
};

template <RecordForm form, typename OnRun>
void fourRuns(Cursor<OnRun>& cursor) {
    const uint8_t* const control = cursor.at;
    const int header = form == RecordForm::kFile ? le16(control) : be16(control);
    const bool indexed = (header & kFourRunsPaletteBit) != 0;
    const int third = (header >> 10 & 31) + 1;
    cursor.at += 2;
    cursor.run(control, (header & 31) + 1, indexed);
    cursor.run(control, (header >> 5 & 31) + 1, indexed);
    const int fourth = kTilePixels - cursor.covered - third;
    for (const int length : {third, fourth}) {
        if (cursor.covered < kTilePixels) {
            cursor.run(control, length, indexed);
        } else {
            cursor.onRun(Run{control, length, nullptr, indexed});
        }
    }
}

template <typename OnRun>
void shortRuns(Cursor<OnRun>& cursor) {
    while (cursor.covered < kTilePixels) {
        const uint8_t* const control = cursor.at++;
        cursor.run(control, (*control >> 5) + 1, (*control & 2) != 0);
        if (cursor.covered < kTilePixels) {
            cursor.run(control, (*control >> 2 & 7) + 1, (*control & 1) != 0);
        }
    }
}

// The first two groups are always complete, whatever they cover.
template <typename OnRun>
void paletteRuns(Cursor<OnRun>& cursor) {
    for (int group = 0; group < 2 || cursor.covered < kTilePixels; ++group) {
        const uint8_t* const control = cursor.at++;
        cursor.run(control, (*control >> 4) + 1, true);
        if (group < 2 || cursor.covered < kTilePixels) {
            cursor.run(control, (*control & 15) + 1, true);
        }
    }
}

template <typename OnRun>
void twoColours(Cursor<OnRun>& cursor) {
    const uint8_t* const control = cursor.at++;
    const int first = (*control & 63) + 1;
    cursor.run(control, first, (*control & 0x40) != 0);
    cursor.run(control, kTilePixels - first, (*control & 0x80) != 0);
}

}  // namespace walk

// The runs of a colour record, first to last; types 0 and 1 have none. Returns its end.
template <RecordForm form, typename OnRun>
const uint8_t* walkColours(const uint8_t* record, int colourType, OnRun onRun) {
    walk::Cursor<OnRun> cursor{onRun, record};
    switch (colourType) {
        case TYPE_RAW:
            return record + 2 * kTilePixels;
        case TYPE_PALETTE:
            return record + kTilePixels;
        case TYPE_FOUR_RUNS:
        case TYPE_FOUR_RUNS + 1:
            walk::fourRuns<form>(cursor);
            break;
        case TYPE_SHORT_RUNS:
        case TYPE_SHORT_RUNS + 1:
            walk::shortRuns(cursor);
            break;
        case TYPE_PALETTE_RUNS:
        case TYPE_PALETTE_RUNS + 1:
            walk::paletteRuns(cursor);
            break;
        default:
            walk::twoColours(cursor);
            break;
    }
    return cursor.at;
}

// The run bytes of an alpha record, which follow its first byte, each with the pixels before it.
// Returns their end.
template <typename OnLevels>
const uint8_t* walkLevels(const uint8_t* run, OnLevels onLevels) {
    for (int covered = 0; covered < kTilePixels; ++run) {
        onLevels(run, covered);
        covered += (*run >> 4) + 1;
    }
    return run;
}

// Deliberate: skipping a record takes its alpha part for one byte when any of the three upper bits
// is set, drawing it looks at kAlphaFlatBit alone. Files that keep the three bits at 001 or 000
// never show the difference. [quirk_alpha_first_byte_read_two_ways]
constexpr bool isOneAlphaByte(uint8_t first) {
    return (first & kAlphaOneByteMask) != 0;
}

// An alpha record; with runs as walkLevels gives them, unless it is one byte. Returns its end.
template <typename OnLevels>
const uint8_t* walkAlpha(const uint8_t* record, OnLevels onLevels) {
    return isOneAlphaByte(*record) ? record + 1 : walkLevels(record + 1, onLevels);
}

// Bytes of a record as it stands in a file.
inline size_t recordLength(const uint8_t* record, int type) {
    const uint8_t* end =
        walkColours<RecordForm::kFile>(record, type % kColourTypes, [](const Run&) {});
    if (type >= kColourTypes) {
        end = walkAlpha(end, [](const uint8_t*, int) {});
    }
    return static_cast<size_t>(end - record);
}

}  // namespace clip
