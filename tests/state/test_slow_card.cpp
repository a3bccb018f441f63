// Clips from a slow card: no frame is held for them, and what is loaded and said is what it always
// was.
#include <cstring>
#include <filesystem>
#include <iterator>

#include "bench/synthetic_clip.h"
#include "state/stage.h"
#include "support/slow_card.h"

namespace {

constexpr double kFrameMs = 39;
constexpr int kFrames = 40;  // of the clip: three blocks, the last one short
constexpr int kPatience = 50;

int openFiles() {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                                          std::filesystem::directory_iterator()));
}

class SlowCard : public StageTest {
protected:
    SlowCard() {
        // What the first clip reads in one step keeps the card busy for longer than a frame.
        const std::vector<uint8_t> clip = syntheticClip(TileKind::kRaw, kFrames, 20);
        for (const char* name : {"a.m19", "b.m19", "c.m19"}) {
            writeFile(std::string("videos/") + name, std::string(clip.begin(), clip.end()));
        }
        addFamille("three", {"a.m19", "b.m19", "c.m19"});
        addFamille("one", {"b.m19"});
    }
    ~SlowCard() override {
        slow_card::remove();
        loadWaits = true;
    }

    void start(int index) {
        printed += printedBy([&] { playlist->initLoad(index); });
    }
    void frame(double ms = kFrameMs) {
        printed += printedBy([] { playlist->loopLoadPlaylist(); });
        slow_card::pass(ms);
    }
    // How many frames that took.
    int loadToTheEnd(double ms = kFrameMs) {
        int frames = 0;
        for (; playlist->loading != 0 && frames < 5000; ++frames) {
            frame(ms);
        }
        return frames;
    }
    // The frames that the list takes from memory, where each of them is a step.
    int stepsOf(int index) {
        start(index);
        const int steps = loadToTheEnd();
        playlist->clearMix();
        printed.clear();
        return steps;
    }

    std::string printed;
};

TEST_F(SlowCard, Load_NoReadWaits) {
    const int steps = stepsOf(0);
    slow_card::insert("videos");
    start(0);
    const int frames = loadToTheEnd();
    EXPECT_EQ(playlist->loadSlot, 3);
    EXPECT_EQ(slow_card::facts().waits, 0) << slow_card::facts().longest << " ms the longest";
    // The first clip comes as fast as the card has it; the others ask for a frame to begin.
    EXPECT_LT(frames, steps + 20);
    EXPECT_GT(slow_card::facts().requests, 30);
}

// Frames that come sooner than the bytes do.
TEST_F(SlowCard, StepsOutrunIt_NoReadWaits) {
    slow_card::insert("videos");
    start(0);
    loadToTheEnd(7);
    EXPECT_EQ(playlist->loadSlot, 3);
    EXPECT_EQ(slow_card::facts().waits, 0) << slow_card::facts().longest << " ms the longest";
}

TEST_F(SlowCard, Load_GivesAndSaysTheSame) {
    start(1);
    loadToTheEnd();
    const std::string said = printed;
    std::vector<uint16_t> maps(clip::kMaxTiles * kFrames);
    memcpy(maps.data(), moxel[0].frameMaps, maps.size() * sizeof maps[0]);
    playlist->clearMix();
    memset(moxel[0].frameMaps, 0, sizeof moxel[0].frameMaps);
    printed.clear();
    slow_card::insert("videos");
    start(1);
    loadToTheEnd();
    EXPECT_EQ(printed, said);
    EXPECT_EQ(memcmp(maps.data(), moxel[0].frameMaps, maps.size() * sizeof maps[0]), 0);
}

TEST_F(SlowCard, Ahead_IsBounded) {
    slow_card::insert("videos");
    start(0);
    frame(0);
    frame(0);
    EXPECT_GT(slow_card::facts().requests, 1);
    EXPECT_LE(slow_card::facts().requests, 8);
}

TEST_F(SlowCard, BringsNothingAhead_StepsReadAfterAWhile) {
    const int steps = stepsOf(0);
    slow_card::insert("videos");
    slow_card::fail();
    start(0);
    EXPECT_EQ(loadToTheEnd(), steps + kPatience - 1);
    EXPECT_EQ(playlist->loadSlot, 3);
    EXPECT_GT(slow_card::facts().waits, 0);
}

TEST_F(SlowCard, ReachOfAStep_HoldsWhatItReads) {
    for (const char* name : {"long-256.m19", "rgba-all-360.m19", "runs-360.m19"}) {
        placeClip(name, name);
        for (const int budget : {1, 60, 2000, 65000}) {
            printed += printedBy([&] {
                moxel[0].init("", name);
                moxel[0].loopLoad(budget);
                for (int answer = 1; answer == 1 && moxel[0].file != nullptr;) {
                    const c_moxel::Reach reach = moxel[0].nextReach(budget);
                    EXPECT_EQ(reach.from, ftell(moxel[0].file));
                    answer = moxel[0].loopLoad(budget);
                    if (moxel[0].file != nullptr) {
                        EXPECT_LE(ftell(moxel[0].file), reach.end) << name;
                    }
                }
                moxel[0].killRAM();
            });
        }
    }
}

// As in films of a score, whose frames must not depend on a disk.
TEST_F(SlowCard, FramesAreCounted_EveryFrameIsAStep) {
    const int steps = stepsOf(0);
    slow_card::insert("videos");
    loadWaits = false;
    start(0);
    EXPECT_EQ(loadToTheEnd(), steps);
    EXPECT_EQ(playlist->loadSlot, 3);
}

TEST_F(SlowCard, AnotherListInTheMiddle_LeavesNothingOpen) {
    const int before = openFiles();
    slow_card::insert("videos");
    for (int frames = 0; frames < 12; ++frames) {
        start(frames % 2);
        for (int each = 0; each < frames; ++each) {
            frame();
        }
    }
    printed += printedBy([] { playlist->clearMix(); });
    EXPECT_EQ(openFiles(), before);
    start(1);
    loadToTheEnd();
    EXPECT_EQ(playlist->loadSlot, 1);
    EXPECT_EQ(openFiles(), before);
    EXPECT_EQ(slow_card::facts().waits, 0);
}

TEST_F(SlowCard, FileIsCutWhileAStepWaits_LoadGoesOn) {
    slow_card::insert("videos");
    start(0);
    for (int frames = 0; frames < 3; ++frames) {
        frame();
    }
    std::filesystem::resize_file("videos/a.m19", 2000);
    EXPECT_LT(loadToTheEnd(), 200);
    EXPECT_EQ(playlist->loadTrack, 3);
    EXPECT_EQ(slow_card::facts().waits, 0);
}

TEST_F(SlowCard, FileVanishesWhileAStepWaits_IsPassedOver) {
    slow_card::insert("videos");
    start(0);
    frame();
    std::filesystem::remove("videos/a.m19");
    loadToTheEnd();
    EXPECT_EQ(playlist->loadTrack, 3);
    EXPECT_EQ(playlist->loadSlot, 2);
    EXPECT_EQ(slow_card::facts().waits, 0);
}

TEST_F(SlowCard, FileIsMissing_TakesOneFrame) {
    const int index = addFamille("none", {"gone.m19", "gone too.m19"});
    slow_card::insert("videos");
    start(index);
    EXPECT_EQ(loadToTheEnd(), 2);
    EXPECT_EQ(playlist->loadSlot, 0);
}

}  // namespace
