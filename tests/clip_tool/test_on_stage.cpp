// Clips below quality 100 on stage. The demo loops are drawn in test_demo_set.cpp.
#include <gtest/gtest.h>

#include "clip_tool/on_stage.h"
#include "clip_tool/pictures.h"

namespace {

TEST(OnStage, LossyClip_IsDrawnAsExported) {
    expectOnStage(pictures::encode(pictures::film(77, 120, 20, false), 60));
}

TEST(OnStage, LossyClipWithAlpha_IsDrawnAsExported) {
    expectOnStage(pictures::encode(pictures::film(78, 120, 20, true), 60));
}

}  // namespace
