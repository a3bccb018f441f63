// The real program with less address space than its clips ask for, as under `ulimit -v`.
#include <X11/keysym.h>
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cstdlib>
#include <fstream>

#include "app/expected.h"
#include "app/pictures.h"
#include "app/stage.h"
#include "app/tiny_clip.h"

namespace {

using app::Shot;
using app::Stage;

constexpr long kKilobyte = 1024;
constexpr long kMegabyte = 1024 * kKilobyte;
constexpr int kPicturesToLoad = 5 * 12 + 2 * 6;
constexpr const char* kNoClip = "Not enough memory for this clip\n";
constexpr const char* kNoStart = "Not enough memory to start\n";

// In bytes, as the kernel tells it: "VmSize" now, "VmPeak" at most so far.
long addressSpace(pid_t process, const std::string& which) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string word; status >> word;) {
        if (word == which + ":") {
            long kilobytes = 0;
            status >> kilobytes;
            return kilobytes * kKilobyte;
        }
    }
    return 0;
}

size_t count(const std::string& text, const std::string& line) {
    size_t found = 0;
    for (size_t at = text.find(line); at != std::string::npos; at = text.find(line, at + 1)) {
        ++found;
    }
    return found;
}

class AppMemory : public testing::Test {
protected:
    void SetUp() override {
#ifdef __SANITIZE_ADDRESS__
        GTEST_SKIP() << "the address sanitizer reserves address space without end";
#endif
        if (getenv("VELMORA_PROGRAM") != nullptr) {
            GTEST_SKIP() << "what stands in for the program takes memory of its own";
        }
    }
    void leave(Stage& stage, long bytes, const char* what = "VmSize", int which = RLIMIT_AS) {
        const auto most = static_cast<rlim_t>(addressSpace(stage.processId(), what) + bytes);
        const rlimit limit = {most, most};
        ASSERT_EQ(
            prlimit(stage.processId(), static_cast<__rlimit_resource>(which), &limit, nullptr), 0);
    }
};

// Raw tiles, 3600 records a frame: a clip takes 2 MB of memory and eight frames to load.
std::vector<uint8_t> bigClip() {
    std::vector<app::TinyFrame> frames;
    for (int frame = 0; frame < 4; ++frame) {
        frames.push_back({app::richPicture(static_cast<unsigned>(frame + 20)), {}});
    }
    return app::tinyClip(frames);
}

}  // namespace

TEST_F(AppMemory, ClipsThatDoNotFit_AreSkippedAndTheOthersPlay) {
    const Shot first = app::richPicture(1);
    const Shot last = app::richPicture(2);
    Stage stage;
    stage.folder.addClip("first.m19", app::tinyClip({{first, {}}}));
    stage.folder.addClip("big.m19", bigClip());
    stage.folder.addClip("last.m19", app::tinyClip({{last, {}}}));
    stage.folder.addPlaylist(
        "LARGE", {"first.m19", "big.m19", "big.m19", "big.m19", "big.m19", "big.m19", "last.m19"});
    stage.folder.writePlaylists();
    stage.startAtOverMenu();
    // Room for two or three of the large ones.
    leave(stage, 7 * kMegabyte);
    stage.tap(XK_x);
    stage.expectShows(app::placed(first), "the first clip");
    stage.passPictures(kPicturesToLoad);
    ASSERT_TRUE(stage.running());
    stage.expectShows(app::placed(first), "the first clip plays on");
    stage.tap(XK_Left);
    stage.expectShows(app::placed(last), "the last clip has a deck");
    // The same again: what was refused left nothing behind.
    stage.tap(XK_Return);
    stage.tap(XK_x);
    stage.passPictures(kPicturesToLoad);
    stage.tap(XK_Left);
    stage.expectShows(app::placed(last), "the last clip once more");
    EXPECT_EQ(stage.closeWindow(), 1);
    const size_t refused = count(stage.output(), kNoClip);
    EXPECT_GE(refused, 2u) << stage.output();
    EXPECT_LE(refused, 8u) << stage.output();
}

// What the launcher limits is the memory of the program's own, not its address space.
TEST_F(AppMemory, ClipsBeyondTheDataLimit_AreRefusedAndTheFirstPlaysOn) {
    const Shot first = app::richPicture(1);
    Stage stage;
    stage.folder.addClip("first.m19", app::tinyClip({{first, {}}}));
    stage.folder.addClip("big.m19", bigClip());
    stage.folder.addPlaylist(
        "LARGE", {"first.m19", "big.m19", "big.m19", "big.m19", "big.m19", "big.m19", "big.m19"});
    stage.folder.writePlaylists();
    stage.startAtOverMenu();
    leave(stage, 7 * kMegabyte, "VmData", RLIMIT_DATA);
    stage.tap(XK_x);
    stage.expectShows(app::placed(first), "the first clip");
    stage.passPictures(kPicturesToLoad);
    ASSERT_TRUE(stage.running());
    stage.expectShows(app::placed(first), "the first clip plays on");
    EXPECT_EQ(stage.closeWindow(), 1);
    EXPECT_GE(count(stage.output(), kNoClip), 2u) << stage.output();
}

// The clip slots are 93 MB in one piece: with 48 MB less than a start takes they are what cannot be
// had.
TEST_F(AppMemory, StartThatDoesNotFit_SaysSoAndEnds) {
    Stage stage;
    stage.startAtHome();
    const long most = addressSpace(stage.processId(), "VmPeak") - 48 * kMegabyte;
    ASSERT_GT(most, 0);
    EXPECT_EQ(stage.closeWindow(), 1);
    EXPECT_EQ(count(stage.output(), kNoStart), 0u);
    EXPECT_EQ(stage.startWithin(static_cast<unsigned long>(most)), 1);
    EXPECT_EQ(stage.output(), std::string("Starting Velmora\n\n") + kNoStart);
}
