// What the header of a clip's file leaves in the object, and which file it is that counts.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "tests/support/clip_stage.h"

namespace {

namespace fs = std::filesystem;

constexpr uint16_t kMark = 0x4A07;
constexpr size_t kHeightAt = 4;  // in the file, two bytes

std::string clipBytes(const std::string& name) {
    std::ifstream file(fs::path(TEST_DATA) / "clips" / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A folder of its own, so that its files can be written over.
class ClipHeader : public testing::Test {
protected:
    ClipHeader() : stage(TEST_DATA "/clips") {
        fs::remove("videos");
        fs::create_directory("videos");
    }

    static void put(const std::string& name, const std::string& bytes) {
        std::ofstream("videos/" + name, std::ios::binary) << bytes;
    }

    ClipStage stage;
};

// Version 18, then every other header byte unlike those of the clip that was read before.
TEST_F(ClipHeader, AnotherVersion_ChangesVersionAndSizeAlone) {
    put("good.m19", clipBytes("seventeen-200.m19"));
    put("old.m19", std::string("\x12\x63\x50\x01\x40\x01\x01\x05\x4B", 9) + std::string(31, 'x'));
    c_moxel& clip = *stage.clip;
    ASSERT_EQ(clip.miniLoad("./videos/good.m19"), 1);
    const int quality = clip.quality;
    ASSERT_NE(quality, 0x63);
    EXPECT_EQ(clip.miniLoad("./videos/old.m19"), 0);
    EXPECT_EQ(clip.version, 18);
    EXPECT_EQ(clip.fileSize, 40);
    EXPECT_EQ(clip.quality, quality);
    EXPECT_EQ(clip.height, 200);
    EXPECT_EQ(clip.alpha, 0);
    EXPECT_EQ(clip.blockCount, 2);
    EXPECT_EQ(clip.frameCount, 17);
}

TEST_F(ClipHeader, FileThatCannotBeOpened_ChangesNothing) {
    put("good.m19", clipBytes("seventeen-200.m19"));
    c_moxel& clip = *stage.clip;
    ASSERT_EQ(clip.miniLoad("./videos/good.m19"), 1);
    const int size = clip.fileSize;
    EXPECT_EQ(clip.miniLoad("./videos/gone.m19"), 0);
    EXPECT_EQ(clip.version, 19);
    EXPECT_EQ(clip.fileSize, size);
    EXPECT_EQ(clip.frameCount, 17);
}

// 204 lines are 25 rows of tiles and 4 lines more, which count as pixels: the top layer starts
// behind them. No tile is drawn there.
TEST_F(ClipHeader, HeightBetweenTiles_CountsItsPixelsWhole) {
    std::string bytes = clipBytes("flat-200.m19");
    bytes[kHeightAt] = static_cast<char>(204);
    put("odd.m19", bytes);
    ASSERT_EQ(stage.load("odd.m19", 65000), 2);
    EXPECT_EQ(stage.clip->height, 204);
    EXPECT_EQ(stage.clip->tilesAcross, 80);
    EXPECT_EQ(stage.clip->tilesDown, 25);
    EXPECT_EQ(stage.clip->tileCount, 2000);
    EXPECT_EQ(stage.clip->pixelCount, 130560);
    std::fill(stage.tiles.begin(), stage.tiles.end(), kMark);
    stage.clip->renderMoxel19(1, 0, MODE_TOP);
    const auto begin = stage.tiles.begin();
    EXPECT_EQ(std::count(begin, begin + 130560, kMark), 130560);
    EXPECT_EQ(std::count(begin + 130560, begin + 258560, kMark), 0);
    EXPECT_EQ(std::count(begin + 258560, stage.tiles.end(), kMark), 460800 - 258560);
}

TEST_F(ClipHeader, FileReplacedAfterTheCheck_TheOneThatIsOpenCounts) {
    put("clip.m19", clipBytes("one-frame-8.m19"));
    c_moxel& clip = *stage.clip;
    clip.init("", "clip.m19");
    ASSERT_EQ(clip.miniLoad(clip.path), 1);
    ASSERT_EQ(clip.frameCount, 1);
    fs::remove("videos/clip.m19");
    const std::string replacement = clipBytes("seventeen-200.m19");
    put("clip.m19", replacement);
    testing::internal::CaptureStdout();
    ASSERT_EQ(clip.load19A(), 1);
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(clip.height, 200);
    EXPECT_EQ(clip.blockCount, 2);
    EXPECT_EQ(clip.frameCount, 17);
    EXPECT_EQ(clip.tileCount, 2000);
    EXPECT_EQ(clip.quality, static_cast<uint8_t>(replacement[1]));
    EXPECT_EQ(clip.load19AA(), 1);
    EXPECT_EQ(clip.codeWordsInBlock, 16 * 400);
}

TEST_F(ClipHeader, FileReplacedByAnotherVersionAfterTheCheck_Refused) {
    put("clip.m19", clipBytes("one-frame-8.m19"));
    c_moxel& clip = *stage.clip;
    clip.init("", "clip.m19");
    ASSERT_EQ(clip.miniLoad(clip.path), 1);
    std::string bytes = clipBytes("one-frame-8.m19");
    bytes[0] = 18;
    fs::remove("videos/clip.m19");
    put("clip.m19", bytes);
    testing::internal::CaptureStdout();
    EXPECT_EQ(clip.load19A(), 0);
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(clip.version, 18);
}

}  // namespace
