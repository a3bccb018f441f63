#include "clip/source.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

// A file of those bytes.
class ByteFile {
public:
    explicit ByteFile(const Bytes& bytes) : file(tmpfile()) {
        EXPECT_EQ(fwrite(bytes.data(), 1, bytes.size(), file), bytes.size());
        rewind(file);
    }
    ~ByteFile() { fclose(file); }
    ByteFile(const ByteFile&) = delete;
    ByteFile& operator=(const ByteFile&) = delete;

    FILE* file;
};

constexpr uint8_t kHeader[] = {19, 80, 0x34, 0x12, 0x68, 0x01, 1, 2, 0x11, 0x00};

TEST(FileHeader, Fields_StandInOrder) {
    clip::Source source(kHeader);
    const clip::FileHeader header = clip::readFileHeader(source);
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
    clip::Source source(std::span(kHeader, 5));
    const clip::FileHeader header = clip::readFileHeader(source);
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
    clip::Source source(bytes);
    clip::BlockHeader header;
    clip::readBlockHeader(source, 0, header);
    EXPECT_EQ(header.recordCount, 5);
    EXPECT_EQ(header.recordWords, 0x04030201u);
    EXPECT_EQ(header.mapWords, 0x06070809u);
    EXPECT_EQ(header.typeCounts[9], 9);
    EXPECT_EQ(header.typeCounts[10], 0);
    EXPECT_EQ(header.palette[0], 0xABCD);
    EXPECT_EQ(header.palette[1], 0) << "past the end of the file";
}

TEST(Words, LittleEndian_AndZeroBehindTheEnd) {
    const Bytes bytes = {0x34, 0x12, 0x78};
    clip::Source source(bytes);
    uint16_t words[3] = {1, 1, 1};
    source.takeWords(words, 3);
    EXPECT_EQ(words[0], 0x1234);
    EXPECT_EQ(words[1], 0x0078);
    EXPECT_EQ(words[2], 0);
}

// Takes in turn a byte, some bytes, a few words and a piece of what a record could be.
Bytes takenBy(clip::Source& source, size_t count) {
    Bytes taken;
    for (size_t turn = 0; taken.size() < count; ++turn) {
        uint8_t some[1500];
        const size_t much = turn * 37 % sizeof some;
        switch (turn % 4) {
            case 0:
                taken.push_back(source.byte());
                break;
            case 1:
                source.take(some, much);
                taken.insert(taken.end(), some, some + much);
                break;
            case 2: {
                uint16_t word = 0;
                source.takeWords(&word, 1);
                taken.insert(taken.end(),
                             {static_cast<uint8_t>(word & 255), static_cast<uint8_t>(word >> 8)});
                break;
            }
            default: {
                const uint8_t* record = source.record();
                const size_t length = much % clip::kMaxRecordBytes;
                taken.insert(taken.end(), record, record + length);
                source.skip(length);
                break;
            }
        }
    }
    return taken;
}

Bytes noise(size_t count) {
    std::mt19937 random(7);
    Bytes bytes(count);
    for (uint8_t& byte : bytes) {
        byte = static_cast<uint8_t>(random());
    }
    return bytes;
}

// 3000 bytes past the end: they are zero.
TEST(Source, FileAndMemory_GiveTheSameBytes) {
    for (const size_t size : {0, 1, 224, 225, 1023, 1024, 1025, 5000, 20000}) {
        Bytes expected = noise(size);
        const ByteFile file(expected);
        clip::Source fromMemory(expected);
        clip::Source fromFile(file.file);
        const Bytes a = takenBy(fromMemory, size + 3000);
        const Bytes b = takenBy(fromFile, size + 3000);
        expected.resize(a.size());
        EXPECT_EQ(a, expected) << size;
        EXPECT_EQ(b, expected) << size;
    }
}

TEST(Source, Record_IsReadableToTheLongestAtTheEndToo) {
    const Bytes bytes = {1, 2, 3};
    clip::Source source(bytes);
    const uint8_t* record = source.record();
    EXPECT_EQ(record[2], 3);
    for (int i = 3; i < clip::kMaxRecordBytes; ++i) {
        ASSERT_EQ(record[i], 0) << i;
    }
}

// The next step of a load begins where the last one stopped.
TEST(Source, WhatIsNotTaken_IsGivenBackToTheFile) {
    const Bytes bytes = noise(3000);
    const ByteFile file(bytes);
    {
        clip::Source source(file.file);
        source.record();
        source.skip(5);
    }
    EXPECT_EQ(ftell(file.file), 5);
    {
        clip::Source source(file.file);
        EXPECT_EQ(source.byte(), bytes[5]);
        Bytes many(2000);
        source.take(many.data(), many.size());
        EXPECT_EQ(many, Bytes(bytes.begin() + 6, bytes.begin() + 2006));
    }
    EXPECT_EQ(ftell(file.file), 2006);
    {
        clip::Source source(file.file);
        Bytes many(1000);
        source.take(many.data(), many.size());
        source.record();
    }
    EXPECT_EQ(ftell(file.file), 3000) << "zeros past the end are not given back";
}

// A card is slow: no more is read ahead than a step can take at once.
TEST(Source, ReadsAhead_AThousandBytesAtTheMost) {
    const ByteFile file(noise(5000));
    setvbuf(file.file, nullptr, _IONBF, 0);
    clip::Source source(file.file);
    source.byte();
    EXPECT_LE(ftell(file.file), 1024);
}

}  // namespace
