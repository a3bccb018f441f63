// Saves on disks that are full or read-only, and into folders that went away.
#include <fstream>

#include "faults/private_mounts.h"
#include "faults/saves.h"

namespace faults {

namespace fs = std::filesystem;

namespace {

// Room for the largest file twice.
constexpr const char* kRoom = "6m";

class SaveDisks : public SaveTest {
protected:
    void expectSaysItCannot(const Outcome& outcome) {
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.errors, "");
        EXPECT_FALSE(outcome.saved);
        const std::string said = GetParam().name == std::string("clip")
                                     ? "cannot write userdata/loop.m19: "
                                     : "Could not save " + file().string() + "\n";
        EXPECT_EQ(outcome.output.substr(0, said.size()), said);
        EXPECT_NE(outcome.output.find("goes on\n"), std::string::npos);
    }
};

TEST_P(SaveDisks, FullDisk_OldFileStaysAndWithRoomItSavesAgain) {
    const std::string reason = enterPrivateMounts();
    if (!reason.empty()) {
        GTEST_SKIP() << reason;
    }
    SmallDisk disk(userdata_, kRoom);
    learnOldAndNew();
    disk.fill();
    expectSaysItCannot(save("new"));
    EXPECT_TRUE(bytes() == old_);
    EXPECT_EQ(names(), (std::vector<std::string>{"ballast", GetParam().file}));
    disk.makeRoom();
    EXPECT_TRUE(save("new").saved);
    EXPECT_TRUE(bytes() == new_);
    EXPECT_EQ(names(), std::vector<std::string>{GetParam().file});
}

TEST_P(SaveDisks, ReadOnlyFolder_OldFileStaysAndSavesAgainWhenWritable) {
    const std::string reason = enterPrivateMounts();
    if (!reason.empty()) {
        GTEST_SKIP() << reason;
    }
    SmallDisk disk(userdata_, kRoom);
    learnOldAndNew();
    disk.setReadOnly(true);
    expectSaysItCannot(save("new"));
    EXPECT_TRUE(bytes() == old_);
    EXPECT_EQ(names(), std::vector<std::string>{GetParam().file});
    disk.setReadOnly(false);
    EXPECT_TRUE(save("new").saved);
    EXPECT_TRUE(bytes() == new_);
}

// The program makes its userdata again; the tool makes no folder behind the user's back here.
TEST_P(SaveDisks, FolderRemoved_UserFilesComeBackClipsAreRefused) {
    learnOldAndNew();
    fs::remove_all(userdata_);
    const Outcome outcome = save("new");
    if (GetParam().name == std::string("clip")) {
        expectSaysItCannot(outcome);
        EXPECT_FALSE(fs::exists(userdata_));
        return;
    }
    EXPECT_TRUE(outcome.saved);
    EXPECT_TRUE(bytes() == new_);
}

TEST_P(SaveDisks, FileOfTheFoldersName_IsSaidAndLeftAlone) {
    fs::remove(userdata_);
    std::ofstream(userdata_) << "mine";
    expectSaysItCannot(save("new"));
    EXPECT_EQ(fileBytes(userdata_), "mine");
}

// Two frames of grey.
std::string greyVideo() {
    constexpr size_t kWidth = 64;
    constexpr size_t kHeight = 36;
    const std::string frame = "FRAME\n" + std::string(kWidth * kHeight * 3 / 2, '\x80');
    return "YUV4MPEG2 W64 H36 F25:1 C420\n" + frame + frame;
}

class ToolDisks : public SaveTest {};

// The whole tool, not its writing alone: status 1, one line, and nothing left behind.
TEST_P(ToolDisks, FullDisk_OldClipStaysAndTheToolSaysWhy) {
    const std::string reason = enterPrivateMounts();
    if (!reason.empty()) {
        GTEST_SKIP() << reason;
    }
    std::ofstream("grey.y4m", std::ios::binary) << greyVideo();
    SmallDisk disk(userdata_, kRoom);
    std::ofstream(file()) << "the old clip";
    disk.fill();
    const std::vector<std::string> encode = {VELMORA_CLIP, "encode", "grey.y4m", "-o",
                                             "userdata/loop.m19"};
    const Outcome failed = run(encode);
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.errors,
              "velmora-clip: cannot write userdata/loop.m19: No space left on device\n");
    EXPECT_EQ(bytes(), "the old clip");
    EXPECT_EQ(names(), (std::vector<std::string>{"ballast", "loop.m19"}));
    disk.makeRoom();
    EXPECT_EQ(run(encode).status, 0);
    EXPECT_EQ(bytes().substr(0, 1), "\x13");
    EXPECT_EQ(names(), (std::vector<std::string>{"loop.m19", "loop.m19.json"}));
}

INSTANTIATE_TEST_SUITE_P(Files, ToolDisks, ::testing::Values(kKinds[3]), kindName);

INSTANTIATE_TEST_SUITE_P(Files, SaveDisks, ::testing::ValuesIn(kKinds), kindName);

}  // namespace

}  // namespace faults
