// Clips decoded to frames against the reference decoder, and frames as 8-bit pictures.
#include <gtest/gtest.h>

#include <fstream>

#include "clip_tool/pictures.h"
#include "clip_tool/reference.h"
#include "support/folder.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/clip/reports/clip_frames.h"

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<uint8_t>;

void expectLikeReference(const Bytes& bytes, const std::string& name) {
    const std::vector<reference::Picture> expected = reference::decode(reference::parse(bytes));
    const maker::ClipFrames clip(bytes);
    ASSERT_EQ(clip.count(), static_cast<int>(expected.size())) << name;
    maker::Frame frame;
    for (int i = clip.count() - 1; i >= 0; --i) {
        clip.draw(i, frame);
        const reference::Picture& picture = expected[static_cast<size_t>(i)];
        ASSERT_TRUE(frame.pixels == picture.pixels) << name << ", frame " << i;
        if (clip.alpha()) {
            ASSERT_TRUE(frame.alpha == picture.alpha) << name << ", frame " << i;
        } else {
            ASSERT_TRUE(frame.alpha.empty());
        }
    }
}

TEST(ClipFrames, EveryTestClip_DrawsAsTheReferenceDoes) {
    int compared = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(TEST_DATA "/clips")) {
        if (entry.path().extension() == ".m19") {
            expectLikeReference(maker::readWholeFile(entry.path()), entry.path().filename());
            ++compared;
        }
    }
    EXPECT_EQ(compared, 12);
}

TEST(ClipFrames, RandomFilm_DrawsAsTheReferenceDoes) {
    for (const bool alpha : {false, true}) {
        expectLikeReference(pictures::encode(pictures::film(41, 64, 35, alpha)), "film");
    }
}

// The program and the reference agree about damaged clips only where the bytes stay in bounds;
// these two play.
TEST(ClipFrames, HarmlessDamage_Plays) {
    const fs::path broken = fs::path(TEST_DATA) / "broken";
    EXPECT_GT(maker::openClip(broken / "trailing-bytes.m19").count(), 0);
    EXPECT_GT(maker::openClip(broken / "empty-tile-number.m19").count(), 0);
}

TEST(ClipFrames, EveryOtherDamagedClip_IsRefused) {
    int refused = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(TEST_DATA "/broken")) {
        const std::string name = entry.path().filename();
        if (entry.path().extension() != ".m19" || name == "trailing-bytes.m19" ||
            name == "empty-tile-number.m19") {
            continue;
        }
        EXPECT_THROW(maker::openClip(entry.path()), maker::ToolError) << name;
        ++refused;
    }
    EXPECT_EQ(refused, 38);
}

TEST(ClipFrames, NoClip_ErrorNamesTheFile) {
    const TemporaryFolder folder;
    std::ofstream("x.m19") << "hello";
    try {
        maker::openClip("x.m19");
        FAIL();
    } catch (const maker::ToolError& error) {
        EXPECT_STREQ(error.what(),
                     "cannot play x.m19: broken in the file header at offset 0: version 104, not "
                     "19");
    }
}

// 0x8410: red 16, green 32, blue 16 of 31, 63, 31; their upper bits repeated below.
TEST(ClipFrames, Rgba_RepeatsUpperBits) {
    maker::Frame frame = pictures::flat(8, 0x8410, true);
    frame.alpha[1] = 9;
    frame.pixels[2] = 0xFFFF;
    frame.pixels[3] = 0x0821;
    std::vector<uint8_t> rgba;
    maker::toRgba(frame, rgba);
    ASSERT_EQ(rgba.size(), 640u * 8 * 4);
    const Bytes expected{132, 130, 132, 255, 132, 130, 132, 153, 255, 255, 255, 255, 8, 4, 8, 255};
    EXPECT_EQ(Bytes(rgba.begin(), rgba.begin() + 16), expected);
}

TEST(ClipFrames, RgbaWithoutAlpha_IsOpaque) {
    std::vector<uint8_t> rgba;
    maker::toRgba(pictures::flat(8, 0), rgba);
    EXPECT_EQ(rgba[3], 255);
}

}  // namespace
