#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "clip/mapbuild.h"

namespace {

constexpr int kTiles = 10;

std::vector<uint16_t> mapOf(const std::vector<uint16_t>& blockMap, const std::vector<uint8_t>& runs,
                            int frame) {
    std::vector<uint16_t> map(kTiles, 0xEEEE);
    clip::rebuildMap(blockMap.data(), runs.data(), kTiles, frame, map.data());
    return map;
}

// Frame 1 changes tiles 2 to 4, frame 2 keeps all but the last tile, frame 3 changes tile 0.
const std::vector<uint8_t> kRuns = {0x01, 0x82, 0x04,  // keep 2, change 3, keep 5
                                    0x08, 0x80,        // keep 9, change 1
                                    0x80, 0x08};       // change 1, keep 9
const std::vector<uint16_t> kBlockMap = {0,   1,   2,   3,   4,  5, 6, 7, 8, 9,  // frame 0
                                         102, 103, 104, 209, 300};

TEST(MapBuild, FrameZero_IsTheFirstMap) {
    EXPECT_EQ(mapOf(kBlockMap, kRuns, 0), (std::vector<uint16_t>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST(MapBuild, LaterFrames_ApplyEveryChangeInOrder) {
    EXPECT_EQ(mapOf(kBlockMap, kRuns, 1),
              (std::vector<uint16_t>{0, 1, 102, 103, 104, 5, 6, 7, 8, 9}));
    EXPECT_EQ(mapOf(kBlockMap, kRuns, 3),
              (std::vector<uint16_t>{300, 1, 102, 103, 104, 5, 6, 7, 8, 209}));
}

// The run that ends frame 2 covers its last tile; frame 3 goes on with the next entry.
TEST(MapBuild, RunOverTheLastTile_NextFrameTakesTheNextEntry) {
    EXPECT_EQ(mapOf(kBlockMap, kRuns, 2),
              (std::vector<uint16_t>{0, 1, 102, 103, 104, 5, 6, 7, 8, 209}));
    EXPECT_EQ(mapOf(kBlockMap, kRuns, 3)[0], 300);
}

// Frame 1's run of 5 starts at tile 8: three of its entries fall past the end and are used up.
TEST(MapBuild, RunPastTheLastTile_IsCutAndItsEntriesAreUsed) {
    const std::vector<uint8_t> runs = {0x07, 0x84, 0x80, 0x08};
    const std::vector<uint16_t> blockMap = {0,   1,   2,   3,   4,   5,  6, 7, 8, 9,  // frame 0
                                            108, 109, 110, 111, 112, 200};
    EXPECT_EQ(mapOf(blockMap, runs, 1), (std::vector<uint16_t>{0, 1, 2, 3, 4, 5, 6, 7, 108, 109}));
    EXPECT_EQ(mapOf(blockMap, runs, 2)[0], 200);
}

TEST(MapBuild, AllMaps_EqualTheMapsBuiltOneByOne) {
    constexpr int kFrames = 16;
    constexpr int kStride = 13;
    std::mt19937 random(77);
    std::vector<uint8_t> runs;
    std::vector<uint16_t> blockMap;
    for (int i = 0; i < kTiles; ++i) {
        blockMap.push_back(static_cast<uint16_t>(random() & 0xFFFF));
    }
    for (int frame = 1; frame < kFrames; ++frame) {
        for (int covered = 0; covered < kTiles;) {
            const int length = 1 + static_cast<int>(random() % 6);
            const bool changed = random() % 2 == 0;
            runs.push_back(static_cast<uint8_t>((changed ? 0x80 : 0) | (length - 1)));
            for (int i = 0; changed && i < length; ++i) {
                blockMap.push_back(static_cast<uint16_t>(random() & 0xFFFF));
            }
            covered += length;
        }
    }
    std::vector<uint16_t> maps(kFrames * kStride, 0xEEEE);
    clip::rebuildAllMaps(blockMap.data(), runs.data(), kTiles, kFrames, maps.data(), kStride);
    for (int frame = 0; frame < kFrames; ++frame) {
        const auto row = maps.begin() + frame * kStride;
        EXPECT_EQ(std::vector<uint16_t>(row, row + kTiles), mapOf(blockMap, runs, frame));
        EXPECT_EQ(row[kTiles], 0xEEEE) << "the gap between two rows stays untouched";
    }
}

}  // namespace
