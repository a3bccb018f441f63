// Clips whose frames have known checksums, call by call.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "tests/support/clip_stage.h"
#include "tests/support/frames.h"

namespace {

constexpr size_t kAlphaBytes = kFramePixels;

std::vector<std::string> clipNames() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(TEST_DATA "/clips")) {
        if (entry.path().extension() == ".m19") {
            names.push_back(entry.path().filename().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

nlohmann::json manifestOf(const std::string& name) {
    return nlohmann::json::parse(std::ifstream(TEST_DATA "/clips/" + name + ".json"));
}

void setGlitch(c_filters& filters, int layer, const nlohmann::json& glitch) {
    filters.initFilters();
    if (!glitch.is_null()) {
        filters.slots[layer][4] = {FILTER_GLITCH, glitch.get<int>(), 1, 0};
    }
}

void expectCalls(ClipStage& stage, const nlohmann::json& manifest) {
    int number = 0;
    for (const nlohmann::json& call : manifest.at("calls")) {
        const int layer = call.at("layer");
        setGlitch(stage.filters, layer, call.at("glitch"));
        stage.clip->renderMoxel19(layer, call.at("frame"), call.at("mode"));
        ASSERT_EQ(frames::crc(stage.tiles.data(), kLayers * kFrameBytes),
                  call.at("tiles_crc32").get<std::string>())
            << "call " << number << ": " << call;
        if (!call.at("alpha_crc32").is_null()) {
            ASSERT_EQ(frames::crc(stage.alpha.data(), kAlphaBytes),
                      call.at("alpha_crc32").get<std::string>())
                << "call " << number << ": " << call;
        }
        ++number;
    }
    ASSERT_GT(number, 0);
}

class ClipVector : public testing::TestWithParam<std::string> {};

TEST_P(ClipVector, LoadedInOneGo_DrawsTheListedFrames) {
    const nlohmann::json manifest = manifestOf(GetParam());
    ClipStage stage(TEST_DATA "/clips");
    ASSERT_EQ(stage.load(GetParam(), 65000), 2);
    expectCalls(stage, manifest);
}

TEST_P(ClipVector, LoadedInSmallSteps_DrawsTheListedFrames) {
    const nlohmann::json manifest = manifestOf(GetParam());
    ClipStage stage(TEST_DATA "/clips");
    ASSERT_EQ(stage.load(GetParam(), 7), 2);
    expectCalls(stage, manifest);
}

TEST_P(ClipVector, ReloadedAfterKillRAM_DrawsTheListedFrames) {
    const nlohmann::json manifest = manifestOf(GetParam());
    ClipStage stage(TEST_DATA "/clips");
    ASSERT_EQ(stage.load("rgba-all-360.m19", 65000), 2);
    stage.clip->renderMoxel19(0, 7, MODE_TOP);
    std::fill(stage.tiles.begin(), stage.tiles.end(), uint16_t{0});
    stage.clip->killRAM();
    ASSERT_EQ(stage.load(GetParam(), 2000), 2);
    expectCalls(stage, manifest);
}

TEST_P(ClipVector, Header_ReadsAsListed) {
    const nlohmann::json header = manifestOf(GetParam()).at("header");
    ClipStage stage(TEST_DATA "/clips");
    ASSERT_EQ(stage.clip->miniLoad("./videos/" + GetParam()), 1);
    EXPECT_EQ(stage.clip->version, header.at("version").get<int>());
    EXPECT_EQ(stage.clip->quality, header.at("quality").get<int>());
    EXPECT_EQ(stage.clip->height, header.at("height").get<int>());
    EXPECT_EQ(stage.clip->alpha, header.at("alpha").get<int>());
    EXPECT_EQ(stage.clip->blockCount, header.at("blockCount").get<int>());
    EXPECT_EQ(stage.clip->frameCount, header.at("frameCount").get<int>());
    EXPECT_EQ(stage.clip->fileSize, header.at("fileSize").get<int>());
}

// The frame maps of the quick expansion are those of the plain one.
TEST_P(ClipVector, FrameMaps_EqualTheMapsRebuiltOneByOne) {
    ClipStage stage(TEST_DATA "/clips");
    ASSERT_EQ(stage.load(GetParam(), 65000), 2);
    c_moxel& clip = *stage.clip;
    for (int frame = 0; frame < clip.frameCount; ++frame) {
        clip.currentBlock = frame / clip::kFramesPerBlock;
        clip.unRLEMap19(frame % clip::kFramesPerBlock);
        ASSERT_TRUE(
            std::equal(clip.scratchMap, clip.scratchMap + clip.tileCount, clip.frameMaps[frame]))
            << "frame " << frame;
    }
}

std::string idOf(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param.substr(0, info.param.size() - 4);
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(All, ClipVector, testing::ValuesIn(clipNames()), idOf);

}  // namespace
