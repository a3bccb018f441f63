// Clip files that change under the loader, at every step of a load: the load ends, in a clip that
// can be drawn or in nothing that stays open or allocated.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <random>

#include "support/clip_stage.h"
#include "support/seed.h"

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<char>;
using Change = std::function<void(std::mt19937& random)>;

constexpr const char* kPath = "videos/loop.m19";
constexpr int kBudget = 700;
// A load of the clips used here takes fewer steps than this, whatever their bytes are.
constexpr int kMostSteps = 5000;

Bytes bytesOf(const std::string& name) {
    std::ifstream file(std::string(TEST_DATA "/clips/") + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Into the file that there is, under the descriptor of whoever reads it.
void overwrite(const char* path, const Bytes& bytes, std::ios::openmode mode) {
    std::ofstream(path, std::ios::binary | mode)
        .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

class ChangingClip : public ::testing::Test {
protected:
    ChangingClip() : stage("store") {
        fs::create_directory("store");
        random_.seed(seed);
    }

    // Gives the file its first bytes, and answers how many steps their load takes.
    int stepsOf(const Bytes& bytes) {
        overwrite(kPath, bytes, std::ios::trunc);
        stage.clip->init("", "loop.m19");
        int steps = 1;
        while (step() == 1) {
            ++steps;
        }
        stage.clip->killRAM();
        return steps;
    }
    int step() {
        testing::internal::CaptureStdout();
        const int result = stage.clip->loopLoad(kBudget);
        testing::internal::GetCapturedStdout();
        return result;
    }
    void drawAll() {
        for (int frame = 0; frame < stage.clip->frameCount; frame += 5) {
            stage.clip->renderMoxel19(1, frame, MODE_KEY);
            stage.clip->renderMoxel19(0, frame, MODE_ADD);
        }
    }
    void expectEnd(int result) {
        if (result == 2) {
            EXPECT_EQ(stage.clip->state, CLIP_READY);
            drawAll();
        } else {
            ASSERT_EQ(result, 0);
            EXPECT_EQ(stage.clip->hasRAM, 0);
        }
        EXPECT_EQ(stage.clip->file, nullptr);
    }
    // Loads with the change made before step `at`, from 0.
    void loadChanging(const Bytes& bytes, int at, const Change& change) {
        fs::remove(kPath);
        overwrite(kPath, bytes, std::ios::trunc);
        stage.clip->init("", "loop.m19");
        int result = 1;
        int steps = 0;
        for (; result == 1 && steps < kMostSteps; ++steps) {
            if (steps == at) {
                change(random_);
            }
            result = step();
        }
        ASSERT_LT(steps, kMostSteps);
        expectEnd(result);
        stage.clip->killRAM();
    }
    void loadChangingAtEach(const Change& change) {
        SCOPED_TRACE("VELMORA_SEED=" + std::to_string(seed));
        for (const char* name : {"seventeen-200.m19", "rgba-all-360.m19", "roomy-104.m19"}) {
            const Bytes bytes = bytesOf(name);
            const int steps = stepsOf(bytes);
            ASSERT_GE(steps, 4);
            for (int at = 0; at < steps; ++at) {
                SCOPED_TRACE(std::string(name) + ", before step " + std::to_string(at));
                loadChanging(bytes, at, change);
            }
        }
    }

    const unsigned seed = chosenSeed();
    std::mt19937 random_;
    ClipStage stage;
};

TEST_F(ChangingClip, ReplacedByAnother_LoadEnds) {
    loadChangingAtEach([](std::mt19937&) {
        overwrite("videos/new.m19", bytesOf("long-256.m19"), std::ios::trunc);
        fs::rename("videos/new.m19", kPath);
    });
}

TEST_F(ChangingClip, AnotherWrittenOverIt_LoadEnds) {
    loadChangingAtEach([](std::mt19937& random) {
        constexpr const char* kOthers[] = {"rgb-all-360.m19", "rgba-all-360.m19", "flat-200.m19"};
        overwrite(kPath, bytesOf(kOthers[random() % 3]), std::ios::in);
    });
}

TEST_F(ChangingClip, NoiseWrittenOverIt_LoadEnds) {
    loadChangingAtEach([](std::mt19937& random) {
        Bytes noise(static_cast<size_t>(fs::file_size(kPath)));
        for (char& byte : noise) {
            byte = static_cast<char>(random());
        }
        overwrite(kPath, noise, std::ios::in);
    });
}

TEST_F(ChangingClip, Truncated_LoadEnds) {
    loadChangingAtEach(
        [](std::mt19937& random) { fs::resize_file(kPath, random() % fs::file_size(kPath)); });
    loadChangingAtEach([](std::mt19937&) { fs::resize_file(kPath, 0); });
}

// What is open stays readable; what is not yet open is not there.
TEST_F(ChangingClip, Deleted_LoadsWhenItWasOpen) {
    const Bytes bytes = bytesOf("seventeen-200.m19");
    const int steps = stepsOf(bytes);
    for (int at = 0; at < steps; ++at) {
        loadChanging(bytes, at, [](std::mt19937&) { fs::remove(kPath); });
        EXPECT_EQ(stage.clip->state, at == 0 ? CLIP_LOADING : CLIP_READY) << at;
    }
}

// Still being copied: it begins with part of its bytes and gets the others a step later.
TEST_F(ChangingClip, StillGrowing_LoadEnds) {
    const Bytes bytes = bytesOf("rgba-all-360.m19");
    for (size_t begun = 0; begun < bytes.size(); begun += bytes.size() / 60) {
        const Bytes start(bytes.begin(), bytes.begin() + static_cast<ptrdiff_t>(begun));
        const Bytes rest(bytes.begin() + static_cast<ptrdiff_t>(begun), bytes.end());
        SCOPED_TRACE(begun);
        loadChanging(start, 1, [&](std::mt19937&) { overwrite(kPath, rest, std::ios::app); });
    }
}

TEST_F(ChangingClip, BecomesAFolder_IsRefused) {
    const Bytes bytes = bytesOf("seventeen-200.m19");
    loadChanging(bytes, 0, [](std::mt19937&) {
        fs::remove(kPath);
        fs::create_directory(kPath);
    });
    EXPECT_EQ(stage.clip->state, CLIP_LOADING);
}

}  // namespace
