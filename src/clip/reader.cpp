#include "clip/reader.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "common/bytes.h"

namespace clip {

namespace {

// `count` bytes; those past the end of the file are zero.
void readBytes(FILE* file, uint8_t* bytes, size_t count) {
    if (count == 0) {
        return;  // `bytes` may be null then, which fread() does not take
    }
    const size_t got = fread(bytes, 1, count, file);
    memset(bytes + got, 0, count - got);
}

uint8_t readByte(FILE* file) {
    const int byte = getc_unlocked(file);
    return byte == EOF ? uint8_t{0} : static_cast<uint8_t>(byte);
}

// Collects one record in a buffer that no record can outgrow.
struct RecordBuilder {
    FILE* file;
    uint8_t bytes[kMaxRecordBytes];
    int length = 0;

    uint8_t take() {
        const uint8_t byte = readByte(file);
        bytes[length++] = byte;
        return byte;
    }
    void takeMany(int count) {
        readBytes(file, bytes + length, static_cast<size_t>(count));
        length += count;
    }
    void takeColour(bool paletteIndex) { takeMany(paletteIndex ? 1 : 2); }
};

void readFourRuns(RecordBuilder& record) {
    record.takeMany(2);
    const int header = le16(record.bytes);
    std::swap(record.bytes[0], record.bytes[1]);
    const bool indexed = (header & kFourRunsPaletteBit) != 0;
    const int lengthA = (header & 31) + 1;
    const int lengthB = ((header >> 5) & 31) + 1;
    const int lengthC = ((header >> 10) & 31) + 1;
    record.takeColour(indexed);
    record.takeColour(indexed);
    if (lengthA + lengthB < kTilePixels) {
        record.takeColour(indexed);
        if (lengthA + lengthB + lengthC < kTilePixels) {
            record.takeColour(indexed);
        }
    }
}

void readShortRuns(RecordBuilder& record) {
    int covered = 0;
    while (covered < kTilePixels) {
        const uint8_t control = record.take();
        record.takeColour((control & 2) != 0);
        covered += (control >> 5) + 1;
        if (covered >= kTilePixels) {
            return;
        }
        record.takeColour((control & 1) != 0);
        covered += ((control >> 2) & 7) + 1;
    }
}

void readPaletteRuns(RecordBuilder& record) {
    int covered = 0;
    // The first two groups are always complete, whatever they cover.
    for (int group = 0; group < 2; ++group) {
        const uint8_t control = record.take();
        record.takeMany(2);
        covered += (control >> 4) + 1 + (control & 15) + 1;
    }
    while (covered < kTilePixels) {
        const uint8_t control = record.take();
        record.takeMany(1);
        covered += (control >> 4) + 1;
        if (covered >= kTilePixels) {
            return;
        }
        record.takeMany(1);
        covered += (control & 15) + 1;
    }
}

void readTwoColours(RecordBuilder& record) {
    const uint8_t control = record.take();
    record.takeColour((control & 0x40) != 0);
    record.takeColour((control & 0x80) != 0);
}

void readColourRecord(RecordBuilder& record, int colourType) {
    switch (colourType) {
        case TYPE_RAW:
            record.takeMany(kTilePixels * 2);
            break;
        case TYPE_PALETTE:
            record.takeMany(kTilePixels);
            break;
        case TYPE_FOUR_RUNS:
        case TYPE_FOUR_RUNS + 1:
            readFourRuns(record);
            break;
        case TYPE_SHORT_RUNS:
        case TYPE_SHORT_RUNS + 1:
            readShortRuns(record);
            break;
        case TYPE_PALETTE_RUNS:
        case TYPE_PALETTE_RUNS + 1:
            readPaletteRuns(record);
            break;
        default:
            readTwoColours(record);
            break;
    }
}

void readAlphaRecord(RecordBuilder& record) {
    const uint8_t first = record.take();
    if ((first & kAlphaOneByteMask) != 0) {
        return;
    }
    int covered = 0;
    while (covered < kTilePixels) {
        covered += (record.take() >> 4) + 1;
    }
}

}  // namespace

FileHeader readFileHeader(FILE* file) {
    uint8_t bytes[kHeaderBytes];
    readBytes(file, bytes, sizeof bytes);
    return {bytes[0], bytes[1], le16(bytes + 2), le16(bytes + 4),
            bytes[6], bytes[7], le16(bytes + 8)};
}

bool headerFits(const FileHeader& header) {
    return header.frameCount >= 1 && header.frameCount <= kMaxFrames && header.alpha <= 1 &&
           header.height <= kFrameHeight && header.blockCount == blocksFor(header.frameCount);
}

void readBlockHeader(FILE* file, int alpha, BlockHeader& header) {
    uint8_t fixed[kBlockHeaderBytes];
    readBytes(file, fixed, sizeof fixed);
    header.recordCount = le16(fixed);
    header.recordWords = le32(fixed + 2);
    header.mapWords = le32(fixed + 6);
    std::fill(std::begin(header.typeCounts), std::end(header.typeCounts), uint16_t{0});
    readWords(file, header.typeCounts, static_cast<size_t>(typeSlots(alpha)));
    readWords(file, header.palette, kPaletteEntries);
}

bool readChangeRuns(FILE* file, int interFrames, int tileCount, uint8_t* runs, size_t capacity,
                    ChangeRuns& result) {
    result = {0, 0};
    for (int frame = 0; frame < interFrames; ++frame) {
        int covered = 0;
        while (covered < tileCount) {
            if (result.runBytes == capacity) {
                return false;
            }
            const uint8_t run = readByte(file);
            runs[result.runBytes++] = run;
            const int length = (run & kRunLengthMask) + 1;
            covered += length;
            if ((run & kRunChanged) != 0) {
                result.changed += length;
            }
        }
    }
    return true;
}

void readWords(FILE* file, uint16_t* words, size_t count) {
    uint8_t* bytes = reinterpret_cast<uint8_t*>(words);
    readBytes(file, bytes, count * 2);
    for (size_t i = 0; i < count; ++i) {
        words[i] = le16(bytes + 2 * i);
    }
}

int readRecord(FILE* file, int type, uint8_t* out, size_t capacity) {
    RecordBuilder record{file, {}};
    readColourRecord(record, type % kColourTypes);
    if (type >= kColourTypes) {
        readAlphaRecord(record);
    }
    if (static_cast<size_t>(record.length) > capacity) {
        return 0;
    }
    memcpy(out, record.bytes, static_cast<size_t>(record.length));
    return record.length;
}

}  // namespace clip
