// The mixer's operations on generated frames, against known checksums.
#include <gtest/gtest.h>

#include "mixer_stage.h"

namespace {

void runMix(c_mix& mixer, const std::string& op) {
    auto* out = static_cast<uint16_t*>(screen[1]->pixels);
    if (op == "mixBlend") {
        mixer.mixBlend(out);
    } else if (op == "mixAdd") {
        mixer.mixAdd(out);
    } else if (op == "mixMultiply") {
        mixer.mixMultiply(out);
    } else if (op == "mixKey") {
        mixer.mixKey(out);
    } else {
        ASSERT_EQ(op, "mixHalfHalf");
        mixer.mixHalfHalf();
    }
}

class Generators : public testing::TestWithParam<json> {};
TEST_P(Generators, Plane_MatchesItsChecksum) {
    const json& test = GetParam();
    if (test.at("plane") == "frame") {
        const std::vector<uint16_t> frame = frames::make(test.at("input"));
        EXPECT_EQ(frames::crc(frame.data(), kFrameBytes), test.at("crc").get<std::string>());
    } else {
        const std::vector<uint8_t> plane = frames::makeAlpha(test.at("input"));
        EXPECT_EQ(frames::crc(plane.data(), plane.size()), test.at("crc").get<std::string>());
    }
}

class Mixes : public testing::TestWithParam<json> {};
TEST_P(Mixes, Result_MatchesTheListedChecksums) {
    MixerStage stage(GetParam());
    runMix(stage.mixer, GetParam().at("op"));
    stage.expect(GetParam().at("expect"));
}

class Placement : public testing::TestWithParam<json> {};
TEST_P(Placement, Surface_MatchesTheListedChecksums) {
    MixerStage stage(GetParam());
    stage.mixer.scale2x(stage.slot(GetParam().at("slot")));
    stage.expect(GetParam().at("expect"));
}

class Transitions : public testing::TestWithParam<json> {};
TEST_P(Transitions, Slot_MatchesTheListedChecksums) {
    const json& test = GetParam();
    MixerStage stage(test);
    stage.mixer.flash = test.value("flash", 0);
    stage.mixer.fade = test.value("fade", 0);
    if (test.at("op") == "renderWhiteFlash") {
        stage.mixer.renderWhiteFlash(stage.slot(test.at("slot")));
    } else {
        stage.mixer.renderFadeToBlack(stage.slot(test.at("slot")));
    }
    stage.expect(test.at("expect"));
}

INSTANTIATE_TEST_SUITE_P(All, Generators, testing::ValuesIn(vectorsOf("generators")), idOf);
INSTANTIATE_TEST_SUITE_P(All, Mixes, testing::ValuesIn(vectorsOf("mixes")), idOf);
INSTANTIATE_TEST_SUITE_P(All, Placement, testing::ValuesIn(vectorsOf("placement")), idOf);
INSTANTIATE_TEST_SUITE_P(All, Transitions, testing::ValuesIn(vectorsOf("transitions")), idOf);

}  // namespace
