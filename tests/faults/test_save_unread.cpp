// User files that cannot be read when the program starts: it goes on with what it has without them
// and writes none of them over.
#include <iterator>

#include "faults/saves.h"

namespace faults {

namespace fs = std::filesystem;

namespace {

// What the program says of a file that is not there, and then has: no playlist, no filter, no
// button.
const char* missingLines(const std::string& kind) {
    return kind == "playlists" ? "can't find playlists XML file\nholds 0\n"
           : kind == "prefs"   ? "can't find prefs file\nholds 0\n"
                               : "can't find controller xml file\nholds 99\n";
}

class UnreadSaves : public SaveTest {
protected:
    void SetUp() override {
        SaveTest::SetUp();
        learnOldAndNew();
        if (withFault("trace=none").status != 0) {
            GTEST_SKIP() << "no program can be traced here (package strace, and the right to use "
                            "it)";
        }
        ASSERT_TRUE(bytes() == new_);
        ASSERT_TRUE(save("old").saved);
    }

    // Reads and saves "new" while calls on the file, which is there, fail so.
    Outcome withFault(const std::string& fault) {
        // By the name that it is opened with, and by where it is.
        const std::string opened = std::string("./userdata/") + GetParam().file;
        return run({"strace", "-qq", "-o", "trace", "-P", opened, "-P", fs::canonical(file()), "-e",
                    fault, SAVE_ONCE, GetParam().name, "new", "read"},
                   false);
    }
    std::string missing() const { return missingLines(GetParam().name); }
    std::string refused() const { return "Could not save " + file().string() + "\n"; }
};

// 4 playlists, filter 3, button 3: what "old" is.
TEST_P(UnreadSaves, FileThatIsRead_IsHeldAndReplaced) {
    const Outcome outcome = run({SAVE_ONCE, GetParam().name, "new", "read"});
    EXPECT_EQ(outcome.output, GetParam().name == std::string("playlists") ? "holds 4\ngoes on\n"
                                                                          : "holds 3\ngoes on\n");
    EXPECT_TRUE(bytes() == new_);
}

TEST_P(UnreadSaves, FileThatCannotBeOpened_IsNotWrittenOver) {
    for (const char* error : {"EACCES", "EIO", "EMFILE", "ELOOP", "ENOTDIR"}) {
        SCOPED_TRACE(error);
        const Outcome outcome = withFault(std::string("inject=openat:error=") + error);
        EXPECT_EQ(outcome.output, missing() + refused() + "goes on\n");
        EXPECT_TRUE(bytes() == old_);
        EXPECT_EQ(names(), std::vector<std::string>{GetParam().file});
    }
}

TEST_P(UnreadSaves, FileThatVanished_IsMadeAnew) {
    const Outcome outcome = withFault("inject=openat:error=ENOENT");
    EXPECT_EQ(outcome.output, missing() + "goes on\n");
    EXPECT_TRUE(bytes() == new_);
}

// At the first piece, and behind the last one: all of it has come then, but perhaps no more than
// the disk would give.
TEST_P(UnreadSaves, DiskThatFailsWhileReading_NothingHeldNothingWrittenOver) {
    for (const char* when : {"1", "2"}) {
        SCOPED_TRACE(when);
        const Outcome outcome = withFault(std::string("inject=read:error=EIO:when=") + when);
        EXPECT_NE(fileBytes("trace").find("(INJECTED)"), std::string::npos) << fileBytes("trace");
        EXPECT_EQ(outcome.output, missing() + refused() + "goes on\n");
        EXPECT_TRUE(bytes() == old_);
        EXPECT_EQ(names(), std::vector<std::string>{GetParam().file});
    }
}

TEST_P(UnreadSaves, ReadingThatASignalInterrupts_GoesOn) {
    const Outcome outcome = withFault("inject=read:error=EINTR:when=1");
    EXPECT_NE(fileBytes("trace").find("(INJECTED)"), std::string::npos) << fileBytes("trace");
    EXPECT_EQ(outcome.output.substr(0, 6), "holds ");
    EXPECT_TRUE(bytes() == new_);
}

// A link that the disk does not give is no file to be replaced.
TEST_P(UnreadSaves, LinkThatCannotBeFollowed_StaysWithTheFileBehindIt) {
    const fs::path behind = folder_.path() / "behind.xml";
    fs::rename(file(), behind);
    fs::create_symlink(behind, file());
    const std::string link = file();
    const Outcome outcome = run({"strace", "-qq", "-o", "trace", "-P", link, "-e",
                                 "inject=/readlink:error=EIO", SAVE_ONCE, GetParam().name, "new"},
                                false);
    EXPECT_NE(fileBytes("trace").find("(INJECTED)"), std::string::npos) << fileBytes("trace");
    EXPECT_EQ(outcome.output, refused() + "goes on\n");
    EXPECT_EQ(fs::read_symlink(file()), behind);
    EXPECT_TRUE(fileBytes(behind) == old_);
}

INSTANTIATE_TEST_SUITE_P(Files, UnreadSaves,
                         ::testing::ValuesIn(std::begin(kKinds), std::begin(kKinds) + 3), kindName);

}  // namespace

}  // namespace faults
