// The tests' own decoder against clips whose pictures are known.
#include "clip_tool/reference.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>

#include "support/frames.h"

namespace {

std::vector<uint8_t> read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

class Manifest : public testing::TestWithParam<const char*> {};

// The first drawing call of a manifest draws every tile into buffers of zeros.
TEST_P(Manifest, Reference_FirstCallGivesTheChecksums) {
    const std::string path = std::string(TEST_DATA) + "/clips/" + GetParam();
    const std::vector<uint8_t> bytes = read(path);
    std::ifstream manifestFile(path + ".json");
    const nlohmann::json call = nlohmann::json::parse(manifestFile).at("calls").at(0);
    ASSERT_TRUE(call.at("glitch").is_null());

    const reference::Clip clip = reference::parse(bytes);
    EXPECT_EQ(clip.length, bytes.size());
    const size_t frame = call.at("frame");
    const reference::Picture picture = reference::decode(clip).at(frame);
    std::vector<uint16_t> layers(640 * 360 * 2, 0);
    const size_t layer = call.at("layer");
    std::copy(picture.pixels.begin(), picture.pixels.end(),
              layers.begin() + static_cast<long>(layer * picture.pixels.size()));
    EXPECT_EQ(frames::crc(layers.data(), layers.size() * 2), call.at("tiles_crc32"));

    std::vector<uint8_t> alpha(640 * 360, 0);
    if (layer == 1 && call.at("mode") == 3) {
        std::copy(picture.alpha.begin(), picture.alpha.end(), alpha.begin());
    }
    if (!call.at("alpha_crc32").is_null()) {
        EXPECT_EQ(frames::crc(alpha.data(), alpha.size()), call.at("alpha_crc32"));
    }
}

INSTANTIATE_TEST_SUITE_P(Clips, Manifest,
                         testing::Values("rgb-all-360.m19", "rgba-all-360.m19", "one-frame-8.m19",
                                         "long-256.m19", "block-16-200.m19", "seventeen-200.m19",
                                         "gaps-64.m19", "runs-360.m19", "dense-360.m19",
                                         "flat-200.m19", "roomy-104.m19", "shared-176.m19"));

}  // namespace
