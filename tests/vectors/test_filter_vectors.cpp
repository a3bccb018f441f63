// The filter effects, and whole frames with filters, against known checksums.
#include <gtest/gtest.h>

#include <cstdlib>

#include "mixer_stage.h"

namespace {

void runFilter(c_filters& filters, const json& test) {
    const std::string op = test.at("op");
    const int layer = test.at("layer");
    const int dir = test.value("dir", 0);
    if (op == "fx_invert") {
        filters.fx_invert(layer);
    } else if (op == "fx_brulure") {
        filters.fx_brulure(layer, dir);
    } else if (op == "fx_zoom") {
        filters.fx_zoom(layer, dir);
    } else if (op == "fx_gameBoy") {
        filters.fx_gameBoy(layer, dir);
    } else if (op == "fx_mirror") {
        filters.fx_mirror(layer, dir, 0);
    } else {
        ASSERT_EQ(op, "fx_hue");
        filters.fx_hue(layer, dir);
    }
}

class Filters : public testing::TestWithParam<json> {};
TEST_P(Filters, Slots_MatchTheListedChecksums) {
    MixerStage stage(GetParam());
    for (int times = GetParam().value("times", 1); times > 0; --times) {
        runFilter(stage.filters, GetParam());
    }
    stage.expect(GetParam().at("expect"));
}

class Snow : public testing::TestWithParam<json> {};
TEST_P(Snow, EveryCall_MatchesItsChecksums) {
    MixerStage stage(GetParam());
    srand(GetParam().at("srand"));
    for (const json& call : GetParam().at("calls")) {
        stage.filters.fx_snow(call.at("layer"), call.at("dir"));
        stage.expect(call.at("expect"));
    }
}

class Scroll : public testing::TestWithParam<json> {};
TEST_P(Scroll, EveryStep_MatchesItsOffsetAndChecksums) {
    MixerStage stage(GetParam());
    const int layer = GetParam().at("layer");
    for (const json& step : GetParam().at("steps")) {
        for (int times = step.at("times"); times > 0; --times) {
            stage.filters.fx_scroll(layer, step.at("dir"), step.at("hold"));
        }
        EXPECT_EQ(stage.filters.getFilterCoef(layer, FILTER_SCROLL), step.at("coef").get<int>())
            << step;
        stage.expect(step.at("expect"));
    }
}

// finRender on a sequence of frames; nothing is refilled between them but what a frame says.
class FinRender : public testing::TestWithParam<json> {};
TEST_P(FinRender, EveryFrame_MatchesItsChecksums) {
    const json& test = GetParam();
    MixerStage stage(test);
    stage.fill(finalTilesTracks, 0, test, "tracks0");
    stage.fill(finalTilesTracks, 1, test, "tracks1");
    stage.mixer.topBar = test.at("topbar");
    if (test.contains("srand")) {
        srand(test.at("srand"));
    }
    for (const json& frame : test.at("frames")) {
        stage.fill(moxelTiles16, 0, frame, "moxel0");
        stage.fill(moxelTiles16, 1, frame, "moxel1");
        stage.fillAlpha(frame);
        stage.setSlots(frame);
        stage.mixer.mode = frame.at("mode");
        stage.mixer.fade = frame.at("fade");
        stage.mixer.flash = frame.at("flash");
        stage.mixer.hold = frame.at("hold");
        stage.mixer.finRender(frame.at("position"), frame.at("length"));
        stage.expect(frame.at("expect"));
        for (const json& coef : frame.at("expect").value("coef", json::array())) {
            EXPECT_EQ(stage.filters.slots[coef[0].get<int>()][coef[1].get<int>()].coef,
                      coef[2].get<int>());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, Filters, testing::ValuesIn(vectorsOf("filters")), idOf);
INSTANTIATE_TEST_SUITE_P(All, Snow, testing::ValuesIn(vectorsOf("snow")), idOf);
INSTANTIATE_TEST_SUITE_P(All, Scroll, testing::ValuesIn(vectorsOf("scroll")), idOf);
INSTANTIATE_TEST_SUITE_P(All, FinRender, testing::ValuesIn(vectorsOf("finrender")), idOf);

}  // namespace
