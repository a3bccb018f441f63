#include "playlists/userfile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "model/vectors.h"

namespace {

namespace fs = std::filesystem;

class UserFile : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = fs::temp_directory_path() / "velmora-userfile-XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
    }
    void TearDown() override { fs::remove_all(folder_); }

    std::string path() const { return folder_ / "userdata" / "file.xml"; }
    size_t filesInFolder() const {
        const fs::directory_iterator files(folder_ / "userdata");
        return static_cast<size_t>(std::distance(begin(files), end(files)));
    }

    fs::path folder_;
};

TEST_F(UserFile, FolderMissing_IsMade) {
    EXPECT_TRUE(replaceFile(path(), "content\n"));
    EXPECT_EQ(vectors::fileBytes(path()), "content\n");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(UserFile, FolderAboveMissingToo_FailsAndMakesNothing) {
    EXPECT_FALSE(replaceFile(folder_ / "a" / "b" / "file.xml", "content"));
    EXPECT_FALSE(fs::exists(folder_ / "a"));
}

TEST_F(UserFile, OldFile_ReplacedWholeWithoutTemporary) {
    ASSERT_TRUE(replaceFile(path(), std::string(5000, 'o')));
    EXPECT_TRUE(replaceFile(path(), "new"));
    EXPECT_EQ(vectors::fileBytes(path()), "new");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(UserFile, EveryByte_WrittenAsItIs) {
    std::string content = "%s %d %% %n\r\n";
    for (int byte = 0; byte <= 0xFF; ++byte) {
        content.push_back(static_cast<char>(byte));
    }
    EXPECT_TRUE(replaceFile(path(), content));
    EXPECT_EQ(vectors::fileBytes(path()), content);
}

TEST_F(UserFile, EmptyContent_EmptyFile) {
    EXPECT_TRUE(replaceFile(path(), ""));
    EXPECT_EQ(fs::file_size(path()), 0u);
}

TEST_F(UserFile, PathWithoutFolder_InTheWorkingDirectory) {
    const fs::path before = fs::current_path();
    fs::current_path(folder_);
    EXPECT_TRUE(replaceFile("plain.xml", "here"));
    EXPECT_EQ(vectors::fileBytes(folder_ / "plain.xml"), "here");
    fs::current_path(before);
}

TEST_F(UserFile, TemporaryNameTaken_OldFileStays) {
    ASSERT_TRUE(replaceFile(path(), "old"));
    fs::create_directory(path() + ".tmp");
    EXPECT_FALSE(replaceFile(path(), "new"));
    EXPECT_EQ(vectors::fileBytes(path()), "old");
}

TEST_F(UserFile, TargetIsAFolder_FailsWithoutTemporary) {
    fs::create_directories(path());
    EXPECT_FALSE(replaceFile(path(), "new"));
    EXPECT_TRUE(fs::is_directory(path()));
    EXPECT_EQ(filesInFolder(), 1u);
}

// A limit on the file size stops the write half way, as a full disk does.
TEST_F(UserFile, WriteStopsHalfWay_OldFileStaysWholeWithoutTemporary) {
    const std::string old = "old content";
    ASSERT_TRUE(replaceFile(path(), old));
    rlimit before = {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto handler = signal(SIGXFSZ, SIG_IGN);
    const rlimit small = {1000, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool replaced = replaceFile(path(), std::string(100000, 'n'));
    setrlimit(RLIMIT_FSIZE, &before);
    signal(SIGXFSZ, handler);
    EXPECT_FALSE(replaced);
    EXPECT_EQ(vectors::fileBytes(path()), old);
    EXPECT_EQ(filesInFolder(), 1u);
}

}  // namespace
