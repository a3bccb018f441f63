// The demo loops as the encoder will see them: every byte, alpha, seams.
#include "art/loops/loops.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "clip_tool/demo_sheet.h"

namespace {

using demo_sheet::kPixels;
using demo_sheet::pixelOf;
using demo_sheet::Sheet;

class DemoLoop : public testing::TestWithParam<demo::Loop> {};

TEST_P(DemoLoop, Frame_WritesEveryByteAndNothingBeyond) {
    Sheet dark;
    Sheet light;
    for (const int frame : {0, 1, GetParam().frames / 3, GetParam().frames - 1}) {
        dark.draw(GetParam(), frame, 0x00);
        light.draw(GetParam(), frame, 0xFF);
        EXPECT_TRUE(dark.same(light)) << "frame " << frame;
        EXPECT_TRUE(dark.fenceWhole() && light.fenceWhole()) << "frame " << frame;
    }
}

TEST_P(DemoLoop, FrameAfterTheLast_IsTheFirst) {
    Sheet first;
    Sheet again;
    first.draw(GetParam(), 0);
    again.draw(GetParam(), GetParam().frames);
    EXPECT_TRUE(first.same(again));
    first.draw(GetParam(), 5);
    again.draw(GetParam(), 5 + GetParam().frames);
    EXPECT_TRUE(first.same(again));
}

// A jump at the seam would change more of the picture than any step inside the loop.
TEST_P(DemoLoop, StepOverTheSeam_ChangesNoMoreThanTheOthers) {
    Sheet before;
    Sheet after;
    size_t most = 0;
    before.draw(GetParam(), 0);
    for (int frame = 1; frame < GetParam().frames; frame++) {
        after.draw(GetParam(), frame);
        most = std::max(most, before.changedPixels(after));
        std::swap(before, after);
    }
    after.draw(GetParam(), 0);
    EXPECT_LE(before.changedPixels(after), most + most / 10);
}

TEST_P(DemoLoop, MiddleFrame_DiffersFromBothEnds) {
    Sheet middle;
    Sheet end;
    middle.draw(GetParam(), GetParam().frames / 2 - 3);
    end.draw(GetParam(), 0);
    EXPECT_GT(middle.changedPixels(end), kPixels / 1000);
    end.draw(GetParam(), GetParam().frames - 1);
    EXPECT_GT(middle.changedPixels(end), kPixels / 1000);
}

TEST_P(DemoLoop, AlphaBytes_FollowTheAlphaFlag) {
    Sheet sheet;
    size_t clear = 0;
    size_t solid = 0;
    size_t frames = 0;
    for (int frame = 0; frame < GetParam().frames; frame += 7, frames++) {
        sheet.draw(GetParam(), frame);
        for (size_t i = 0; i < kPixels; i++) {
            clear += sheet.pixels()[i * 4 + 3] == 0 ? 1 : 0;
            solid += sheet.pixels()[i * 4 + 3] == 255 ? 1 : 0;
        }
    }
    if (GetParam().alpha) {
        EXPECT_GT(clear, frames * kPixels / 20);
        EXPECT_GT(solid, frames * kPixels / 20);
    } else {
        EXPECT_EQ(solid, frames * kPixels);
    }
}

std::string loopName(const testing::TestParamInfo<demo::Loop>& info) {
    std::string name = info.param.name;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Each, DemoLoop,
                         testing::ValuesIn(demo::loops().begin(), demo::loops().end()), loopName);

}  // namespace
