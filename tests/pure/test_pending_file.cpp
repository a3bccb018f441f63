#include "files/pending_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "pure/vectors.h"
#include "support/folder.h"

namespace {

namespace fs = std::filesystem;
using files::PendingFile;
using Bytes = std::vector<uint8_t>;

class Pending : public testing::Test {
protected:
    static size_t filesHere() {
        return static_cast<size_t>(std::distance(fs::directory_iterator("."), {}));
    }

    TemporaryFolder folder_;
};

TEST_F(Pending, UntilItIsCommitted_TheTargetKeepsWhatItHeld) {
    std::ofstream("a") << "old";
    PendingFile file;
    ASSERT_TRUE(file.createBeside("a"));
    EXPECT_TRUE(file.write(Bytes{'n', 'e'}));
    EXPECT_TRUE(file.write(Bytes{'w'}));
    EXPECT_TRUE(file.finish());
    EXPECT_EQ(vectors::fileBytes("a"), "old");
    EXPECT_TRUE(file.commit("a"));
    EXPECT_EQ(vectors::fileBytes("a"), "new");
    EXPECT_EQ(filesHere(), 1u);
}

TEST_F(Pending, NeverCommitted_LeavesNothing) {
    {
        PendingFile file;
        ASSERT_TRUE(file.createBeside("a"));
        EXPECT_TRUE(file.write(Bytes{1}));
        const PendingFile moved = std::move(file);
        EXPECT_EQ(filesHere(), 1u);
    }
    EXPECT_EQ(filesHere(), 0u);
}

TEST_F(Pending, SeveralForOneTarget_KeepApart) {
    PendingFile one;
    PendingFile other;
    ASSERT_TRUE(one.createBeside("a"));
    ASSERT_TRUE(other.createBeside("a"));
    EXPECT_TRUE(one.write(Bytes{'1'}));
    EXPECT_TRUE(other.write(Bytes{'2'}));
    EXPECT_TRUE(one.finish() && other.finish());
    EXPECT_TRUE(other.commit("b"));
    EXPECT_TRUE(one.commit("a"));
    EXPECT_EQ(vectors::fileBytes("a"), "1");
    EXPECT_EQ(vectors::fileBytes("b"), "2");
}

TEST_F(Pending, GivenName_HasItsModeAndTakesNoOthersPlace) {
    std::ofstream("taken.tmp") << "mine";
    PendingFile file;
    EXPECT_FALSE(file.create("taken.tmp", 0600));
    EXPECT_EQ(errno, EEXIST);
    ASSERT_TRUE(file.create("a.tmp", 0600));
    EXPECT_TRUE(file.finish() && file.commit("a"));
    EXPECT_EQ(vectors::fileBytes("a"), "");
    EXPECT_EQ(vectors::fileBytes("taken.tmp"), "mine");
    struct stat facts = {};
    ASSERT_EQ(stat("a", &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0600u);
}

TEST_F(Pending, Failures_SayWhyAndLeaveNothing) {
    PendingFile file;
    EXPECT_FALSE(file.createBeside("no/a"));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(file.create("no/a.tmp", 0600));
    EXPECT_EQ(errno, ENOENT);
    ASSERT_TRUE(file.createBeside("a"));
    ASSERT_TRUE(file.finish());
    EXPECT_FALSE(file.write(Bytes{1}));
    EXPECT_EQ(errno, EBADF);
    fs::create_directory("a");
    EXPECT_FALSE(file.commit("a"));
    EXPECT_EQ(errno, EISDIR);
}

int calls = 0;

// 1 MiB a piece: 1, 1, and 1 byte.
TEST_F(Pending, Write_AsksBeforeEachPiece) {
    PendingFile file;
    ASSERT_TRUE(file.createBeside("a"));
    EXPECT_TRUE(file.write(Bytes((2U << 20) + 1, 7), [] { ++calls; }));
    EXPECT_EQ(calls, 3);
    EXPECT_TRUE(file.finish() && file.commit("a"));
    EXPECT_EQ(fs::file_size("a"), (2U << 20) + 1);
}

}  // namespace
