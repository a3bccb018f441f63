// The foretold loading steps against the program's own loader.
#include <gtest/gtest.h>

#include "tests/vectors/clip_stage.h"
#include "tools/clip/atomic_file.h"
#include "tools/clip/describe.h"

namespace {

namespace fs = std::filesystem;

constexpr int kFirstClipBudget = 65000;
constexpr int kOtherClipBudget = 2000;
constexpr int kReady = 2;

int stepsOf(c_moxel& clip, const std::string& name, int budget) {
    clip.init("", name);
    int steps = 1;
    while (clip.loopLoad(budget) != kReady) {
        ++steps;
    }
    clip.killRAM();
    return steps;
}

TEST(LoadSteps, EveryTestClip_LoadsInTheStepsForetold) {
    const fs::path clips = fs::path(TEST_DATA) / "clips";
    ClipStage stage(clips);
    int compared = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(clips)) {
        if (entry.path().extension() != ".m19") {
            continue;
        }
        const std::string name = entry.path().filename().string();
        maker::Description description;
        ASSERT_TRUE(maker::describe(maker::readWholeFile(entry.path()), description));
        EXPECT_EQ(stepsOf(*stage.clip, name, kOtherClipBudget), description.cost.steps) << name;
        EXPECT_EQ(stepsOf(*stage.clip, name, kFirstClipBudget), description.cost.stepsAsFirst)
            << name;
        ++compared;
    }
    EXPECT_EQ(compared, 12);
}

}  // namespace
