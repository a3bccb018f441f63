// Damaged clips: what still plays and what is refused, with nothing left open or allocated.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "tests/support/clip_stage.h"

namespace {

struct Damaged {
    const char* name;
    bool plays;
};

// What was not read counts as zero bytes, so a clip that is cut short plays as long as the room
// that it announces holds what those bytes ask for: a short-run record of zero bytes takes 160.
constexpr Damaged kDamaged[] = {
    {"empty", false},        // version 0
    {"one-byte", false},     // no frame
    {"header-only", false},  // no room for the first map
    {"version-18", false},
    {"header-cut", false},  // no frame
    {"counts-cut", true},
    {"palette-cut", false},  // zero bytes make longer records than there is room for
    {"runs-cut", false},     // likewise
    {"map-cut", false},      // likewise
    {"codes-cut", false},    // likewise
    {"records-cut", false},  // likewise
    {"second-block-cut", true},
    {"second-block-gone", false},  // no room for the second block's map
    {"blocks-0", false},
    {"blocks-too-many", false},
    {"blocks-too-few", false},
    {"frames-300", false},
    {"frames-0", false},
    {"height-368", false},
    {"height-0", true},   // no tile: draws nothing
    {"height-12", true},  // one row of tiles
    {"alpha-2", false},
    {"alpha-255", false},
    {"record-room", false},
    {"map-room", false},
    {"runs-overshoot", true},  // the run is cut at the last tile
    {"record-number", true},   // the tile is empty
    {"empty-tile-number", true},
    {"counts-over", true},
    {"counts-under", true},
    {"two-colour-63", true},
    {"four-runs-over", true},
    {"short-runs-over", true},
    {"palette-runs-over", true},
    {"alpha-over", true},
    {"alpha-first-byte", true},
    {"huge-record-room", true},
    {"huge-map-room", true},
    {"trailing-bytes", true},
    {"run-flood", false},  // more than 3600 tiles
};

int openFiles() {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                                          std::filesystem::directory_iterator()));
}

void drawEverything(ClipStage& stage) {
    for (const int mode : {MODE_TOP, MODE_BLEND, MODE_KEY}) {
        for (int layer = 0; layer < kLayers; ++layer) {
            for (int frame = 0; frame < stage.clip->frameCount; ++frame) {
                stage.clip->renderMoxel19(layer, frame, mode);
            }
            stage.clip->renderMoxel19(layer, stage.clip->frameCount - 1, mode);
            stage.clip->renderMoxel19(layer, 0, mode);
        }
    }
}

class DamagedClip : public testing::TestWithParam<Damaged> {};

TEST_P(DamagedClip, Load_PlaysOrIsRefusedCleanly) {
    for (const int budget : {1, 60, 2000, 65000}) {
        ClipStage stage(TEST_DATA "/broken");
        const int before = openFiles();
        const int result = stage.load(GetParam().name + std::string(".m19"), budget);
        EXPECT_EQ(openFiles(), before);
        if (GetParam().plays) {
            ASSERT_EQ(result, 2) << "budget " << budget;
            EXPECT_EQ(stage.clip->state, CLIP_READY);
            drawEverything(stage);
        } else {
            ASSERT_EQ(result, 0) << "budget " << budget;
            EXPECT_EQ(stage.clip->state, CLIP_LOADING);
            EXPECT_EQ(stage.clip->hasRAM, 0);
            EXPECT_EQ(stage.clip->file, nullptr);
            EXPECT_EQ(stage.clip->blockMaps[0], nullptr);
            const std::string name = GetParam().name + std::string(".m19");
            EXPECT_EQ(stage.load(name, budget), 0) << "a refused clip stays refused";
        }
    }
}

// A slot that refused one file takes the next one, as the loader does.
TEST_P(DamagedClip, AfterIt_TheSameSlotLoadsAGoodClip) {
    ClipStage stage(TEST_DATA);
    stage.load(std::string("broken/") + GetParam().name + ".m19", 2000);
    EXPECT_EQ(stage.load("clips/seventeen-200.m19", 2000), 2);
    drawEverything(stage);
}

std::string idOf(const testing::TestParamInfo<Damaged>& info) {
    std::string name = info.param.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, DamagedClip, testing::ValuesIn(kDamaged), idOf);

TEST(DamagedClips, EveryFileOfTheFolder_IsInTheTable) {
    size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA "/broken")) {
        files += entry.path().extension() == ".m19";
    }
    EXPECT_EQ(files, std::size(kDamaged));
}

// Tile 9 of frame 0 is empty and names a record that there is not.
TEST(DamagedClips, EmptyTileWithFreeEntry_IsBlackAndTransparent) {
    ClipStage stage(TEST_DATA "/broken");
    ASSERT_EQ(stage.load("empty-tile-number.m19", 2000), 2);
    std::fill(stage.tiles.begin(), stage.tiles.end(), uint16_t{0x1234});
    std::fill(stage.alpha.begin(), stage.alpha.end(), uint8_t{9});
    stage.clip->renderMoxel19(1, 0, MODE_KEY);
    for (int row = 0; row < 8; ++row) {
        for (int column = 0; column < 8; ++column) {
            const size_t at = static_cast<size_t>(row * kFrameWidth + 9 * 8 + column);
            EXPECT_EQ(stage.tiles[static_cast<size_t>(stage.clip->pixelCount) + at], 0);
            EXPECT_EQ(stage.alpha[at], 0);
        }
    }
}

TEST(DamagedClips, TileOfAMissingRecord_IsDrawnEmpty) {
    ClipStage stage(TEST_DATA "/broken");
    ASSERT_EQ(stage.load("record-number.m19", 2000), 2);
    std::fill(stage.tiles.begin(), stage.tiles.end(), uint16_t{0x1234});
    stage.clip->renderMoxel19(0, 0, MODE_TOP);
    for (int row = 0; row < 8; ++row) {
        for (int column = 0; column < 8; ++column) {
            EXPECT_EQ(stage.tiles[static_cast<size_t>(row * kFrameWidth + 3 * 8 + column)], 0);
        }
    }
}

// The bytes after the last block are ignored: the picture is that of the file without them.
TEST(DamagedClips, TrailingBytes_DoNotChangeThePicture) {
    ClipStage stage(TEST_DATA "/broken");
    std::filesystem::remove("videos");
    std::filesystem::create_directory("videos");
    std::filesystem::copy(TEST_DATA "/broken/trailing-bytes.m19", "videos/long.m19");
    std::filesystem::copy(TEST_DATA "/broken/trailing-bytes.m19", "videos/exact.m19");
    std::filesystem::permissions("videos/exact.m19", std::filesystem::perms::owner_all);
    std::filesystem::resize_file("videos/exact.m19", 1221 - 100);
    ASSERT_EQ(stage.load("exact.m19", 2000), 2);
    stage.clip->renderMoxel19(0, 0, MODE_TOP);
    const std::vector<uint16_t> exact(stage.tiles.begin(), stage.tiles.end());
    std::fill(stage.tiles.begin(), stage.tiles.end(), uint16_t{0});
    stage.clip->killRAM();
    ASSERT_EQ(stage.load("long.m19", 2000), 2);
    stage.clip->renderMoxel19(0, 0, MODE_TOP);
    EXPECT_TRUE(std::ranges::equal(stage.tiles, exact));
}

// A few bytes cannot claim gigabytes, whatever room they announce.
TEST(DamagedClips, AnnouncedRoom_IsACeilingNotAReservation) {
    ClipStage stage(TEST_DATA "/broken");
    stage.load("huge-record-room.m19", 2000);
    EXPECT_LE(stage.clip->recordRoom, size_t{stage.clip->recordCount} * clip::kMaxRecordBytes);
    stage.clip->killRAM();
    stage.load("huge-map-room.m19", 2000);
    EXPECT_LE(stage.clip->mapRoom, size_t{16} * (80 + 128));
}

}  // namespace
