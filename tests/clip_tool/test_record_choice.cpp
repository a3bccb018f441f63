// The stages that make records, numbers, maps and bytes.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "clip_tool/pictures.h"
#include "clip_tool/reference.h"
#include "tools/clip/encoder/block_sections.h"
#include "tools/clip/encoder/numbering.h"
#include "tools/clip/encoder/record_choice.h"
#include "tools/clip/encoder/record_forms.h"
#include "tools/clip/encoder/walks.h"
#include "tools/clip/encoder/writer.h"

namespace {

using Bytes = std::vector<uint8_t>;
using ColourRun = maker::Run;  // a test case has a Run of its own

// Colours 0x100 to 0x10F are palette entries 0 to 15; all others are outside.
maker::PaletteIndex sixteen() {
    maker::PaletteColours colours{};
    for (size_t i = 0; i < colours.size(); ++i) {
        colours[i] = static_cast<uint16_t>(0x100 + std::min<size_t>(i, 15));
    }
    return maker::PaletteIndex(colours);
}

struct Coded {
    int type;
    Bytes bytes;
};

Coded code(const std::vector<ColourRun>& runs) {
    const maker::PaletteIndex palette = sixteen();
    const int count = static_cast<int>(runs.size());
    const maker::RunForm form = maker::smallestRunForm(runs.data(), count, palette);
    Coded coded{form.type, {}};
    maker::appendRuns(form.type, runs.data(), count, palette, coded.bytes);
    EXPECT_EQ(coded.bytes.size(), static_cast<size_t>(form.bytes));
    return coded;
}

void expectCoded(const std::vector<ColourRun>& runs, int type, const Bytes& bytes) {
    const Coded coded = code(runs);
    EXPECT_EQ(coded.type, type);
    EXPECT_EQ(coded.bytes, bytes);
}

// Type 8: split in bits 5-0 (pixels of the first colour minus 1), 0x40 and 0x80 for indices.
TEST(TileRecords, TwoRuns_AreTwoColours) {
    expectCoded({{0x101, 1}, {0x102, 63}}, 8, {0xC0, 1, 2});
    expectCoded({{0x101, 63}, {0x102, 1}}, 8, {0xC0 | 62, 1, 2});
    expectCoded({{0x1234, 10}, {0x102, 54}}, 8, {0x80 | 9, 0x34, 0x12, 2});
    expectCoded({{0x102, 10}, {0x1234, 54}}, 8, {0x40 | 9, 2, 0x34, 0x12});
}

TEST(TileRecords, OneRun_IsTwoColoursTwice) {
    expectCoded({{0x103, 64}}, 8, {0xC0, 3, 3});
}

// Type 2: lengths minus 1 in bits 4-0, 9-5 and 14-10, bit 15 for indices.
TEST(TileRecords, ThreeRuns_AreFourRuns) {
    // 10, 20, 34: C holds 32 of the last run, D the rest. 9 | 19 << 5 | 31 << 10 | 0x8000 = 0xFE69
    expectCoded({{0x101, 10}, {0x102, 20}, {0x103, 34}}, 2, {0x69, 0xFE, 1, 2, 3, 3});
    // 32, 16, 16: 31 | 15 << 5 | 15 << 10 | 0x8000 = 0xBDFF
    expectCoded({{0x101, 32}, {0x102, 16}, {0x103, 16}}, 2, {0xFF, 0xBD, 1, 2, 3});
    // One colour outside the palette: all are RGB565. 31 | 15 << 5 | 15 << 10 = 0x3DFF
    expectCoded({{0x101, 32}, {0x4321, 16}, {0x103, 16}}, 2,
                {0xFF, 0x3D, 0x01, 0x01, 0x21, 0x43, 0x03, 0x01});
}

TEST(TileRecords, LongLastRun_IsTheFourth) {
    // 1, 1, 1, 61: 0x8000
    expectCoded({{0x101, 1}, {0x102, 1}, {0x103, 1}, {0x104, 61}}, 2, {0x00, 0x80, 1, 2, 3, 4});
}

TEST(TileRecords, LongMiddleRun_NeedsAnotherType) {
    // 1, 1, 40, 22 makes five pieces of at most 32. Of at most 16: 1 1 16 16 8 16 6, seven palette
    // runs in 4 + 7 bytes; of at most 8: 1 1 8 8 8 8 8 8 8 6, ten short runs in 5 + 10.
    expectCoded({{0x101, 1}, {0x102, 1}, {0x103, 40}, {0x104, 22}}, 6,
                {0x00, 1, 2, 0xFF, 3, 3, 0x7F, 3, 4, 0x50, 4});
}

// Type 4: lengths minus 1 in bits 7-5 and 4-2, indices in bits 1 and 0.
TEST(TileRecords, ShortMixedRuns_AreShortRuns) {
    std::vector<ColourRun> runs;
    Bytes bytes;
    for (int i = 0; i < 4; ++i) {
        runs.push_back({0x105, 8});
        runs.push_back({0x7777, 8});
        bytes.insert(bytes.end(), {0xFE, 5, 0x77, 0x77});
    }
    expectCoded(runs, 4, bytes);
}

TEST(TileRecords, OddShortRuns_EndWithOneColour) {
    std::vector<ColourRun> runs;
    Bytes bytes;
    for (int i = 0; i < 4; ++i) {  // 7 + 7 pixels each
        runs.push_back({0x105, 7});
        runs.push_back({0x7777, 7});
        bytes.insert(bytes.end(), {0xDA, 5, 0x77, 0x77});
    }
    runs.push_back({0x7778, 8});  // the last 8 pixels: 7 << 5
    bytes.insert(bytes.end(), {0xE0, 0x78, 0x77});
    expectCoded(runs, 4, bytes);
}

// Every sequence must come back from the smallest form; the reference decoder reads it.
TEST(TileRecords, RandomSequences_ComeBackFromEveryForm) {
    pictures::Random random(77);
    std::set<int> types;
    maker::PaletteColours colours{};
    for (size_t i = 0; i < colours.size(); ++i) {
        colours[i] = static_cast<uint16_t>(i * 4099 + 7);
    }
    std::sort(colours.begin(), colours.end());
    for (int i = 0; i < 3000; ++i) {
        const maker::Tile tile = pictures::tile(random, false);
        ColourRun runs[64];
        const int count = maker::findRuns(tile.colours, runs);
        const maker::PaletteIndex palette(colours);
        const maker::RunForm form = maker::smallestRunForm(runs, count, palette);
        maker::BlockSections block;
        block.typeCounts[static_cast<size_t>(form.type)] = 1;
        block.palette = colours;
        block.entries.assign(80, 0);
        block.codeWords.assign(16, 1);  // the first tile of each word: code 1
        maker::appendRuns(form.type, runs, count, palette, block.records);
        ASSERT_EQ(block.records.size(), static_cast<size_t>(form.bytes));
        Bytes clip;
        maker::appendFileHeader(clip, {19, 100, 640, 8, 0, 1, 1});
        maker::appendBlock(clip, block, 0);
        const reference::Picture picture = reference::decode(reference::parse(clip))[0];
        for (size_t pixel = 0; pixel < 64; ++pixel) {
            ASSERT_EQ(picture.pixels[pixel / 8 * 640 + pixel % 8], tile.colours[pixel])
                << "tile " << i << ", type " << form.type;
        }
        types.insert(form.type);
    }
    EXPECT_EQ(types, (std::set<int>{2, 4, 6, 8}));
}

TEST(TileRecords, Plain_TakesIndicesWhenAllAreThere) {
    maker::Sequence picture{};
    for (size_t i = 0; i < 64; ++i) {
        picture[i] = static_cast<uint16_t>(0x100 + i % 16);
    }
    EXPECT_EQ(maker::plainType(picture, sixteen()), 1);
    picture[63] = 0xBEEF;
    EXPECT_EQ(maker::plainType(picture, sixteen()), 0);
    Bytes bytes;
    maker::appendPlain(0, picture, sixteen(), bytes);
    ASSERT_EQ(bytes.size(), 128u);
    EXPECT_EQ(bytes[127], 0xBE);
    EXPECT_EQ(bytes[126], 0xEF);
}

TEST(TileRecords, Alpha_OneLevelIsOneByte) {
    maker::AlphaTile alpha{};
    alpha.fill(7);
    Bytes bytes;
    maker::appendAlpha(alpha, bytes);
    EXPECT_EQ(bytes, Bytes{0x27});
    EXPECT_EQ(maker::alphaBytes(alpha), 1);
}

TEST(TileRecords, Alpha_RunsAreAtMostSixteenLong) {
    maker::AlphaTile alpha{};
    std::fill(alpha.begin(), alpha.begin() + 40, uint8_t{15});
    alpha[63] = 3;
    Bytes bytes;
    maker::appendAlpha(alpha, bytes);
    // 16 + 16 + 8 of 15, 16 + 7 of 0, 1 of 3
    EXPECT_EQ(bytes, (Bytes{0x00, 0xFF, 0xFF, 0x7F, 0xF0, 0x60, 0x03}));
    EXPECT_EQ(maker::alphaBytes(alpha), 7);
}

// Sizes as the layouts give them: raw 128, palette 64, the shortest of each run type.
TEST(TileRecords, Fillers_AreWholeRecords) {
    const size_t sizes[10] = {128, 64, 4, 4, 12, 12, 6, 6, 3, 3};
    for (size_t type = 0; type < 20; ++type) {
        maker::BlockSections block;
        block.typeCounts[type] = 1;
        block.palette[0] = 0x1234;
        block.entries.assign(80, 0);
        block.codeWords.assign(16, 1);
        maker::appendFiller(static_cast<int>(type), block.records);
        EXPECT_EQ(block.records.size(), sizes[type % 10] + (type < 10 ? 0 : 1));
        Bytes clip;
        maker::appendFileHeader(clip, {19, 100, 640, 8, 1, 1, 1});
        maker::appendBlock(clip, block, 1);
        const reference::Picture picture = reference::decode(reference::parse(clip))[0];
        EXPECT_EQ(picture.pixels[0], type % 10 == 0 ? 0 : 0x1234);
        EXPECT_EQ(picture.alpha[0], 15);
    }
}

struct Chosen {
    maker::RecordSet set;
    maker::PaletteColours palette;
};

Chosen choose(const std::vector<maker::Tile>& pictures) {
    const std::vector<maker::Shape> shapes = maker::groupShapes(pictures);
    const maker::PaletteColours palette = maker::choosePalette(maker::weighColours(shapes));
    return {maker::chooseRecords(pictures, shapes, maker::PaletteIndex(palette)), palette};
}

maker::Tile stripes() {
    maker::Tile tile{};
    tile.alpha.fill(15);
    for (size_t i = 0; i < 64; ++i) {
        tile.colours[i] = static_cast<uint16_t>(i < 40 ? 0x0801 : 0x1002);
    }
    return tile;
}

TEST(Records, MirrorImages_UseOneRecordWithFourCodes) {
    std::vector<maker::Tile> tiles;
    for (int way = 0; way < 4; ++way) {
        tiles.push_back(pictures::turned(stripes(), way));
    }
    tiles.erase(tiles.begin() + 1);  // left-right changes nothing in whole rows
    tiles.pop_back();
    const maker::RecordSet set = choose(tiles).set;
    ASSERT_EQ(set.records.size(), 1u);
    EXPECT_EQ(set.records[0].length, 3u);
    EXPECT_NE(set.uses[0].code, set.uses[1].code);
}

TEST(Records, QuarterTurns_AreRunsAlongColumns) {
    // Whole columns of one colour: by columns two runs, by rows sixteen.
    const maker::RecordSet set = choose({pictures::turned(stripes(), 4)}).set;
    ASSERT_EQ(set.records.size(), 1u);
    EXPECT_EQ(set.records[0].length, 3u);
}

TEST(Records, Noise_IsStoredAsItStands) {
    pictures::Random random(2);
    maker::Tile tile = stripes();
    for (uint16_t& colour : tile.colours) {
        colour = static_cast<uint16_t>(random.below(65536));
    }
    // All 64 colours have room in the palette: 64 indices.
    const maker::RecordSet set = choose({tile}).set;
    ASSERT_EQ(set.records.size(), 1u);
    EXPECT_EQ(set.records[0].type, 1);
    EXPECT_EQ(set.uses[0].code, 1);
}

TEST(Records, TranslucentTile_HasAnAlphaRecord) {
    maker::Tile tile = stripes();
    tile.alpha.fill(4);
    const maker::RecordSet set = choose({tile}).set;
    ASSERT_EQ(set.records.size(), 1u);
    EXPECT_GE(set.records[0].type, 10);
    EXPECT_EQ(set.bytes.back(), 0x24);
}

TEST(Records, EmptyTileRecord_TakesTheFirstRunRecord) {
    maker::RecordSet set;
    set.bytes = {1, 2, 3};
    set.records = {{1, 0, 1}, {10, 1, 1}, {14, 2, 1}};
    EXPECT_EQ(maker::emptyTileRecord(set), 2u);
    EXPECT_EQ(set.records.size(), 3u);
}

TEST(Records, EmptyTileRecord_IsAddedWhereNoneIs) {
    maker::RecordSet set;
    EXPECT_EQ(maker::emptyTileRecord(set), 0u);
    ASSERT_EQ(set.records.size(), 1u);
    EXPECT_EQ(set.records[0].type, 8);
    EXPECT_EQ(set.bytes, (Bytes{0xC0, 0, 0}));
}

using Uses = std::vector<maker::TileUse>;
using Numbers = std::vector<uint16_t>;

TEST(Numbering, Records_AreSortedByTypeInOrder) {
    maker::NumberHistory history;
    const std::vector<uint8_t> types{8, 0, 4, 0, 8};
    const maker::Numbering numbering = maker::numberRecords(types, {}, history);
    EXPECT_EQ(numbering.numberOf, (Numbers{3, 0, 2, 1, 4}));
    EXPECT_EQ(numbering.recordAt, (std::vector<uint32_t>{1, 3, 2, 0, 4}));
    EXPECT_EQ(numbering.typeCounts[0], 2);
    EXPECT_EQ(numbering.typeCounts[4], 1);
    EXPECT_EQ(numbering.typeCounts[8], 2);
}

// Numbers 0 and 1 show look 10 at position 5 with code 1.
maker::NumberHistory twoNumbersTaken() {
    maker::NumberHistory history;
    history.add({0, 5, 1, 10}, 0);
    history.add({0, 5, 1, 10}, 1);
    return history;
}

TEST(Numbering, NumberWithAnotherLookHere_IsLeftToAnotherRecord) {
    maker::NumberHistory history = twoNumbersTaken();
    const std::vector<uint8_t> types{2, 2, 2};
    const maker::Numbering numbering = maker::numberRecords(types, Uses{{0, 5, 1, 11}}, history);
    EXPECT_EQ(numbering.numberOf, (Numbers{2, 0, 1}));
    EXPECT_EQ(numbering.recordAt.size(), 3u);
}

TEST(Numbering, SameLookOtherCodeOrPosition_KeepsTheNumber) {
    for (const maker::TileUse& use :
         Uses{{0, 5, 1, 10}, {0, 5, 2, 11}, {0, 6, 1, 11}, {0, 4, 1, 11}}) {
        maker::NumberHistory history = twoNumbersTaken();
        const std::vector<uint8_t> types{2};
        EXPECT_EQ(maker::numberRecords(types, Uses{use}, history).numberOf, Numbers{0});
    }
}

TEST(Numbering, AllUsesOfARecord_MustAgree) {
    maker::NumberHistory history = twoNumbersTaken();
    history.add({0, 9, 3, 20}, 2);
    const std::vector<uint8_t> types{2, 2, 2, 2};
    const Uses uses{{3, 5, 1, 11}, {3, 9, 3, 21}};
    EXPECT_EQ(maker::numberRecords(types, uses, history).numberOf, (Numbers{0, 1, 2, 3}));
}

TEST(Numbering, Block_IsAddedToTheHistory) {
    maker::NumberHistory history;
    const std::vector<uint8_t> types{2};
    maker::numberRecords(types, Uses{{0, 7, 1, 1}}, history);
    EXPECT_TRUE(history.clashes({0, 7, 1, 2}, 0));
    EXPECT_FALSE(history.clashes({0, 7, 1, 1}, 0));
}

TEST(Numbering, History_KeepsApartWhatItHoldsByTheThousand) {
    maker::NumberHistory history;
    for (uint16_t position = 0; position < 3600; ++position) {
        for (size_t number = 0; number < 40; ++number) {
            history.add({0, position, 6, position * 100 + number}, number * 1000 + 65000 % 1000);
        }
    }
    EXPECT_FALSE(history.clashes({0, 3599, 6, 359939}, 39000));
    EXPECT_TRUE(history.clashes({0, 3599, 6, 359938}, 39000));
    EXPECT_FALSE(history.clashes({0, 3599, 5, 359938}, 39000));
}

TEST(Numbering, NoFreeNumber_PutsFillersIn) {
    maker::NumberHistory history;
    history.add({0, 5, 1, 10}, 1);
    history.add({0, 5, 1, 10}, 2);
    const std::vector<uint8_t> types{0, 2, 9};
    // Record 1 is the only one of its type and would be number 1.
    const maker::Numbering numbering = maker::numberRecords(types, Uses{{1, 5, 1, 11}}, history);
    EXPECT_EQ(numbering.numberOf, (Numbers{0, 3, 4}));
    EXPECT_EQ(numbering.recordAt, (std::vector<uint32_t>{0, maker::kFiller, maker::kFiller, 1, 2}));
    EXPECT_EQ(numbering.typeCounts[2], 3);
}

TEST(Numbering, TooManyFillers_LetTheClashBe) {
    // One record may have 64 fillers: numbers 0 to 64. All of them show something else.
    maker::NumberHistory history;
    for (size_t number = 0; number <= 64; ++number) {
        history.add({0, 5, 1, 10}, number);
    }
    const std::vector<uint8_t> types{2};
    const maker::Numbering numbering = maker::numberRecords(types, Uses{{0, 5, 1, 11}}, history);
    EXPECT_EQ(numbering.numberOf, Numbers{0});
    EXPECT_EQ(numbering.recordAt.size(), 1u);
}

TEST(Numbering, SearchThatIsGivenUp_TakesNobodysNumber) {
    // Records 0 and 1 clash with the 2000 numbers that are tried, and both come to number 2000.
    maker::NumberHistory history;
    for (size_t number = 0; number < 2000; ++number) {
        history.add({0, 5, 1, 10}, number);
    }
    const std::vector<uint8_t> types(2010, 2);
    const Uses uses{{0, 5, 1, 11}, {1, 5, 1, 12}};
    const maker::Numbering numbering = maker::numberRecords(types, uses, history);
    EXPECT_EQ(numbering.numberOf[0], 2000);
    std::vector<uint32_t> records = numbering.recordAt;
    std::sort(records.begin(), records.end());
    ASSERT_EQ(records.size(), 2010u);
    for (uint32_t record = 0; record < 2010; ++record) {
        EXPECT_EQ(records[record], record);
    }
}

TEST(Numbering, FullBlock_GetsNoFiller) {
    // The last record is the only one of its type, and the last number shows something else.
    maker::NumberHistory history;
    history.add({0, 5, 1, 10}, 65534);
    std::vector<uint8_t> types(65534, 2);
    types.push_back(9);
    const Uses uses{{65534, 5, 1, 11}};
    EXPECT_EQ(maker::numberRecords(types, uses, history).recordAt.size(), 65535u);
}

TEST(Maps, Changes_CoverTheFrameInRuns) {
    std::vector<uint16_t> before(400, 7);
    std::vector<uint16_t> after = before;
    after[0] = 1;
    after[1] = 2;
    after[399] = 3;
    Bytes runs;
    std::vector<uint16_t> entries;
    maker::appendChanges(before, after, runs, entries);
    // 2 changed, 397 = 3 x 128 + 13 not, 1 changed
    EXPECT_EQ(runs, (Bytes{0x81, 0x7F, 0x7F, 0x7F, 0x0C, 0x80}));
    EXPECT_EQ(entries, (std::vector<uint16_t>{1, 2, 3}));
}

TEST(Maps, LongChange_IsCutAt128) {
    Bytes runs;
    std::vector<uint16_t> entries;
    maker::appendChanges(std::vector<uint16_t>(130, 0), std::vector<uint16_t>(130, 9), runs,
                         entries);
    EXPECT_EQ(runs, (Bytes{0xFF, 0x81}));
    EXPECT_EQ(entries.size(), 130u);
}

TEST(Maps, Codes_AreFiveToAWordLowestFirst) {
    std::vector<uint16_t> words;
    maker::appendCodeWords(std::vector<uint8_t>{1, 2, 3, 4, 5, 7, 0, 0, 0, 6}, words);
    // 1 | 2 << 3 | 3 << 6 | 4 << 9 | 5 << 12 = 0x58D1; 7 | 6 << 12 = 0x6007
    EXPECT_EQ(words, (std::vector<uint16_t>{0x58D1, 0x6007}));
}

TEST(Writer, Block_HasItsSectionsInOrder) {
    maker::BlockSections block;
    block.typeCounts[8] = 2;
    block.palette[1] = 0xABCD;
    block.runs = {0x80};
    block.entries = {0x1122};
    block.codeWords = {0x3344};
    block.records = {1, 2, 3, 4, 5};
    Bytes out;
    maker::appendBlock(out, block, 0);
    ASSERT_EQ(out.size(), 10u + 20 + 512 + 1 + 2 + 2 + 5);
    // 2 records, 2 words for 5 bytes, 1 word for 1 entry
    const Bytes header{2, 0, 2, 0, 0, 0, 1, 0, 0, 0};
    EXPECT_TRUE(std::equal(header.begin(), header.end(), out.begin()));
    EXPECT_EQ(out[10 + 16], 2);
    EXPECT_EQ(out[30 + 2], 0xCD);
    EXPECT_EQ(out[30 + 3], 0xAB);
    EXPECT_EQ(Bytes(out.begin() + 542, out.end()),
              (Bytes{0x80, 0x22, 0x11, 0x44, 0x33, 1, 2, 3, 4, 5}));
}

TEST(Writer, AlphaBlock_HasTwentyCounts) {
    maker::BlockSections block;
    block.typeCounts[19] = 1;
    Bytes out;
    maker::appendBlock(out, block, 1);
    EXPECT_EQ(out.size(), 10u + 40 + 512);
    EXPECT_EQ(out[10 + 38], 1);
}

}  // namespace
