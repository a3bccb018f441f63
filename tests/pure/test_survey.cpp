// What a clip takes to load, found out a bit at a time.
#include "clip/survey.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "support/seed.h"

namespace {

using Bytes = std::vector<uint8_t>;

// A real file: unlike one in memory it can be sought past its end.
class ByteStream {
public:
    explicit ByteStream(const Bytes& bytes) : file(tmpfile()) {
        EXPECT_EQ(fwrite(bytes.data(), 1, bytes.size(), file), bytes.size());
    }
    ~ByteStream() { fclose(file); }
    ByteStream(const ByteStream&) = delete;
    ByteStream& operator=(const ByteStream&) = delete;

    FILE* file;
};

void put16(Bytes& bytes, unsigned value) {
    bytes.push_back(static_cast<uint8_t>(value));
    bytes.push_back(static_cast<uint8_t>(value >> 8));
}
void put32(Bytes& bytes, unsigned value) {
    put16(bytes, value & 0xFFFF);
    put16(bytes, value >> 16);
}

// A clip 8 lines high, 80 tiles, of one colour. Records are of type 1: 64 bytes each.
Bytes header(unsigned frames) {
    Bytes bytes = {19, 75, 0x80, 0x02, 8, 0, 0, static_cast<uint8_t>((frames + 15) / 16)};
    put16(bytes, frames);
    return bytes;
}

// 10 + 20 + 512 bytes, a run byte of 80 tiles for each frame but the first, 160 bytes of map, 32
// bytes of codes a frame, 64 a record.
void addBlock(Bytes& bytes, unsigned frames, unsigned records, unsigned recordWords) {
    put16(bytes, records);
    put32(bytes, recordWords);
    put32(bytes, 40);
    for (unsigned type = 0; type < 10; ++type) {
        put16(bytes, type == 1 ? records : 0);
    }
    bytes.insert(bytes.end(), 512, 0);
    bytes.insert(bytes.end(), frames - 1, 79);
    bytes.insert(bytes.end(), 160 + size_t{32} * frames + size_t{64} * records, 0);
}

Bytes clipOf17(unsigned records) {
    Bytes bytes = header(17);
    addBlock(bytes, 16, records, 16 * records);
    addBlock(bytes, 1, 0, 0);
    return bytes;
}

clip::SurveyState surveyed(const Bytes& bytes, clip::Survey& survey, size_t step = 1 << 30) {
    ByteStream stream(bytes);
    for (int looks = 0; looks < 100000; ++looks) {
        const clip::SurveyState state = survey.look(stream.file, step);
        if (state != clip::SURVEY_GOES_ON) {
            return state;
        }
    }
    return clip::SURVEY_GOES_ON;
}

clip::SurveyState stateOf(const Bytes& bytes) {
    clip::Survey survey;
    return surveyed(bytes, survey);
}

// Headers, first maps and frame maps; then a step for every 2000 records, at least one a block.
TEST(Survey, Steps_AreThoseOfALaterClip) {
    const struct {
        unsigned records;
        int steps;
    } clips[] = {{0, 5}, {1, 5}, {2000, 5}, {2001, 6}, {4001, 7}};
    for (const auto& each : clips) {
        clip::Survey survey;
        EXPECT_EQ(surveyed(clipOf17(each.records), survey), clip::SURVEY_PLAYS);
        EXPECT_EQ(survey.frames(), 17);
        EXPECT_EQ(survey.steps(), each.steps) << each.records;
    }
}

TEST(Survey, SmallLooks_FindTheSame) {
    const Bytes bytes = clipOf17(2001);
    for (const size_t step : {1, 63, 64, 65, 1000}) {
        clip::Survey survey;
        EXPECT_EQ(surveyed(bytes, survey, step), clip::SURVEY_PLAYS) << step;
        EXPECT_EQ(survey.steps(), 6);
    }
}

// The headers and maps, up to 1239 bytes, are taken whole; then 16 records of 64 bytes a look.
TEST(Survey, ALook_WalksNoMoreThanItWasAskedTo) {
    ByteStream stream(clipOf17(2001));
    clip::Survey survey;
    ASSERT_EQ(survey.look(stream.file, 1), clip::SURVEY_GOES_ON);
    EXPECT_EQ(ftell(stream.file), 10);
    ASSERT_EQ(survey.look(stream.file, 1), clip::SURVEY_GOES_ON);
    EXPECT_EQ(ftell(stream.file), 10 + 542 + 15 + 160 + 512);
    for (int look = 1; look <= 20; ++look) {
        ASSERT_EQ(survey.look(stream.file, 1000), clip::SURVEY_GOES_ON);
        EXPECT_EQ(ftell(stream.file), 1239 + look * 1024);
    }
}

TEST(Survey, FileThatEndsEarly_IsBroken) {
    const Bytes whole = clipOf17(20);
    for (size_t length = 0; length < whole.size(); ++length) {
        ASSERT_EQ(stateOf(Bytes(whole.begin(), whole.begin() + static_cast<long>(length))),
                  clip::SURVEY_BROKEN)
            << length;
    }
    Bytes longer = whole;
    longer.push_back(0);
    EXPECT_EQ(stateOf(longer), clip::SURVEY_PLAYS) << "what follows the last block is ignored";
}

TEST(Survey, WhatTheLoaderRefuses_IsBroken) {
    Bytes older = clipOf17(0);
    older[0] = 18;
    EXPECT_EQ(stateOf(older), clip::SURVEY_BROKEN);
    Bytes blocks = clipOf17(0);
    blocks[7] = 3;
    EXPECT_EQ(stateOf(blocks), clip::SURVEY_BROKEN);
    Bytes map = clipOf17(0);
    map[10 + 6] = 39;  // room for 78 entries
    EXPECT_EQ(stateOf(map), clip::SURVEY_BROKEN);
    Bytes runs = clipOf17(0);
    runs[10 + 542] = 79 | 0x80;  // 80 entries more than there is room for
    EXPECT_EQ(stateOf(runs), clip::SURVEY_BROKEN);
    Bytes records = header(1);
    addBlock(records, 1, 10, 159);  // 640 bytes of records, room for 636
    EXPECT_EQ(stateOf(records), clip::SURVEY_BROKEN);
}

TEST(Survey, FileThatChangesMeanwhile_Ends) {
    const Bytes whole = clipOf17(2001);
    clip::Survey survey;
    ByteStream before(whole);
    ASSERT_EQ(survey.look(before.file, 2000), clip::SURVEY_GOES_ON);
    ByteStream after(Bytes(1500, 0xFF));
    EXPECT_EQ(survey.look(after.file, 2000), clip::SURVEY_BROKEN);
    EXPECT_EQ(survey.look(before.file, 2000), clip::SURVEY_BROKEN) << "and stays so";
}

TEST(Survey, AnyBytes_ComeToAnEnd) {
    std::mt19937 random(chosenSeed());
    for (int round = 0; round < 2000; ++round) {
        Bytes bytes = clipOf17(40);
        for (int change = 0; change < 6; ++change) {
            const size_t near = random() % 2 == 0 ? 700 : bytes.size();
            bytes[1 + random() % (near - 1)] = static_cast<uint8_t>(random());
        }
        clip::Survey survey;
        ASSERT_NE(surveyed(bytes, survey, 500), clip::SURVEY_GOES_ON) << round;
        ASSERT_LE(survey.steps(), 3 + 16 * 33) << round;
    }
}

}  // namespace
