// A clip that cannot have the memory that it needs: each call for some fails in turn.
#include <gtest/gtest.h>

#include <algorithm>

#include "support/failing_memory.h"
#include "tests/support/clip_stage.h"

namespace {

constexpr const char* kClip = "gaps-64.m19";  // 33 frames in 3 blocks, with alpha
constexpr const char* kSaid = "Not enough memory for this clip\n";
// 27 buffers, nine a block; the drawn map and its codes; the clip's name is short enough to need no
// memory, its path is not.
constexpr long kCallsOfALoad = 30;

std::string printedBy(const std::function<void()>& act) {
    testing::internal::CaptureStdout();
    act();
    return testing::internal::GetCapturedStdout();
}

int openFiles() {
    const std::filesystem::directory_iterator files("/proc/self/fd");
    return static_cast<int>(std::distance(begin(files), end(files)));
}

size_t linesOf(const std::string& text, const std::string& line) {
    size_t count = 0;
    for (size_t at = text.find(line); at != std::string::npos; at = text.find(line, at + 1)) {
        ++count;
    }
    return count;
}

// All frames on the top layer with their alpha, one after the other.
std::vector<uint8_t> drawn(ClipStage& stage) {
    std::vector<uint8_t> pictures;
    std::fill(stage.tiles.begin(), stage.tiles.end(), uint16_t{0});
    std::fill(stage.alpha.begin(), stage.alpha.end(), uint8_t{0});
    for (int frame = 0; frame < stage.clip->frameCount; ++frame) {
        stage.clip->renderMoxel19(1, frame, MODE_KEY);
        const auto* pixels = reinterpret_cast<const uint8_t*>(stage.tiles.data());
        pictures.insert(pictures.end(), pixels + 2 * stage.clip->pixelCount,
                        pixels + 4 * stage.clip->pixelCount);
        pictures.insert(pictures.end(), stage.alpha.begin(),
                        stage.alpha.begin() + stage.clip->pixelCount);
    }
    return pictures;
}

void expectFreed(const c_moxel& clip) {
    EXPECT_EQ(clip.hasRAM, 0);
    EXPECT_EQ(clip.file, nullptr);
    EXPECT_EQ(clip.state, CLIP_LOADING);
    EXPECT_EQ(clip.loadStage, 0);
    for (int block = 0; block < clip::kMaxBlocks; ++block) {
        EXPECT_EQ(clip.blockPalettes[block], nullptr) << block;
        EXPECT_EQ(clip.blockMaps[block], nullptr) << block;
        EXPECT_EQ(clip.blockRuns[block], nullptr) << block;
        EXPECT_EQ(clip.blockCodes[block], nullptr) << block;
        EXPECT_EQ(clip.blockRecords[block], nullptr) << block;
        EXPECT_EQ(clip.blockRecordOffsets[block], nullptr) << block;
        EXPECT_EQ(clip.blockRecordTypes[block], nullptr) << block;
        EXPECT_EQ(clip.blockTypeCounts[block], nullptr) << block;
        EXPECT_EQ(clip.blockTypeStarts[block], nullptr) << block;
    }
}

class ClipMemory : public testing::TestWithParam<Shortage> {
protected:
    ClipMemory() {
        load();
        wanted = drawn(stage);
    }
    void load() {
        printedBy([this] { ASSERT_EQ(stage.load(kClip, 100), 2); });
    }
    // A slot as it is before its first clip.
    void renew() {
        stage.clip->killRAM();
        stage.clip = std::make_unique<c_moxel>();
    }
    // A load whose `call`-th call for memory fails; whether one did.
    bool loadShortOf(long call) {
        bool failed = false;
        const std::string name = kClip;
        printed = printedBy([&] {
            failed = withFailingMemory(call, GetParam(), [&] {
                stage.clip->init("", name);
                result = 1;
                while (result == 1) {
                    result = stage.clip->loopLoad(100);
                }
            });
        });
        return failed;
    }

    ClipStage stage{TEST_DATA "/clips"};
    std::vector<uint8_t> wanted;
    std::string printed;
    int result = -1;
};

TEST_P(ClipMemory, EachCallOfALoadFails_RefusedFreedAndLoadedTheNextTime) {
    const int files = openFiles();
    long call = 1;
    for (; call <= 2 * kCallsOfALoad && !HasFailure(); ++call) {
        SCOPED_TRACE(call);
        renew();
        if (!loadShortOf(call)) {
            EXPECT_EQ(result, 2);
            break;
        }
        EXPECT_EQ(result, 0);
        EXPECT_EQ(linesOf(printed, kSaid), 1u) << printed;
        // Before it there is the file's name, where it was opened at all.
        EXPECT_EQ(linesOf(printed, "\n"), linesOf(printed, "./videos/") + 1) << printed;
        expectFreed(*stage.clip);
        EXPECT_EQ(openFiles(), files);
        load();
        EXPECT_TRUE(drawn(stage) == wanted);
    }
    EXPECT_EQ(call, kCallsOfALoad + 1);
}

// What a refused load leaves is what a slot keeps after any clip: its path and the drawn map.
TEST_P(ClipMemory, EachCallOfALoadFails_NothingStaysBehind) {
    for (long call = 1; call <= kCallsOfALoad; ++call) {
        stage.clip->killRAM();
        stage.clip.reset();
        const long before = blocksInUse();
        stage.clip = std::make_unique<c_moxel>();
        EXPECT_TRUE(loadShortOf(call));
        stage.clip.reset();
        std::string().swap(printed);
        EXPECT_EQ(blocksInUse(), before) << call;
        stage.clip = std::make_unique<c_moxel>();
    }
}

// A slot that has played needs memory for its blocks alone.
TEST_P(ClipMemory, SlotThatHasPlayed_RefusesAndLoadsAgainAllTheSame) {
    for (const long call : {1L, 9L, 10L, 27L}) {
        stage.clip->killRAM();
        EXPECT_TRUE(loadShortOf(call));
        EXPECT_EQ(result, 0);
        EXPECT_EQ(printed, std::string("./videos/") + kClip + "\n" + kSaid);
        expectFreed(*stage.clip);
        load();
        EXPECT_TRUE(drawn(stage) == wanted);
    }
}

INSTANTIATE_TEST_SUITE_P(Shortages, ClipMemory,
                         testing::Values(Shortage::ONE_CALL, Shortage::FROM_THEN_ON),
                         [](const auto& each) {
                             return each.param == Shortage::ONE_CALL ? "OneCall" : "FromThenOn";
                         });

// The steps by themselves, as `loopLoad` is made of them.
TEST(ClipSteps, WithoutMemory_AnswerNoWithoutThrowing) {
    ClipStage stage(TEST_DATA "/clips");
    const std::string name = kClip;
    stage.clip->init("", name);
    int opened = -1;
    int headed = -1;
    bool allocated = true;
    const std::string printed = printedBy([&] {
        withFailingMemory(1, Shortage::FROM_THEN_ON, [&] { opened = stage.clip->load19A(); });
        stage.clip->killRAM();
        EXPECT_EQ(stage.clip->load19A(), 1);
        withFailingMemory(1, Shortage::FROM_THEN_ON, [&] { headed = stage.clip->load19AA(); });
        withFailingMemory(1, Shortage::FROM_THEN_ON,
                          [&] { allocated = stage.clip->initKeyFrameRAM(1); });
    });
    EXPECT_EQ(opened, 0);
    EXPECT_EQ(headed, 0);
    EXPECT_FALSE(allocated);
    EXPECT_EQ(linesOf(printed, kSaid), 2u);
}

// A load opens its file twice for the check, then to read it.
TEST(ClipStreams, WithoutMemory_AreRefusedAndClosed) {
    ClipStage stage(TEST_DATA "/clips");
    const int files = openFiles();
    for (int opening = 1; opening <= 3; ++opening) {
        stage.clip->init("", kClip);
        failStream(opening);
        const std::string printed =
            printedBy([&] { EXPECT_EQ(stage.clip->loopLoad(100), 0) << opening; });
        EXPECT_EQ(printed, (opening == 3 ? "./videos/gaps-64.m19\n" : std::string()) + kSaid);
        expectFreed(*stage.clip);
        EXPECT_EQ(openFiles(), files);
    }
    printedBy([&] { EXPECT_EQ(stage.load(kClip, 100), 2); });
    EXPECT_EQ(openFiles(), files);
}

}  // namespace
