#include "tools/record/score_writer.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include "support/folder.h"
#include "tools/base/errors.h"

namespace {

namespace fs = std::filesystem;

using maker::ScoreWriter;

constexpr const char* kName = "night.score";

std::string written() {
    std::ifstream file(kName, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string lines(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) {
        text.append(std::to_string(i)).append(" +q\n");
    }
    return text;
}

// The only process that this one has started.
pid_t writerProcess() {
    const std::string id = std::to_string(getpid());
    std::ifstream children("/proc/" + id + "/task/" + id + "/children");
    pid_t child = 0;
    children >> child;
    return child;
}

class ScoreWriting : public testing::Test {
protected:
    void SetUp() override { std::signal(SIGPIPE, SIG_IGN); }
    TemporaryFolder folder_;
};

TEST_F(ScoreWriting, Lines_AreInTheFile) {
    ScoreWriter writer(kName);
    writer.write("one\n");
    writer.write("two\n");
    EXPECT_TRUE(writer.finish());
    EXPECT_EQ(written(), "one\ntwo\n");
}

TEST_F(ScoreWriting, Scores_AreNeverWrittenOver) {
    std::ofstream(kName) << "another night\n";
    EXPECT_THROW(ScoreWriter writer(kName), maker::ToolError);
    EXPECT_THROW(ScoreWriter writer("nowhere/night.score"), maker::ToolError);
    EXPECT_EQ(written(), "another night\n");
}

TEST_F(ScoreWriting, KilledPlayer_LeavesWhatWasPlayed) {
    const pid_t player = fork();
    if (player == 0) {
        ScoreWriter writer(kName);
        writer.write(lines(1000));
        kill(getpid(), SIGKILL);
    }
    ASSERT_EQ(waitpid(player, nullptr, 0), player);
    for (int i = 0; i < 500 && written() != lines(1000); ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    EXPECT_EQ(written(), lines(1000));
}

TEST_F(ScoreWriting, FullDisk_EndsTheScoreAtALine) {
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit little = {1003, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &little), 0);
    ScoreWriter writer(kName);
    setrlimit(RLIMIT_FSIZE, &before);
    for (int i = 0; i < 100; ++i) {
        writer.write(lines(10));
    }
    EXPECT_FALSE(writer.finish());
    std::string all;
    for (int i = 0; i < 100; ++i) {
        all.append(lines(10));
    }
    const std::string kept = written();
    EXPECT_GT(kept.size(), 990U);
    EXPECT_LE(kept.size(), 1003U);
    EXPECT_EQ(kept.back(), '\n');
    EXPECT_EQ(all.substr(0, kept.size()), kept);
}

TEST_F(ScoreWriting, StalledDisk_HoldsNobodyUp) {
    ScoreWriter writer(kName);
    const pid_t process = writerProcess();
    ASSERT_GT(process, 0);
    kill(process, SIGSTOP);
    const std::string many = lines(1000);
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0; i < 400; ++i) {
        writer.write(many);  // more than two megabytes, which nobody takes
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    kill(process, SIGCONT);
    EXPECT_FALSE(writer.finish());
}

TEST_F(ScoreWriting, DeadWriter_HoldsNobodyUp) {
    ScoreWriter writer(kName);
    kill(writerProcess(), SIGKILL);
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    writer.write(lines(10));
    EXPECT_FALSE(writer.finish());
}

TEST_F(ScoreWriting, Discarded_LeavesNoFile) {
    ScoreWriter writer(kName);
    writer.write("one\n");
    writer.discard();
    EXPECT_FALSE(fs::exists(kName));
}

}  // namespace
