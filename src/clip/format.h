#pragma once
// The ".m19" clip file, version 19: names, sizes and bounds of its byte layout.
//
// All numbers are unsigned and little-endian; nothing is padded; sections follow one another.
//
//   file header, 10 bytes
//     0  u8   version       19
//     1  u8   quality       the encoder's setting, shown to the user
//     2  u16  storedWidth   ignored: a frame is always 640 pixels wide
//     4  u16  height        a multiple of 8, at most 360
//     6  u8   alpha         0 colour only, 1 colour and alpha
//     7  u8   blockCount    ceil(frameCount / 16)
//     8  u16  frameCount    1 to 256
//
//   then blockCount blocks of 16 frames (the last holds the rest), each of five sections
//
//   1  block header
//        u16  recordCount   tile records in section 5
//        u32  recordWords   room for section 5, in units of 4 bytes
//        u32  mapWords      room for section 3, in units of two entries
//        u16  typeCounts[10 or 20]   records of each type; 20 with alpha; their sum is recordCount
//        u16  palette[256]  RGB565
//   2  change runs, only in blocks of two frames and more: for each frame but the first, run bytes
//      that cover its tiles in raster order. Bit 7: the run's tiles have new map entries in section
//      3; bits 6-0: run length minus 1.
//   3  map entries, u16: the first frame's map (tileCount entries), then the entries of the changed
//      runs in the order of section 2. An entry is a flat colour or a record number of this block.
//   4  tile codes, u16 words, tileCount / 5 a frame: five 3-bit codes a word, lowest bits first.
//        0      flat: the map entry is the RGB565 colour of all 64 pixels
//        1 - 6  record: the map entry numbers a record; the code picks the painting path
//        7      empty: 64 pixels of value 0, transparent; the map entry is free
//   5  tile records, sorted by type. Types 0-9 are colour records; types 10-19 (alpha clips only)
//      are the same ten colour layouts, each followed by an alpha record.
//        0      64 RGB565 colours
//        1      64 palette indices
//        2, 3   four runs: u16 header, bits 4-0, 9-5, 14-10 = lengths of runs A, B, C minus 1, bit
//               15 = colours are palette indices (else RGB565); colours of A and B; of C when
//               A + B < 64; of D, which covers the rest, when A + B + C < 64
//        4, 5   groups of two short runs: control byte, bits 7-5 and 4-2 = lengths minus 1, bit 1
//               and bit 0 = first and second colour is a palette index (else RGB565); when the
//               first run reaches pixel 64 only its colour follows and the record ends
//        6, 7   groups of two palette runs: control byte, bits 7-4 and 3-0 = lengths minus 1, then
//               an index a run. The first two groups are always complete; later ones end after the
//               first index when the first run reaches pixel 64
//        8, 9   two colours: control byte, bits 5-0 = p (0 to 62), bit 6 and bit 7 = first and
//               second colour is a palette index (else RGB565); p + 1 pixels of the first colour,
//               63 - p of the second
//      The two types of a pair differ only in the path along which their runs are painted: rows for
//      the even type, columns for the odd one.
//        alpha  0x20 | level: the whole tile has that level (0 transparent to 15 opaque). Else a
//               byte with bits 7-5 zero, then run bytes: bits 7-4 = length minus 1, bits 3-0 =
//               level, until 64 pixels are covered.

#include <cstddef>
#include <cstdint>

#include "common/limits.h"

namespace clip {

inline constexpr int kVersion = 19;
inline constexpr int kHeaderBytes = 10;
inline constexpr int kBlockHeaderBytes = 10;  // before the type counts
inline constexpr int kPaletteEntries = 256;
inline constexpr int kPaletteBytes = kPaletteEntries * 2;

inline constexpr int kTileSize = 8;
inline constexpr int kTilePixels = kTileSize * kTileSize;
inline constexpr int kTilesAcross = kFrameWidth / kTileSize;
inline constexpr int kMaxTiles = kTilesAcross * (kFrameHeight / kTileSize);
inline constexpr int kFramesPerBlock = 16;
inline constexpr int kMaxFrames = 256;
inline constexpr int kMaxBlocks = kMaxFrames / kFramesPerBlock;
inline constexpr int kCodesPerWord = 5;
inline constexpr int kCodeBits = 3;  // the first tile's are the lowest; the highest bit is unused
inline constexpr int kCodeMask = (1 << kCodeBits) - 1;
inline constexpr int kWordCodeBits = kCodesPerWord * kCodeBits;
inline constexpr int kColourTypes = 10;
inline constexpr int kMaxTypeSlots = 2 * kColourTypes;
inline constexpr int kMaxRunBytes = 200000;  // run bytes of one block
inline constexpr int kMaxRunLength = 128;    // tiles in one change run
inline constexpr uint8_t kRunChanged = 0x80;
inline constexpr uint8_t kRunLengthMask = 0x7F;

enum TileCode : int { CODE_FLAT = 0, CODE_FIRST_RECORD = 1, CODE_LAST_RECORD = 6, CODE_EMPTY = 7 };

enum ColourType : int {
    TYPE_RAW = 0,
    TYPE_PALETTE = 1,
    TYPE_FOUR_RUNS = 2,     // and 3
    TYPE_SHORT_RUNS = 4,    // and 5
    TYPE_PALETTE_RUNS = 6,  // and 7
    TYPE_TWO_COLOURS = 8,   // and 9
};

inline constexpr uint16_t kFourRunsPaletteBit = 0x8000;
inline constexpr uint8_t kAlphaFlatBit = 0x20;
inline constexpr uint8_t kAlphaOneByteMask = 0xE0;
inline constexpr int kAlphaOpaque = 15;

// The longest colour record is 32 groups of two 1-pixel runs in RGB565 (types 4 and 5), the longest
// alpha record a first byte and 64 runs of one pixel.
inline constexpr int kMaxColourRecordBytes = 32 * 5;
inline constexpr int kMaxAlphaRecordBytes = 1 + kTilePixels;
inline constexpr int kMaxRecordBytes = kMaxColourRecordBytes + kMaxAlphaRecordBytes;

struct FileHeader {
    uint8_t version;
    uint8_t quality;
    uint16_t storedWidth;
    uint16_t height;
    uint8_t alpha;
    uint8_t blockCount;
    uint16_t frameCount;
};

struct BlockHeader {
    uint16_t recordCount;
    uint32_t recordWords;
    uint32_t mapWords;
    uint16_t typeCounts[kMaxTypeSlots];  // 10 or 20 in use
    uint16_t palette[kPaletteEntries];
};

constexpr int typeSlots(int alpha) {
    return kColourTypes * (alpha + 1);
}
constexpr size_t blockHeaderBytes(int alpha) {
    return size_t{kBlockHeaderBytes} + 2 * static_cast<size_t>(typeSlots(alpha)) +
           size_t{kPaletteBytes};
}
constexpr int blocksFor(int frames) {
    return (frames + kFramesPerBlock - 1) / kFramesPerBlock;
}
constexpr int tilesFor(int height) {
    return kTilesAcross * (height / kTileSize);
}
constexpr int codeWordsFor(int tiles) {
    return tiles / kCodesPerWord;
}

// Frames in block `block` (counted from 0): 16, or what is left for the last one.
constexpr int framesInBlock(int block, int blockCount, int frameCount) {
    return block == blockCount - 1 ? frameCount + kFramesPerBlock - kFramesPerBlock * blockCount
                                   : kFramesPerBlock;
}

// Code of tile `position` of a frame whose code words start at `words`.
constexpr int codeAt(const uint16_t* words, int position) {
    return (words[position / kCodesPerWord] >> (kCodeBits * (position % kCodesPerWord))) &
           kCodeMask;
}

// Type of record number `record`: the largest type whose first record number is at most `record`.
// starts[t] is the sum of the counts of the types before t; `slots` is 10 or 20.
constexpr int recordType(const uint32_t* starts, int slots, uint32_t record) {
    int type = 0;
    while (type + 1 < slots && starts[type + 1] <= record) {
        ++type;
    }
    return type;
}

static_assert(kMaxTiles == 3600 && kMaxBlocks == 16 && kMaxRecordBytes < 256);

}  // namespace clip
