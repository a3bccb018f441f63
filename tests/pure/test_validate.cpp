// The validator against good clips, damaged clips, cut clips and clips with flipped bytes.
#include "clip/validate.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <string>

namespace {

using Bytes = std::vector<uint8_t>;

Bytes read(const std::string& name) {
    std::ifstream file(std::string(TEST_DATA) + "/" + name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

// The bytes alone in a block of memory of their exact size, so that the sanitizer sees any step
// beyond them.
clip::Verdict validateExact(const Bytes& bytes) {
    const auto copy = std::make_unique<uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), copy.get());
    return clip::validate({copy.get(), bytes.size()});
}

class Good : public testing::TestWithParam<const char*> {};

TEST_P(Good, Validate_GoodClipIsOk) {
    const Bytes bytes = read(std::string("clips/") + GetParam());
    std::vector<clip::BlockLayout> layouts;
    const clip::Verdict verdict = clip::validate(bytes, &layouts);
    EXPECT_TRUE(verdict.ok) << verdict.message;
    EXPECT_EQ(verdict.kind, clip::FAULT_NONE);
    EXPECT_EQ(verdict.message, "");
    ASSERT_EQ(layouts.size(), bytes[7]);
    size_t at = 10;
    for (const clip::BlockLayout& layout : layouts) {
        EXPECT_EQ(layout.offset, at);
        at += layout.headerBytes + layout.runBytes + layout.mapBytes + layout.codeBytes +
              layout.recordBytes;
    }
    EXPECT_EQ(at, bytes.size());
}

// Every cut of a clip is a fault of the file's end, at its end.
TEST_P(Good, Validate_CutClipEndsInside) {
    const Bytes bytes = read(std::string("clips/") + GetParam());
    const size_t step = bytes.size() / 300 + 1;
    for (size_t length = 1; length < bytes.size(); length += step) {
        const Bytes cut(bytes.begin(), bytes.begin() + static_cast<long>(length));
        const clip::Verdict verdict = validateExact(cut);
        EXPECT_EQ(verdict.kind, clip::FAULT_BROKEN);
        EXPECT_EQ(verdict.offset, length);
        EXPECT_EQ(verdict.message.rfind("the file ends inside", 0), 0u) << verdict.message;
    }
}

// Whatever a byte is changed to, the validator ends inside the bytes.
TEST_P(Good, Validate_ChangedBytesStayInside) {
    const Bytes bytes = read(std::string("clips/") + GetParam());
    uint32_t state = 0x9E3779B9;
    const auto random = [&state] {
        state ^= state << 13;
        state ^= state >> 17;
        return state ^= state << 5;
    };
    int faults = 0;
    for (int i = 0; i < 400; ++i) {
        Bytes changed = bytes;
        for (int n = 0; n < 4; ++n) {
            // Half of the changes fall into the headers, where most of the grammar stands.
            const size_t range = n % 2 == 0 ? std::min<size_t>(bytes.size(), 700) : bytes.size();
            changed[random() % range] = static_cast<uint8_t>(random());
        }
        const clip::Verdict verdict = validateExact(changed);
        EXPECT_LE(verdict.offset, changed.size());
        faults += verdict.ok ? 0 : 1;
    }
    EXPECT_GT(faults, 0);
}

INSTANTIATE_TEST_SUITE_P(Clips, Good,
                         testing::Values("rgb-all-360.m19", "rgba-all-360.m19", "one-frame-8.m19",
                                         "long-256.m19", "block-16-200.m19", "seventeen-200.m19",
                                         "gaps-64.m19", "runs-360.m19", "dense-360.m19",
                                         "flat-200.m19", "roomy-104.m19", "shared-176.m19"));

struct Fault {
    const char* file;
    clip::FaultKind kind;
    int block;
    size_t offset;
    const char* message;  // a part of it
};

std::ostream& operator<<(std::ostream& out, const Fault& fault) {
    return out << fault.file;
}

class Damaged : public testing::TestWithParam<Fault> {};

TEST_P(Damaged, Validate_DamagedClipHasItsFault) {
    const Fault& fault = GetParam();
    const clip::Verdict verdict = validateExact(read(std::string("broken/") + fault.file));
    EXPECT_EQ(verdict.ok, fault.kind == clip::FAULT_NONE);
    EXPECT_EQ(verdict.kind, fault.kind);
    EXPECT_EQ(verdict.block, fault.block);
    EXPECT_EQ(verdict.offset, fault.offset);
    EXPECT_NE(verdict.message.find(fault.message), std::string::npos) << verdict.message;
}

// Offsets: a cut file's is its size. In the file header the height stands at 4, alpha at 6, blocks
// at 7, frames at 8. The block header begins at 10: room for records at 12, for the map at 16,
// type counts at 20. With 10 counts, runs, map or codes begin at 552, with 20 at 572. Records stand
// at the end of these one-block files, the faulty one last.
constexpr clip::FaultKind kBroken = clip::FAULT_BROKEN;
INSTANTIATE_TEST_SUITE_P(
    Clips, Damaged,
    testing::Values(
        Fault{"empty.m19", kBroken, -1, 0, "empty"},
        Fault{"one-byte.m19", kBroken, -1, 1, "ends inside the file header"},
        Fault{"header-cut.m19", kBroken, -1, 7, "ends inside the file header"},
        Fault{"header-only.m19", kBroken, 0, 10, "ends inside a block header"},
        Fault{"version-18.m19", kBroken, -1, 0, "version 18"},
        Fault{"counts-cut.m19", kBroken, 0, 27, "ends inside a block header"},
        Fault{"palette-cut.m19", kBroken, 0, 139, "ends inside a block header"},
        Fault{"runs-cut.m19", kBroken, 0, 568, "ends inside the change runs"},
        Fault{"map-cut.m19", kBroken, 0, 655, "ends inside the map entries"},
        Fault{"codes-cut.m19", kBroken, 0, 959, "ends inside the tile codes"},
        Fault{"records-cut.m19", kBroken, 0, 1369, "ends inside a tile record"},
        Fault{"second-block-cut.m19", kBroken, 1, 2293, "ends inside a block header"},
        Fault{"second-block-gone.m19", kBroken, 1, 1845, "ends inside a block header"},
        Fault{"blocks-0.m19", kBroken, -1, 7, "0 blocks for 2 frames"},
        Fault{"blocks-too-many.m19", kBroken, -1, 7, "2 blocks for 16 frames"},
        Fault{"blocks-too-few.m19", kBroken, -1, 7, "1 blocks for 20 frames"},
        Fault{"frames-300.m19", kBroken, -1, 8, "300 frames"},
        Fault{"frames-0.m19", kBroken, -1, 8, "0 frames"},
        Fault{"height-368.m19", kBroken, -1, 4, "height 368"},
        Fault{"height-0.m19", kBroken, -1, 4, "height 0"},
        Fault{"height-12.m19", kBroken, -1, 4, "height 12"},
        Fault{"run-flood.m19", kBroken, -1, 4, "height 1344"},
        Fault{"alpha-2.m19", kBroken, -1, 6, "alpha 2"},
        Fault{"alpha-255.m19", kBroken, -1, 6, "alpha 255"},
        Fault{"record-room.m19", kBroken, 0, 909, "bytes of room announced"},
        Fault{"map-room.m19", kBroken, 0, 16, "room for 60"},
        Fault{"huge-record-room.m19", kBroken, 0, 12, "room announced for the tile records"},
        Fault{"huge-map-room.m19", kBroken, 0, 16, "room announced for the map entries"},
        Fault{"runs-overshoot.m19", kBroken, 0, 553, "passes the last tile"},
        Fault{"record-number.m19", kBroken, 0, 558, "tile 3: record 60000 of 5"},
        Fault{"counts-over.m19", kBroken, 0, 20, "sum to 11"},
        Fault{"counts-under.m19", kBroken, 0, 20, "sum to 7"},
        Fault{"two-colour-63.m19", kBroken, 0, 872, "type 8"},
        Fault{"four-runs-over.m19", kBroken, 0, 872, "type 2"},
        Fault{"short-runs-over.m19", kBroken, 0, 884, "type 4"},
        Fault{"palette-runs-over.m19", kBroken, 0, 878, "type 6"},
        Fault{"alpha-over.m19", kBroken, 0, 915, "alpha record pass"},
        Fault{"alpha-first-byte.m19", kBroken, 0, 912, "first byte of an alpha record"},
        Fault{"trailing-bytes.m19", clip::FAULT_TRAILING, 0, 1121, "100 bytes after"},
        Fault{"empty-tile-number.m19", clip::FAULT_NONE, -1, 0, ""}));

// One row of flat tiles, one frame.
Bytes flatClip() {
    Bytes bytes{19, 100, 0x80, 2, 8, 0, 0, 1, 1, 0};
    bytes.insert(bytes.end(), {0, 0, 1, 0, 0, 0, 40, 0, 0, 0});  // 40 words: 80 entries
    bytes.insert(bytes.end(), 20 + 512, 0);
    bytes.insert(bytes.end(), 160 + 32, 0);
    return bytes;
}

// The clip with one record of the type, used by no tile.
Bytes withRecord(uint8_t type, const Bytes& record) {
    Bytes bytes = flatClip();
    bytes[6] = 1;
    bytes[10] = 1;
    bytes[12] = 60;  // 240 bytes of room
    bytes.insert(bytes.begin() + 30, 20, uint8_t{0});
    bytes[20 + 2u * type] = 1;
    bytes.insert(bytes.end(), record.begin(), record.end());
    return bytes;
}

bool accepts(uint8_t type, const Bytes& record) {
    return validateExact(withRecord(type, record)).ok;
}

bool refuses(uint8_t type, const Bytes& record) {
    return validateExact(withRecord(type, record)).kind == clip::FAULT_BROKEN;
}

TEST(Validate, FlatClip_IsOk) {
    EXPECT_TRUE(validateExact(flatClip()).ok);
}

TEST(Validate, MapRoom_ExactIsOkOneLessIsNot) {
    Bytes bytes = flatClip();
    bytes[16] = 39;
    EXPECT_EQ(validateExact(bytes).offset, 16u);
}

TEST(Validate, RecordRoom_ExactIsOkOneLessIsNot) {
    Bytes bytes = withRecord(1, Bytes(64, 0));
    bytes[12] = 16;
    EXPECT_TRUE(validateExact(bytes).ok);
    bytes[12] = 15;
    EXPECT_FALSE(validateExact(bytes).ok);
}

TEST(Validate, FourRuns_CoverAtMost64) {
    // A and B of 32: two colours, C is not looked at.
    EXPECT_TRUE(accepts(2, {0xFF, 0x83, 0, 0}));
    EXPECT_TRUE(accepts(3, {0xFF, 0xFF, 0, 0}));
    // 32, 31, 1: three colours; 32, 31, 2 is one too many.
    EXPECT_TRUE(accepts(2, {0xDF, 0x83, 0, 0, 0}));
    EXPECT_TRUE(refuses(2, {0xDF, 0x87, 0, 0, 0}));
    // 1, 1, 1 and the rest, in RGB565: eight bytes of colours.
    EXPECT_TRUE(accepts(2, {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(refuses(2, {0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(Validate, ShortRuns_EndAt64) {
    const Bytes group{0xFF, 0, 0};  // 8 and 8 pixels
    Bytes record;
    for (int i = 0; i < 4; ++i) {
        record.insert(record.end(), group.begin(), group.end());
    }
    EXPECT_TRUE(accepts(4, record));
    record[9] = 0xFB;  // 8 and 7 pixels: one more group of one pixel
    EXPECT_TRUE(refuses(4, record));
    record.insert(record.end(), {0x03, 0});
    EXPECT_TRUE(accepts(4, record));
    record[12] = 0x23;  // two pixels
    EXPECT_TRUE(refuses(4, record));
}

TEST(Validate, PaletteRuns_StartWithTwoWholeGroups) {
    EXPECT_TRUE(accepts(6, {0xFF, 0, 0, 0xFF, 0, 0}));
    // 63 pixels in two groups, then one run of one pixel.
    EXPECT_TRUE(accepts(7, {0xFF, 0, 0, 0xFE, 0, 0, 0x00, 0}));
    EXPECT_TRUE(refuses(7, {0xFF, 0, 0, 0xFE, 0, 0, 0x10, 0}));
    EXPECT_TRUE(refuses(6, {0xFF, 0, 0, 0xFF, 0}));
}

TEST(Validate, TwoColours_SplitAtMost62) {
    EXPECT_TRUE(accepts(8, {0xC0 | 62, 0, 0}));
    EXPECT_TRUE(refuses(8, {0xC0 | 63, 0, 0}));
    EXPECT_TRUE(accepts(9, {0x40, 0, 0, 0}));
    EXPECT_TRUE(accepts(9, {0x00, 0, 0, 0, 0}));
}

TEST(Validate, AlphaRecord_HasOneOfTwoForms) {
    EXPECT_TRUE(accepts(18, {0xC0, 0, 0, 0x2F}));
    EXPECT_TRUE(refuses(18, {0xC0, 0, 0, 0x3F}));
    EXPECT_TRUE(refuses(18, {0xC0, 0, 0, 0x6F}));
    EXPECT_TRUE(accepts(18, {0xC0, 0, 0, 0x00, 0xFF, 0xF0, 0xF3, 0xF9}));
    EXPECT_TRUE(accepts(18, {0xC0, 0, 0, 0x1F, 0xFF, 0xF0, 0xF3, 0xF9}));
    EXPECT_TRUE(refuses(18, {0xC0, 0, 0, 0x00, 0xFF, 0xF0, 0xF3, 0xE9}));
    EXPECT_TRUE(refuses(18, {0xC0, 0, 0, 0x00, 0xFF, 0xF0, 0xF3, 0xE9, 0x10}));
    EXPECT_TRUE(accepts(18, {0xC0, 0, 0, 0x00, 0xFF, 0xF0, 0xF3, 0xE9, 0x00}));
}

TEST(Validate, RecordNumber_IsCheckedInLaterFrames) {
    Bytes bytes = flatClip();
    bytes[8] = 2;
    bytes[16] = 41;  // one changed entry more
    // Runs of frame 1: tile 0 changed, 79 not. Its entry 0 follows the first map.
    bytes.insert(bytes.begin() + 552, {0x80, 78});
    bytes.insert(bytes.begin() + 554 + 160, {0, 0});
    bytes.insert(bytes.end(), 32, 0);
    EXPECT_TRUE(validateExact(bytes).ok);
    bytes[554 + 162 + 32] = 1;  // frame 1, tile 0: code 1
    const clip::Verdict verdict = validateExact(bytes);
    EXPECT_FALSE(verdict.ok);
    EXPECT_EQ(verdict.offset, 554u + 160);
    EXPECT_NE(verdict.message.find("frame 1 of the block, tile 0: record 0 of 0"),
              std::string::npos);
}

TEST(Validate, CodesOfEmptyTiles_NameNothing) {
    Bytes bytes = flatClip();
    bytes[552] = 0xFF;
    bytes[553] = 0xFF;
    bytes[552 + 160] = 7;
    EXPECT_TRUE(validateExact(bytes).ok);
    bytes[552 + 160] = 6;
    EXPECT_FALSE(validateExact(bytes).ok);
}

}  // namespace
