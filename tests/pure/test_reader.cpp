#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <vector>

#include "clip/reader.h"

namespace {

// A stream over bytes in memory; fmemopen takes no empty buffer, so that case reads /dev/null.
class ByteStream {
public:
    explicit ByteStream(std::vector<uint8_t> bytes) : bytes_(std::move(bytes)) {
        file = bytes_.empty() ? fopen("/dev/null", "rb")
                              : fmemopen(bytes_.data(), bytes_.size(), "rb");
    }
    ~ByteStream() { fclose(file); }
    ByteStream(const ByteStream&) = delete;
    ByteStream& operator=(const ByteStream&) = delete;

    FILE* file;

private:
    std::vector<uint8_t> bytes_;
};

constexpr uint8_t kHeader[] = {19, 80, 0x34, 0x12, 0x68, 0x01, 1, 2, 0x11, 0x00};

TEST(FileHeader, Fields_StandInOrder) {
    ByteStream stream({std::begin(kHeader), std::end(kHeader)});
    const clip::FileHeader header = clip::readFileHeader(stream.file);
    EXPECT_EQ(header.version, 19);
    EXPECT_EQ(header.quality, 80);
    EXPECT_EQ(header.storedWidth, 0x1234);
    EXPECT_EQ(header.height, 360);
    EXPECT_EQ(header.alpha, 1);
    EXPECT_EQ(header.blockCount, 2);
    EXPECT_EQ(header.frameCount, 17);
    EXPECT_TRUE(clip::headerFits(header));
}

TEST(FileHeader, CutShort_IsZeroBehindTheCut) {
    ByteStream stream({19, 80, 0x34, 0x12, 0x68});
    const clip::FileHeader header = clip::readFileHeader(stream.file);
    EXPECT_EQ(header.version, 19);
    EXPECT_EQ(header.height, 0x68);
    EXPECT_EQ(header.frameCount, 0);
}

clip::FileHeader headerWith(int height, int alpha, int blocks, int frames) {
    return {19,
            0,
            640,
            static_cast<uint16_t>(height),
            static_cast<uint8_t>(alpha),
            static_cast<uint8_t>(blocks),
            static_cast<uint16_t>(frames)};
}

TEST(HeaderFits, Bounds_AreInclusive) {
    EXPECT_TRUE(clip::headerFits(headerWith(360, 0, 1, 1)));
    EXPECT_TRUE(clip::headerFits(headerWith(360, 1, 16, 256)));
    EXPECT_FALSE(clip::headerFits(headerWith(360, 0, 0, 0)));
    EXPECT_FALSE(clip::headerFits(headerWith(360, 0, 17, 257)));
    EXPECT_FALSE(clip::headerFits(headerWith(361, 0, 1, 1)));
    EXPECT_FALSE(clip::headerFits(headerWith(368, 0, 1, 1)));
    EXPECT_FALSE(clip::headerFits(headerWith(360, 2, 1, 1)));
}

TEST(HeaderFits, BlockCount_IsThatOfTheFrames) {
    EXPECT_TRUE(clip::headerFits(headerWith(8, 0, 1, 16)));
    EXPECT_FALSE(clip::headerFits(headerWith(8, 0, 2, 16)));
    EXPECT_TRUE(clip::headerFits(headerWith(8, 0, 2, 17)));
    EXPECT_FALSE(clip::headerFits(headerWith(8, 0, 1, 17)));
}

TEST(BlockHeader, WithoutAlpha_HasTenTypeCounts) {
    std::vector<uint8_t> bytes = {5, 0, 1, 2, 3, 4, 9, 8, 7, 6};
    for (uint8_t type = 0; type < 10; ++type) {
        bytes.insert(bytes.end(), {type, 0});
    }
    bytes.insert(bytes.end(), {0xCD, 0xAB});
    ByteStream stream(bytes);
    clip::BlockHeader header;
    clip::readBlockHeader(stream.file, 0, header);
    EXPECT_EQ(header.recordCount, 5);
    EXPECT_EQ(header.recordWords, 0x04030201u);
    EXPECT_EQ(header.mapWords, 0x06070809u);
    EXPECT_EQ(header.typeCounts[9], 9);
    EXPECT_EQ(header.typeCounts[10], 0);
    EXPECT_EQ(header.palette[0], 0xABCD);
    EXPECT_EQ(header.palette[1], 0) << "past the end of the file";
}

TEST(ChangeRuns, EveryFrame_IsCoveredAndChangesAreCounted) {
    // Two frames of 200 tiles: 128 changed + 72 kept, 200 kept in 100 + 100.
    ByteStream stream({0xFF, 0x47, 0x63, 0x63, 0xEE});
    uint8_t runs[8] = {};
    clip::ChangeRuns result;
    ASSERT_TRUE(clip::readChangeRuns(stream.file, 2, 200, runs, sizeof runs, result));
    EXPECT_EQ(result.runBytes, 4u);
    EXPECT_EQ(result.changed, 128);
    EXPECT_EQ(runs[0], 0xFF);
    EXPECT_EQ(runs[4], 0) << "the next section's byte is not taken";
}

TEST(ChangeRuns, MoreThanTheRoom_IsRefused) {
    ByteStream stream({0x00, 0x00, 0x00, 0x00});
    uint8_t runs[3] = {};
    clip::ChangeRuns result;
    EXPECT_FALSE(clip::readChangeRuns(stream.file, 1, 4, runs, sizeof runs, result));
}

TEST(ChangeRuns, PastTheEndOfTheFile_CountAsRunsOfOneKeptTile) {
    ByteStream stream({});
    uint8_t runs[80];
    clip::ChangeRuns result;
    ASSERT_TRUE(clip::readChangeRuns(stream.file, 1, 80, runs, sizeof runs, result));
    EXPECT_EQ(result.runBytes, 80u);
    EXPECT_EQ(result.changed, 0);
}

TEST(Words, LittleEndian_AndZeroBehindTheEnd) {
    ByteStream stream({0x34, 0x12, 0x78});
    uint16_t words[3] = {1, 1, 1};
    clip::readWords(stream.file, words, 3);
    EXPECT_EQ(words[0], 0x1234);
    EXPECT_EQ(words[1], 0x0078);
    EXPECT_EQ(words[2], 0);
}

struct RecordCase {
    const char* what;
    int type;
    std::vector<uint8_t> bytes;  // followed by bytes that must not be taken
    int length;
};

std::vector<RecordCase> recordCases() {
    std::vector<uint8_t> shortRuns;
    for (int group = 0; group < 32; ++group) {
        shortRuns.insert(shortRuns.end(), {0, 1, 2, 3, 4});
    }
    return {
        {"raw", 0, std::vector<uint8_t>(128, 7), 128},
        {"palette", 1, std::vector<uint8_t>(64, 7), 64},
        {"four runs, two cover the tile", 2, {0xFF, 0x83, 1, 2}, 4},
        {"four runs, three cover the tile", 2, {0xFF, 0xBD, 1, 2, 3}, 5},
        {"four runs, all four", 3, {0x00, 0x80, 1, 2, 3, 4}, 6},
        {"four runs in RGB565", 3, {0x00, 0x00, 1, 2, 3, 4, 5, 6, 7, 8}, 10},
        {"short runs, the longest record", 4, shortRuns, 160},
        {"short runs, last group cut",
         5,
         {0xFF, 1, 2, 0xFF, 1, 2, 0xFF, 1, 2, 0xFB, 1, 2, 0x03, 1},
         14},
        {"palette runs, two groups", 6, {0xFF, 1, 2, 0xFF, 3, 4}, 6},
        {"palette runs, third group cut", 7, {0xEE, 1, 2, 0xEE, 3, 4, 0x3F, 5}, 8},
        {"two colours, palette", 8, {0xC5, 1, 2}, 3},
        {"two colours, one of each", 8, {0x45, 1, 2, 3}, 4},
        {"two colours, RGB565", 9, {0x05, 1, 2, 3, 4}, 5},
        {"colour and one alpha byte", 18, {0xC5, 1, 2, 0x27}, 4},
        {"colour and alpha runs", 18, {0xC5, 1, 2, 0x00, 0xF1, 0xF2, 0xF3, 0xF4}, 8},
        {"alpha runs past the tile", 18, {0xC5, 1, 2, 0x00, 0xF1, 0xF2, 0xF3, 0xE4, 0xF5}, 9},
        {"alpha byte that only skipping takes for one", 18, {0xC5, 1, 2, 0x87}, 4},
    };
}

TEST(Records, EveryForm_HasItsLengthAndItsBytes) {
    for (const RecordCase& each : recordCases()) {
        std::vector<uint8_t> bytes = each.bytes;
        bytes.resize(bytes.size() + 300, 0x99);
        ByteStream stream(bytes);
        uint8_t out[clip::kMaxRecordBytes] = {};
        EXPECT_EQ(clip::readRecord(stream.file, each.type, out, sizeof out), each.length)
            << each.what;
        EXPECT_EQ(ftell(stream.file), each.length) << each.what;
        const bool swapped = each.type % 10 == 2 || each.type % 10 == 3;
        EXPECT_EQ(out[0], each.bytes[swapped ? 1 : 0]) << each.what;
        EXPECT_EQ(out[1], each.bytes[swapped ? 0 : 1]) << each.what;
        for (size_t i = 2; i < each.bytes.size(); ++i) {
            EXPECT_EQ(out[i], each.bytes[i]) << each.what << " byte " << i;
        }
    }
}

TEST(Records, LongerThanTheRoom_AreRefusedUnwritten) {
    ByteStream stream(std::vector<uint8_t>(200, 7));
    uint8_t out[128] = {};
    EXPECT_EQ(clip::readRecord(stream.file, 0, out, 127), 0);
    EXPECT_EQ(out[0], 0);
}

TEST(Records, RandomBytes_NeverPassTheLongestRecord) {
    std::mt19937 random(99);
    for (int round = 0; round < 4000; ++round) {
        std::vector<uint8_t> bytes(300);
        for (uint8_t& byte : bytes) {
            byte = static_cast<uint8_t>(random() % (round % 2 == 0 ? 256u : 8u));
        }
        for (int type = 0; type < clip::kMaxTypeSlots; ++type) {
            ByteStream stream(bytes);
            std::vector<uint8_t> out(clip::kMaxRecordBytes);
            const int length = clip::readRecord(stream.file, type, out.data(), out.size());
            ASSERT_GT(length, 0);
            ASSERT_LE(length, clip::kMaxRecordBytes);
        }
    }
}

}  // namespace
