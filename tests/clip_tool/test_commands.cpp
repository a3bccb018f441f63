// The command line of velmora-clip: exit statuses, messages, and no file that is half there.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <thread>

#include "clip_tool/media.h"
#include "clip_tool/reference.h"
#include "support/folder.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;

const std::string kTool = VELMORA_CLIP;

std::string textOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

// Runs the tool in the shell; `before` is shell text that precedes it.
Outcome tool(const std::string& arguments, const std::string& before = "") {
    const std::string line =
        before + "'" + kTool + "' " + arguments + " >../out.txt 2>../err.txt </dev/null";
    const int status = std::system(line.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, textOf("../out.txt"),
            textOf("../err.txt")};
}

std::vector<std::string> filesHere() {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(".")) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

using Names = std::vector<std::string>;

// Works in a folder of its own, below the one that takes the tool's output.
class Commands : public testing::Test {
protected:
    Commands() {
        fs::create_directory("work");
        fs::current_path("work");
    }
    TemporaryFolder folder_;
};

// 64 x 36 noise that changes with every frame.
void makeVideo(const std::string& path, int frames) {
    media::Recipe recipe;
    recipe.path = path;
    recipe.width = 64;
    recipe.height = 36;
    recipe.frames = frames;
    recipe.fill = [](int frame, AVFrame& picture) {
        uint32_t state = static_cast<uint32_t>(frame) + 7;
        for (int i = 0; i < 64 * 36; ++i) {
            state = state * 1664525 + 1013904223;
            uint8_t* pixel = media::pixelAt(picture, i % 64, i / 64);
            pixel[0] = static_cast<uint8_t>(state >> 24);
            pixel[1] = static_cast<uint8_t>(state >> 16);
            pixel[2] = static_cast<uint8_t>(i);
            pixel[3] = 0;
        }
    };
    media::write(recipe);
}

TEST_F(Commands, Encode_MakesAClipAndReports) {
    makeVideo("in.mkv", 18);
    const Outcome outcome = tool("encode in.mkv -o out.m19 --fps 25");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out.rfind("out.m19: 18 frames, 2 blocks, ", 0), 0u) << outcome.out;
    EXPECT_EQ(filesHere(), (Names{"in.mkv", "out.m19"}));
    const std::string bytes = textOf("out.m19");
    const reference::Clip clip = reference::parse({bytes.begin(), bytes.end()});
    EXPECT_EQ(clip.height, 360u);
    EXPECT_EQ(clip.quality, 100u);
    EXPECT_EQ(clip.alpha, 0u);
    EXPECT_EQ(reference::decode(clip).size(), 18u);
    EXPECT_EQ(tool("verify out.m19").out, "out.m19: ok\n");
}

TEST_F(Commands, Encode_TakesItsOptions) {
    makeVideo("in.mkv", 50);
    const Outcome outcome = tool(
        "encode in.mkv -o out.m19 --fps 10 --start 0.5 --duration 0.7 --fit contain --alpha none "
        "--quality 60 --dither");
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const std::string bytes = textOf("out.m19");
    EXPECT_EQ(bytes[8], 7);
    EXPECT_EQ(bytes[1], 60);
}

TEST_F(Commands, Encode_BadInputLeavesNothing) {
    std::ofstream("text.gif") << "GIF89a but no more";
    for (const char* input : {"text.gif", "missing.mp4", "."}) {
        const Outcome outcome = tool(std::string("encode ") + input + " -o out.m19");
        EXPECT_EQ(outcome.status, 1) << input;
        EXPECT_EQ(outcome.err.rfind("velmora-clip: ", 0), 0u) << outcome.err;
        EXPECT_NE(outcome.err.find(input), std::string::npos) << outcome.err;
        EXPECT_EQ(outcome.out, "");
    }
    EXPECT_EQ(filesHere(), (Names{"text.gif"}));
}

TEST_F(Commands, Encode_StartBehindTheEndIsAnError) {
    makeVideo("in.mkv", 5);
    EXPECT_EQ(tool("encode in.mkv -o out.m19 --start 9").status, 1);
    EXPECT_EQ(filesHere(), (Names{"in.mkv"}));
}

TEST_F(Commands, Encode_WrongUseHasItsOwnStatus) {
    makeVideo("in.mkv", 1);
    for (const char* arguments :
         {"", "encode", "encode in.mkv", "encode in.mkv -o a.m19 --fit wide", "conjure",
          "encode in.mkv -o a.m19 --fps 0", "encode in.mkv -o a.m19 --quality 101",
          "encode in.mkv -o a.m19 --start -1", "verify", "info"}) {
        const Outcome outcome = tool(arguments);
        EXPECT_EQ(outcome.status, 2) << arguments;
        EXPECT_NE(outcome.err, "") << arguments;
    }
    EXPECT_EQ(tool("--help").status, 0);
    EXPECT_EQ(tool("encode --help").status, 0);
    EXPECT_EQ(filesHere(), (Names{"in.mkv"}));
}

TEST_F(Commands, Encode_OutputThatCannotBeIsAnError) {
    makeVideo("in.mkv", 1);
    EXPECT_EQ(tool("encode in.mkv -o no/such/folder/a.m19").status, 1);
    EXPECT_EQ(tool("encode in.mkv -o in.mkv").status, 1);
    EXPECT_EQ(tool("encode in.mkv -o .").status, 1);
    EXPECT_EQ(filesHere(), (Names{"in.mkv"}));
}

TEST_F(Commands, Encode_OtherEndingIsWarnedOf) {
    makeVideo("in.mkv", 1);
    const Outcome outcome = tool("encode in.mkv -o out.clip");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.err.find(".m19"), std::string::npos);
}

// Files of more than some kilobytes cannot be written: the older file stays as it was.
TEST_F(Commands, Encode_FullDiskKeepsTheOlderFile) {
    makeVideo("in.mkv", 5);
    std::ofstream("out.m19") << "older";
    const Outcome outcome = tool("encode in.mkv -o out.m19", "trap '' XFSZ; ulimit -f 8; ");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.err.find("cannot write out.m19"), std::string::npos) << outcome.err;
    EXPECT_EQ(textOf("out.m19"), "older");
    EXPECT_EQ(filesHere(), (Names{"in.mkv", "out.m19"}));
}

pid_t start(const std::vector<std::string>& arguments) {
    std::vector<char*> pointers;
    for (const std::string& argument : arguments) {
        pointers.push_back(const_cast<char*>(argument.c_str()));
    }
    pointers.push_back(nullptr);
    pid_t child = 0;
    EXPECT_EQ(posix_spawn(&child, kTool.c_str(), nullptr, nullptr, pointers.data(), environ), 0);
    return child;
}

// The tool reads from a pipe that gives nothing; once it has opened it, its handlers stand.
TEST_F(Commands, Encode_InterruptLeavesNothing) {
    ASSERT_EQ(mkfifo("pipe.avi", 0600), 0);
    const pid_t child = start({kTool, "encode", "pipe.avi", "-o", "out.m19"});
    int writer = -1;
    for (int i = 0; i < 1000 && writer < 0; ++i) {
        writer = open("pipe.avi", O_WRONLY | O_NONBLOCK);
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    ASSERT_GE(writer, 0);
    kill(child, SIGINT);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    close(writer);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 130);
    EXPECT_EQ(filesHere(), (Names{"pipe.avi"}));
}

TEST_F(Commands, Verify_TellsTheFirstFaultOfEachFile) {
    const std::string broken = std::string(TEST_DATA) + "/broken/";
    const std::string good = std::string(TEST_DATA) + "/clips/gaps-64.m19";
    const Outcome outcome = tool("verify '" + good + "' '" + broken + "record-number.m19' '" +
                                 broken + "trailing-bytes.m19' '" + broken + "height-12.m19'");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out,
              good + ": ok\n" + broken +
                  "record-number.m19: frame 0 of the block, tile 3: record 60000 of 5 (offset 558, "
                  "block 0)\n" +
                  broken +
                  "trailing-bytes.m19: 100 bytes after the last block (offset 1121, block 0); the "
                  "clip plays\n" +
                  broken +
                  "height-12.m19: height 12, not a multiple of 8 from 8 to 360 (offset 4)\n");
}

TEST_F(Commands, Verify_MissingFileFailsAndTheRestIsChecked) {
    const std::string good = std::string(TEST_DATA) + "/clips/gaps-64.m19";
    const Outcome outcome = tool("verify no.m19 '" + good + "'");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, good + ": ok\n");
    EXPECT_NE(outcome.err.find("no.m19"), std::string::npos);
}

TEST_F(Commands, Info_TellsFacts) {
    const std::string clips = std::string(TEST_DATA) + "/clips/";
    const Outcome text = tool("info '" + clips + "gaps-64.m19'");
    EXPECT_EQ(text.status, 0);
    EXPECT_NE(text.out.find("640 x 64, colour and alpha"), std::string::npos) << text.out;
    const Outcome json = tool("info --json '" + clips + "gaps-64.m19' '" + clips + "flat-200.m19'");
    EXPECT_EQ(json.status, 0);
    const nlohmann::json facts = nlohmann::json::parse(json.out);
    ASSERT_EQ(facts.size(), 2u);
    EXPECT_EQ(facts[0].at("frames"), 33);
    EXPECT_EQ(facts[1].at("height"), 200);
}

TEST_F(Commands, Info_OfNoClipFails) {
    std::ofstream("text.m19") << "hello";
    const Outcome outcome = tool("info --json text.m19");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(nlohmann::json::parse(outcome.out), nlohmann::json::array());
    EXPECT_NE(outcome.err.find("text.m19 is not a clip"), std::string::npos) << outcome.err;
}

}  // namespace
