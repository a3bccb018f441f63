// The clips that test map entries, change runs, tile codes, blocks and the file header.
#include <algorithm>

#include "tools/clip/jobs/conformance_cases.h"
#include "tools/clip/jobs/conformance_parts.h"

namespace maker::conformance {

namespace {

constexpr int kFull = clip::kFramesPerBlock;
constexpr int kRowTiles = clip::kTilesAcross;

// Flat colours in all tiles, others in each frame.
Block colourful(int frames, int lines, int seed = 0) {
    Block block(frames, lines);
    for (int frame = 0; frame < frames; ++frame) {
        for (int tile = 0; tile < clip::tilesFor(lines); ++tile) {
            block.set(frame, tile, colour(seed + 997 * frame + 31 * tile), clip::CODE_FLAT);
        }
    }
    return block;
}

Bytes flatColours() {
    Block block(1);
    for (const int entry :
         {0x0000, 0x0001, 0x001F, 0x0020, 0x07E0, 0x0800, 0xF800, 0x8410, 0xFFFF}) {
        block.show(entry, clip::CODE_FLAT);
    }
    return clipOf(block, 1);
}

// An empty tile's entry: a number that there is not, a record of each kind, 0.
Bytes emptyTiles(int alpha) {
    Block block(1);
    const int slots = alpha == 0 ? 0 : clip::kColourTypes;
    for (int type = 0; type < clip::kColourTypes; ++type) {
        block.show(
            block.add(type + slots, alpha == 0 ? sample(type) : joined(sample(type), level(9))),
            clip::CODE_EMPTY);
    }
    block.show(clip::kColourTypes, clip::CODE_EMPTY);
    block.show(0xFFFF, clip::CODE_EMPTY);
    block.show(colour(1), clip::CODE_FLAT);
    return clipOf(block, alpha);
}

Bytes emptyColour() {
    return emptyTiles(0);
}

Bytes emptyAlpha() {
    return emptyTiles(1);
}

Bytes codeWordBit() {
    Block block(2);
    block.addShown(1, sample(1));
    block.set(0, 4, 0, 6);
    block.codeBits = 0x8000;
    return clipOf(block);
}

// Tile 0: another path of the same record; 1: a record, then a flat tile of the same entry;
// 2: empty and back.
Bytes codeAlone() {
    Block block(4);
    const int record = block.add(2, sample(2));
    for (int frame = 0; frame < 4; ++frame) {
        block.set(frame, 0, record, clip::CODE_FIRST_RECORD + frame);
        block.set(frame, 1, record, frame % 2 == 0 ? 1 : clip::CODE_FLAT);
        block.set(frame, 2, record, frame % 2 == 0 ? 5 : clip::CODE_EMPTY);
    }
    return clipOf(block, 1);
}

Bytes entryAlone() {
    Block block(4);
    for (int frame = 0; frame < 4; ++frame) {
        block.set(frame, 0, block.add(4, runsOf(4, {8, 8, 8, 8, 8, 8, 8, 8}, 10 * frame)), 3);
        block.set(frame, 79, colour(frame), clip::CODE_FLAT);
    }
    return clipOf(block);
}

Bytes hold() {
    Block block(kFull);
    for (int tile = 0; tile < kRowTiles; ++tile) {
        block.set(0, tile, colour(tile), clip::CODE_FLAT);
    }
    return clipOf(block);
}

Bytes changing(Changes* changes, int frames, int lines) {
    Block block = colourful(frames, lines);
    block.changes = changes;
    return clipOf(block, 0, lines);
}

Bytes everyTile() {
    return changing(changeAll, 3, 16);
}

Bytes oneByOne() {
    return changing(changeOneByOne, 3, clip::kTileSize);
}

Bytes runLengths() {
    return changing(changeIncreasing, 12, kFrameHeight);
}

Bytes sameEntries() {
    Block block(3);
    for (int tile = 0; tile < kRowTiles; ++tile) {
        block.set(0, tile, colour(tile), clip::CODE_FLAT);
    }
    block.changes = changeAll;
    return clipOf(block);
}

Bytes lastTile() {
    Block block(kFull);
    for (int frame = 0; frame < kFull; ++frame) {
        block.set(frame, frame % 2 == 0 ? kRowTiles - 1 : 0, colour(frame), clip::CODE_FLAT);
    }
    return clipOf(block);
}

Bytes mostRuns() {
    return changing(changeOneByOne, kFull, kFrameHeight);
}

constexpr Case kMaps[] = {
    {"flat-tiles", "Code 0: the map entry is the colour, 0 too; opaque.", Expected::OK,
     flatColours},
    {"empty-tiles",
     "Code 7: black, whatever the entry; one that names a record of type 0 or 1 shows its pixels.",
     Expected::OK, emptyColour},
    {"empty-tiles-alpha", "The same with alpha: transparent, also where pixels show.", Expected::OK,
     emptyAlpha},
    {"code-word-bit-15", "Bit 15 of a code word is free.", Expected::OK, codeWordBit},
    {"code-changes-alone", "The code of a tile changes while its entry stays.", Expected::OK,
     codeAlone},
    {"entry-changes-alone", "The entry of a tile changes while its code stays.", Expected::OK,
     entryAlone},
    {"hold", "Sixteen frames of which none changes anything.", Expected::OK, hold},
    {"change-every-tile", "Every tile changes, in runs of 128 over the ends of rows.", Expected::OK,
     everyTile},
    {"change-one-by-one", "Every tile changes, in runs of 1.", Expected::OK, oneByOne},
    {"change-run-lengths", "Runs of 1 to 128 tiles, some changed and some not.", Expected::OK,
     runLengths},
    {"change-to-the-same", "Runs say that entries change, and give the same ones.", Expected::OK,
     sameEntries},
    {"change-last-tile", "The last tile changes in one frame, the first one in the next.",
     Expected::OK, lastTile},
    {"change-most", "The most change runs and map entries: 54,000 and 57,600 in a block.",
     Expected::OK, mostRuns},
};

// Each block has its own palette, and its own number for the record that it shows.
Bytes blocks(int frames) {
    std::vector<Block> list;
    for (int from = 0; from < frames; from += kFull) {
        Block& block = list.emplace_back(std::min(kFull, frames - from));
        const int number = from / kFull;
        std::rotate(block.colours.begin(), block.colours.begin() + number, block.colours.end());
        const int type = number % 4 * 2 + 2;
        while (block.add(type, sample(type)) != number) {
        }
        for (int frame = 0; frame < block.frames(); ++frame) {
            block.set(frame, (from + frame) % kRowTiles, number,
                      (from + frame) % clip::CODE_LAST_RECORD + 1);
            block.set(frame, kRowTiles - 1 - frame, colour(from + frame), clip::CODE_FLAT);
        }
    }
    return clipOf(list);
}

// Two blocks with the same maps and codes, that show other pictures.
Bytes blocksAlike() {
    std::vector<Block> list(2, Block(kFull));
    std::reverse(list[1].colours.begin(), list[1].colours.end());
    for (Block& block : list) {
        const bool first = &block == list.data();
        block.addShown(1, sample(1));
        block.addShown(6, first ? sample(6) : repeated(6, 4, 0));
        for (int frame = 1; frame < kFull; ++frame) {
            block.set(frame, 2, frame % 2, 1 + frame % clip::CODE_LAST_RECORD);
        }
    }
    return clipOf(list);
}

template <int frames>
Bytes framesOf() {
    return blocks(frames);
}

Bytes typeGaps() {
    Block block(1);
    for (const int type : {1, 1, 4, 9, 13, 13, 19}) {
        block.addShown(type, type < clip::kColourTypes
                                 ? sample(type)
                                 : joined(sample(type - clip::kColourTypes), sampleLevels()));
    }
    return clipOf(block, 1);
}

// Two records of every type: the first and the last number of each.
Bytes typeBorders() {
    Block block(1);
    for (int type = 0; type < clip::kMaxTypeSlots; ++type) {
        const Bytes record = sample(type % clip::kColourTypes);
        const Bytes other = withByte(record, record.size() - 1, 77);
        if (type < clip::kColourTypes) {
            block.addShown(type, record);
            block.addShown(type, other);
        } else {
            block.addShown(type, joined(record, level(3)));
            block.addShown(type, joined(other, level(12)));
        }
    }
    return clipOf(block, 1);
}

Bytes mostRecords() {
    Block block(1);
    for (int number = 0; number < UINT16_MAX; ++number) {
        const auto low = static_cast<uint8_t>(number & 0xFF);
        const auto high = static_cast<uint8_t>(number >> 8);
        block.add(9, {0xC0 | 31, low, high});
    }
    for (const int number : {0, 1, 255, 256, 32767, 32768, 65533, 65534}) {
        block.show(number, 1);
    }
    return clipOf(block);
}

Bytes height360() {
    return clipOf(colourful(2, kFrameHeight), 0, kFrameHeight);
}

Bytes storedWidth() {
    return withWord(plainClip(), kWidthAt, 0);
}

Bytes quality() {
    return withByte(plainClip(), kQualityAt, 255);
}

Bytes moreRoom() {
    return withWord(withWord(plainClip(), kRecordRoomAt, 5000), kMapRoomAt, 5000);
}

Bytes noRecordRoom() {
    return withWord(clipOf(colourful(2, clip::kTileSize)), kRecordRoomAt, 0);
}

Bytes trailing() {
    return joined(plainClip(), Bytes(100, 0x13));
}

constexpr Case kBlocks[] = {
    {"frames-1", "One frame: no change runs.", Expected::OK, framesOf<1>},
    {"frames-2", "Two frames: change runs of one frame.", Expected::OK, framesOf<2>},
    {"frames-16", "One full block.", Expected::OK, framesOf<16>},
    {"frames-17", "A last block of one frame; each block has its own palette and records.",
     Expected::OK, framesOf<17>},
    {"frames-32", "Two full blocks.", Expected::OK, framesOf<32>},
    {"frames-256", "The longest clip: 256 frames in 16 blocks.", Expected::OK, framesOf<256>},
    {"blocks-alike", "Two blocks with the same maps and codes, but another palette and record.",
     Expected::OK, blocksAlike},
    {"type-gaps", "A record's type is found by the counts, some of which are 0.", Expected::OK,
     typeGaps},
    {"type-borders", "The first and the last record of each of the 20 types.", Expected::OK,
     typeBorders},
    {"most-records", "65,535 records in a block, with tiles that show the outermost.", Expected::OK,
     mostRecords},
    {"lines-360", "The full height: 3600 tiles.", Expected::OK, height360},
    {"width-ignored", "The header's width says 0: frames are 640 pixels wide.", Expected::OK,
     storedWidth},
    {"quality-ignored", "The header's quality says 255: it is only shown.", Expected::OK, quality},
    {"room-to-spare", "Both rooms are larger than what stands in them; nothing is padded.",
     Expected::OK, moreRoom},
    {"room-of-none", "No record and no room for any.", Expected::OK, noRecordRoom},
    {"trailing-bytes", "100 bytes after the last block, which do no harm.", Expected::OK, trailing},
};

}  // namespace

Chapter mapCases() {
    return {"Map entries, change runs, tile codes", kMaps};
}

Chapter blockCases() {
    return {"Blocks and headers", kBlocks};
}

}  // namespace maker::conformance
