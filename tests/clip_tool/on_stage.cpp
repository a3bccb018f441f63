#include "clip_tool/on_stage.h"

#include <gtest/gtest.h>

#include <cstring>
#include <fstream>

#include "clip_tool/pictures.h"
#include "tests/support/clip_stage.h"
#include "tools/clip/reports/clip_frames.h"

namespace {

constexpr int kBudget = 65000;
constexpr int kReady = 2;
constexpr int kTopLayer = 1;
constexpr int kAlphaMode = 3;
constexpr int kJumps = 40;

void expectFrame(c_moxel& clip, const maker::ClipFrames& frames, int number) {
    clip.renderMoxel19(kTopLayer, number, kAlphaMode);
    maker::Frame frame;
    frames.draw(number, frame);
    const size_t pixels = frame.pixels.size();
    ASSERT_EQ(std::memcmp(moxelTiles16 + pixels, frame.pixels.data(), pixels * 2), 0)
        << "frame " << number;
    if (frames.alpha()) {
        ASSERT_EQ(std::memcmp(moxelAlpha16, frame.alpha.data(), pixels), 0)
            << "alpha of frame " << number;
    }
}

}  // namespace

void expectOnStage(const std::vector<uint8_t>& bytes) {
    const TemporaryFolder videos;
    std::ofstream("made.m19", std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    ClipStage stage(videos.path());
    ASSERT_EQ(stage.load("made.m19", kBudget), kReady);
    const maker::ClipFrames frames(bytes);
    ASSERT_EQ(frames.count(), stage.clip->frameCount);
    for (int number = 0; number < frames.count(); ++number) {
        expectFrame(*stage.clip, frames, number);
    }
    expectFrame(*stage.clip, frames, 0);
    expectFrame(*stage.clip, frames, frames.count() - 1);
    pictures::Random random(7);
    for (int jump = 0; jump < kJumps; ++jump) {
        expectFrame(*stage.clip, frames, random.below(frames.count()));
    }
}
