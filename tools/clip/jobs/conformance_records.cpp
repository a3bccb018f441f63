// The clips that test tile records: types, paths, forms, levels.
#include <algorithm>

#include "tools/clip/jobs/conformance_cases.h"
#include "tools/clip/jobs/conformance_parts.h"

namespace maker::conformance {

namespace {

void showAlongEachPath(Block& block, int record) {
    for (int code = clip::CODE_FIRST_RECORD; code <= clip::CODE_LAST_RECORD; ++code) {
        block.show(record, code);
    }
}

template <int type>
Bytes paths() {
    Block block(1);
    showAlongEachPath(block, block.add(type, sample(type)));
    return clipOf(block);
}

template <int type>
Bytes alphaPaths() {
    Block block(1);
    showAlongEachPath(block,
                      block.add(type, joined(sample(type - clip::kColourTypes), sampleLevels())));
    return clipOf(block, 1);
}

constexpr Case kPaths[] = {
    {"type-0", "64 RGB565 colours: row by row, whatever the code.", Expected::OK, paths<0>},
    {"type-1", "64 palette indices: row by row, whatever the code.", Expected::OK, paths<1>},
    {"type-2", "Four runs, painted by rows, along the paths of the codes 1 to 6.", Expected::OK,
     paths<2>},
    {"type-3", "Four runs, painted by columns, along the paths of the codes 1 to 6.", Expected::OK,
     paths<3>},
    {"type-4", "Short runs, painted by rows, along the paths of the codes 1 to 6.", Expected::OK,
     paths<4>},
    {"type-5", "Short runs, painted by columns, along the paths of the codes 1 to 6.", Expected::OK,
     paths<5>},
    {"type-6", "Palette runs, painted by rows, along the paths of the codes 1 to 6.", Expected::OK,
     paths<6>},
    {"type-7", "Palette runs, painted by columns, along the paths of the codes 1 to 6.",
     Expected::OK, paths<7>},
    {"type-8", "Two colours, painted by rows, along the paths of the codes 1 to 6.", Expected::OK,
     paths<8>},
    {"type-9", "Two colours, painted by columns, along the paths of the codes 1 to 6.",
     Expected::OK, paths<9>},
    {"type-10", "64 RGB565 colours, with an alpha part.", Expected::OK, alphaPaths<10>},
    {"type-11", "64 palette indices, with an alpha part.", Expected::OK, alphaPaths<11>},
    {"type-12",
     "Four runs, painted by rows, with an alpha part, which goes by rows along every path.",
     Expected::OK, alphaPaths<12>},
    {"type-13",
     "Four runs, painted by columns, with an alpha part, which goes by rows along every path.",
     Expected::OK, alphaPaths<13>},
    {"type-14",
     "Short runs, painted by rows, with an alpha part, which goes by rows along every path.",
     Expected::OK, alphaPaths<14>},
    {"type-15",
     "Short runs, painted by columns, with an alpha part, which goes by rows along every path.",
     Expected::OK, alphaPaths<15>},
    {"type-16",
     "Palette runs, painted by rows, with an alpha part, which goes by rows along every path.",
     Expected::OK, alphaPaths<16>},
    {"type-17",
     "Palette runs, painted by columns, with an alpha part, which goes by rows along every path.",
     Expected::OK, alphaPaths<17>},
    {"type-18",
     "Two colours, painted by rows, with an alpha part, which goes by rows along every path.",
     Expected::OK, alphaPaths<18>},
    {"type-19",
     "Two colours, painted by columns, with an alpha part, which goes by rows along every path.",
     Expected::OK, alphaPaths<19>},
};

// A record of each shape of four runs, with palette indices and with RGB565.
Bytes fourRuns() {
    Block block(1);
    for (const int type : {2, 3}) {
        for (const int first : {0, kBeside}) {
            for (const Bytes& record :
                 {runsOf(type, {32, 32}, first), runsOf(type, {16, 32, 16}, first),
                  runsOf(type, {31, 1, 32}, first), runsOf(type, {1, 1, 1, 61}, first),
                  runsOf(type, {32, 31, 1}, first), runsOf(type, {32, 30, 1, 1}, first),
                  runsOf(type, {1, 32, 30, 1}, first)}) {
                block.addShown(type, record);
            }
        }
    }
    return clipOf(block);
}

// Bits 14 to 10 of the header of a record that ends with run B: of 1 and of 32 pixels.
Bytes fourRunsFreeBits() {
    Block block(1);
    for (const uint8_t high : {uint8_t{0x03}, uint8_t{0x7F}}) {
        block.addShown(2, withByte(runsOf(2, {32, 32}, kBeside), 1, high));
    }
    return clipOf(block);
}

// Groups of two runs in the four widths that their colours can have together.
Bytes shortRunWidths() {
    Block block(1);
    constexpr int kIn = 9;
    constexpr int kOut = kBeside + 9;
    for (const int type : {4, 5}) {
        for (const auto& [a, b] : {std::pair(kIn, kIn), std::pair(kIn, kOut), std::pair(kOut, kIn),
                                   std::pair(kOut, kOut)}) {
            block.addShown(type, runs(type, {{colour(a), 8},
                                             {colour(b + 1), 8},
                                             {colour(a + 2), 8},
                                             {colour(b + 3), 8},
                                             {colour(a + 4), 8},
                                             {colour(b + 5), 8},
                                             {colour(a + 6), 8},
                                             {colour(b + 7), 8}}));
        }
    }
    return clipOf(block);
}

Bytes runLengths(int type, int longest) {
    Block block(1);
    for (const int rows : {type, type + 1}) {
        for (int length = 1; length <= longest; ++length) {
            block.addShown(rows, repeated(rows, length, 3 * length));
        }
    }
    return clipOf(block);
}

Bytes shortRunLengths() {
    return runLengths(clip::TYPE_SHORT_RUNS, 8);
}

Bytes paletteRunLengths() {
    return runLengths(clip::TYPE_PALETTE_RUNS, 16);
}

// The control byte of the last group stands before its only colour, of one byte; its lower bits but
// bit 1 are free.
Bytes shortRunFreeBits() {
    Block block(1);
    const Bytes record = runsOf(4, {8, 8, 8, 8, 8, 8, 8, 4, 4});
    for (const uint8_t bits : {uint8_t{0x00}, uint8_t{0x01}, uint8_t{0x1C}, uint8_t{0x1D}}) {
        block.addShown(4, withByte(record, record.size() - 2, static_cast<uint8_t>(0x62 | bits)));
    }
    return clipOf(block);
}

Bytes paletteRunGroups() {
    Block block(1);
    for (const int type : {6, 7}) {
        for (const Bytes& record :
             {runsOf(type, {16, 16, 16, 16}), runsOf(type, {16, 16, 16, 15, 1}),
              runsOf(type, {16, 16, 16, 14, 1, 1}), runsOf(type, {1, 1, 1, 1, 16, 16, 16, 12}),
              runsOf(type, {1, 16, 1, 16, 1, 16, 13})}) {
            block.addShown(type, record);
        }
    }
    return clipOf(block);
}

// Bits 3 to 0 of the last control byte, which stands before the only index of its group.
Bytes paletteRunFreeBits() {
    Block block(1);
    const Bytes record = runsOf(6, {16, 16, 16, 8, 8});
    for (const uint8_t bits : {uint8_t{0}, uint8_t{15}}) {
        block.addShown(6, withByte(record, record.size() - 2, static_cast<uint8_t>(0x70 | bits)));
    }
    return clipOf(block);
}

Bytes twoColourSplits() {
    Block block(1);
    for (const int type : {8, 9}) {
        for (int length = 1; length < clip::kTilePixels; ++length) {
            const int a = length % 2 == 0 ? 7 : kBeside + 7;
            const int b = length / 2 % 2 == 0 ? 8 : kBeside + 8;
            const uint16_t record =
                block.add(type, runs(type, {{colour(a), length}, {colour(b), 64 - length}}));
            if (length <= 4 || length % 8 == 0 || length >= 60) {
                block.show(record, 1);
            }
        }
    }
    return clipOf(block);
}

Bytes paletteEnds() {
    Block block(1);
    block.colours[0] = 0x0001;
    block.colours[255] = 0xFFFE;
    block.addShown(1, withByte(Bytes(64, 0), 63, 255));
    block.addShown(2, Bytes{0xFF, 0x83, 0, 255});
    block.addShown(4, Bytes{0xFF, 0, 255, 0xFF, 255, 0, 0xFF, 0, 255, 0xFF, 255, 0});
    block.addShown(6, Bytes{0xFF, 0, 255, 0xFF, 255, 0});
    block.addShown(8, Bytes{0xC0 | 31, 0, 255});
    return clipOf(block);
}

// As many bytes as each type can take.
Bytes longestRecords() {
    Block block(1);
    for (int type = clip::kColourTypes; type < clip::kMaxTypeSlots; ++type) {
        const int colourType = type - clip::kColourTypes;
        Bytes part{0};
        for (int pixel = 0; pixel < clip::kTilePixels; ++pixel) {
            part.push_back(static_cast<uint8_t>(pixel * 7 % 16));
        }
        switch (colourType & ~1) {
            case clip::TYPE_SHORT_RUNS:
                block.addShown(type, joined(repeated(colourType, 1, kBeside), part));
                break;
            case clip::TYPE_PALETTE_RUNS:
                block.addShown(type, joined(repeated(colourType, 1, 1), part));
                break;
            case clip::TYPE_FOUR_RUNS:
                block.addShown(type, joined(runsOf(colourType, {1, 2, 3, 58}, kBeside), part));
                break;
            default:
                block.addShown(type, joined(colourType >= clip::TYPE_TWO_COLOURS
                                                ? runsOf(colourType, {30, 34}, kBeside)
                                                : sample(colourType),
                                            part));
                break;
        }
    }
    return clipOf(block, 1);
}

Bytes oneByteLevels() {
    Block block(1);
    for (int each = 0; each <= clip::kAlphaOpaque; ++each) {
        block.addShown(18, joined(sample(8), level(each)));
    }
    return clipOf(block, 1);
}

Bytes levelRuns() {
    Block block(1);
    for (int length = 1; length <= 16; ++length) {
        Bytes part{0};
        int each = 0;
        for (int covered = 0; covered < clip::kTilePixels; covered += length) {
            const int rest = std::min(length, clip::kTilePixels - covered);
            part.push_back(static_cast<uint8_t>((rest - 1) << 4 | each++ % 16));
        }
        block.addShown(18, joined(sample(8), part));
    }
    return clipOf(block, 1);
}

Bytes levelFirstByte() {
    Block block(1);
    for (const uint8_t first :
         {uint8_t{0}, uint8_t{1}, uint8_t{0x0F}, uint8_t{0x10}, uint8_t{0x1F}}) {
        block.addShown(12, joined(sample(2), withByte(sampleLevels(), 0, first)));
    }
    return clipOf(block, 1);
}

Bytes opaqueRecords() {
    Block block(1);
    for (int type = 0; type < clip::kColourTypes; ++type) {
        block.addShown(type, sample(type));
    }
    block.addShown(10, joined(sample(0), level(4)));
    return clipOf(block, 1);
}

constexpr Case kRecords[] = {
    {"four-runs", "Types 2 and 3 with two, three and four runs, of 1 and 32 pixels.", Expected::OK,
     fourRuns},
    {"four-runs-free-bits", "The length of run C means nothing when A and B fill the tile.",
     Expected::OK, fourRunsFreeBits},
    {"short-runs-widths", "Types 4 and 5: each colour of a group is an index or RGB565.",
     Expected::OK, shortRunWidths},
    {"short-runs-lengths", "Types 4 and 5 in runs of 1 to 8 pixels; some end with a first run.",
     Expected::OK, shortRunLengths},
    {"short-runs-free-bits",
     "What a last group says of a second run that it does not have is free.", Expected::OK,
     shortRunFreeBits},
    {"palette-runs-groups",
     "Types 6 and 7: the first two groups are complete, the later ones may end early.",
     Expected::OK, paletteRunGroups},
    {"palette-runs-lengths", "Types 6 and 7 in runs of 1 to 16 pixels.", Expected::OK,
     paletteRunLengths},
    {"palette-runs-free-bits",
     "The length of a second run that a last group does not have is free.", Expected::OK,
     paletteRunFreeBits},
    {"two-colours", "Types 8 and 9 split after 1 to 63 pixels, with colours of both widths.",
     Expected::OK, twoColourSplits},
    {"palette-ends", "The palette's entries 0 and 255 in every type that has indices.",
     Expected::OK, paletteEnds},
    {"longest-records", "The types 10 to 19 in as many bytes as they can take, 225 at most.",
     Expected::OK, longestRecords},
    {"alpha-one-byte", "Alpha parts of one byte: the levels 0 to 15. The colours stay.",
     Expected::OK, oneByteLevels},
    {"alpha-runs", "Alpha parts in runs of 1 to 16 pixels.", Expected::OK, levelRuns},
    {"alpha-first-byte", "The first byte before alpha runs is anything up to 0x1F.", Expected::OK,
     levelFirstByte},
    {"alpha-opaque-records", "The types 0 to 9 of a clip with alpha have no alpha part: opaque.",
     Expected::OK, opaqueRecords},
};

}  // namespace

Chapter pathCases() {
    return {"Record types and paths", kPaths};
}

Chapter recordCases() {
    return {"Forms of records", kRecords};
}

}  // namespace maker::conformance
