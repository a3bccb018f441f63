// The fast tile functions against the plain ones, which have tests of their own.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "clip/paint.h"
#include "clip/tile_fast.h"

namespace {

using Frame = std::vector<uint16_t>;

constexpr size_t kTileX = 16;  // of the tile in the frame, with pixels around it

std::vector<uint16_t> noisePalette() {
    std::mt19937 random(256);
    std::vector<uint16_t> palette(clip::kPaletteEntries);
    for (uint16_t& colour : palette) {
        colour = static_cast<uint16_t>(random() & 0xFFFF);
    }
    return palette;
}

Frame emptyFrame() {
    return Frame(8 * kFrameWidth, 0x5A5A);
}

// Exactly the room that decoders are promised: sanitizers see one byte more.
std::vector<uint8_t> randomRecord(std::mt19937& random, unsigned end) {
    std::vector<uint8_t> record(clip::kMaxRecordBytes);
    for (uint8_t& byte : record) {
        byte = static_cast<uint8_t>(random() % end);
    }
    return record;
}

// Large bytes are long runs, small ones short runs; both occur in one record as well.
unsigned byteEnd(int round) {
    constexpr unsigned kEnds[] = {256, 4, 64, 160};
    return kEnds[round % 4];
}

// The pixels in painting order that a run list stands for.
std::vector<uint16_t> laidOut(const clip::TileRuns& runs) {
    std::vector<uint16_t> pixels;
    for (size_t i = 0; pixels.size() < clip::kTilePixels; ++i) {
        const size_t room = clip::kTilePixels - pixels.size();
        pixels.insert(pixels.end(), std::min<size_t>(runs.lengths[i] + 1u, room), runs.colours[i]);
    }
    return pixels;
}

void expectSameRuns(const std::vector<uint8_t>& record, int type) {
    static const std::vector<uint16_t> palette = noisePalette();
    clip::TileRuns plain{};
    clip::TileRuns fast{};
    clip::fast::TileLine line{};
    const size_t length = clip::decodeRuns(record.data(), type, palette.data(), plain);
    ASSERT_EQ(clip::fast::decodeRuns(record.data(), type, palette.data(), fast, line), length);
    const std::vector<uint16_t> pixels = laidOut(plain);
    ASSERT_EQ(laidOut(fast), pixels);
    ASSERT_TRUE(std::equal(pixels.begin(), pixels.end(), line.pixels));
}

TEST(FastRuns, AnyBytes_GiveThePlainLengthAndPixels) {
    std::mt19937 random(1909);
    for (int round = 0; round < 40000; ++round) {
        const std::vector<uint8_t> record = randomRecord(random, byteEnd(round));
        for (int type = 2; type < clip::kColourTypes; ++type) {
            expectSameRuns(record, type);
            ASSERT_FALSE(testing::Test::HasFailure()) << "type " << type << " round " << round;
        }
    }
}

// Every header of four runs, every split of two colours, with both widths of their colours.
TEST(FastRuns, EveryHeader_GivesThePlainPixels) {
    std::mt19937 random(22);
    std::vector<uint8_t> record = randomRecord(random, 256);
    for (int header = 0; header < 65536; ++header) {
        record[0] = static_cast<uint8_t>(header >> 8);
        record[1] = static_cast<uint8_t>(header & 255);
        for (const int type : {2, 9}) {
            expectSameRuns(record, type);
            ASSERT_FALSE(testing::Test::HasFailure()) << "type " << type << " header " << header;
        }
    }
}

TEST(FastAlpha, AnyBytes_GiveThePlainLevels) {
    std::mt19937 random(4);
    for (int round = 0; round < 40000; ++round) {
        std::vector<uint8_t> record = randomRecord(random, byteEnd(round));
        record.resize(clip::kMaxAlphaRecordBytes);
        uint8_t plain[clip::kTilePixels];
        uint8_t fast[clip::kTilePixels];
        clip::decodeAlpha(record.data(), plain);
        clip::fast::decodeAlpha(record.data(), fast);
        ASSERT_TRUE(std::equal(plain, plain + clip::kTilePixels, fast)) << "round " << round;
    }
}

TEST(FastPaletteTile, AnyIndices_GiveThePlainTile) {
    std::mt19937 random(64);
    const std::vector<uint16_t> palette = noisePalette();
    for (int round = 0; round < 100; ++round) {
        std::vector<uint8_t> record = randomRecord(random, 256);
        record.resize(clip::kTilePixels);
        Frame plain = emptyFrame();
        Frame fast = emptyFrame();
        clip::drawPaletteTile(record.data(), palette.data(), plain.data() + kTileX);
        EXPECT_EQ(clip::fast::drawPaletteTile(record.data(), palette.data(), fast.data() + kTileX),
                  size_t{clip::kTilePixels});
        ASSERT_EQ(fast, plain);
    }
}

// 64 pixels of different colours, all paths, more tiles than the painter keeps waiting.
TEST(LinePainter, EveryPath_IsPaintedAsItsRuns) {
    clip::fast::LinePainter painter;
    clip::TileRuns runs{};
    for (int i = 0; i < clip::kTilePixels; ++i) {
        runs.colours[i] = static_cast<uint16_t>(100 + i);
    }
    Frame plain = emptyFrame();
    Frame fast = emptyFrame();
    for (int tile = 0; tile < clip::kTilesAcross; ++tile) {
        const int code = tile % 6 + 1;
        const int columnOrder = tile / 6 % 2;
        runs.colours[0] = static_cast<uint16_t>(1000 + tile);
        std::copy_n(runs.colours, clip::kTilePixels, painter.line().pixels);
        painter.paint(fast.data() + tile * clip::kTileSize, code, columnOrder);
        clip::paintRuns(plain.data() + tile * clip::kTileSize, runs, code, columnOrder);
    }
    painter.flush();
    EXPECT_EQ(fast, plain);
}

TEST(LinePainter, Flushed_HasNothingLeft) {
    clip::fast::LinePainter painter;
    Frame frame = emptyFrame();
    std::fill_n(painter.line().pixels, clip::kTilePixels, uint16_t{7});
    painter.paint(frame.data(), 1, 0);
    painter.flush();
    EXPECT_EQ(frame[0], 7);
    frame[0] = 9;
    painter.flush();
    EXPECT_EQ(frame[0], 9);
}

}  // namespace
