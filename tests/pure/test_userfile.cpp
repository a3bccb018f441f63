#include "files/userfile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "pure/vectors.h"

namespace {

namespace fs = std::filesystem;

class UserFiles : public ::testing::Test {
protected:
    void SetUp() override {
        std::string pattern = fs::temp_directory_path() / "velmora-userfile-XXXXXX";
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
    }
    void TearDown() override { fs::remove_all(folder_); }

    static void put(const fs::path& file, const std::string& content) {
        fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
    }
    void link(const fs::path& target) const {
        fs::create_directories(folder_ / "userdata");
        fs::create_symlink(target, path());
    }
    static struct stat factsOf(const fs::path& file) {
        struct stat facts = {};
        EXPECT_EQ(stat(file.c_str(), &facts), 0) << file;
        return facts;
    }
    static mode_t modeOf(const fs::path& file) { return factsOf(file).st_mode & 07777; }

    std::string path() const { return folder_ / "userdata" / "file.xml"; }
    size_t filesInFolder() const {
        const fs::directory_iterator files(folder_ / "userdata");
        return static_cast<size_t>(std::distance(begin(files), end(files)));
    }

    fs::path folder_;
};

TEST_F(UserFiles, FolderMissing_IsMade) {
    EXPECT_TRUE(replaceFile(path(), "content\n"));
    EXPECT_EQ(vectors::fileBytes(path()), "content\n");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(UserFiles, FolderAboveMissingToo_FailsAndMakesNothing) {
    EXPECT_FALSE(replaceFile(folder_ / "a" / "b" / "file.xml", "content"));
    EXPECT_FALSE(fs::exists(folder_ / "a"));
}

TEST_F(UserFiles, OldFile_ReplacedWholeWithoutTemporary) {
    ASSERT_TRUE(replaceFile(path(), std::string(5000, 'o')));
    EXPECT_TRUE(replaceFile(path(), "new"));
    EXPECT_EQ(vectors::fileBytes(path()), "new");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(UserFiles, EveryByte_WrittenAsItIs) {
    std::string content = "%s %d %% %n\r\n";
    for (int byte = 0; byte <= 0xFF; ++byte) {
        content.push_back(static_cast<char>(byte));
    }
    EXPECT_TRUE(replaceFile(path(), content));
    EXPECT_EQ(vectors::fileBytes(path()), content);
}

TEST_F(UserFiles, EmptyContent_EmptyFile) {
    EXPECT_TRUE(replaceFile(path(), ""));
    EXPECT_EQ(fs::file_size(path()), 0u);
}

TEST_F(UserFiles, PathWithoutFolder_InTheWorkingDirectory) {
    const fs::path before = fs::current_path();
    fs::current_path(folder_);
    EXPECT_TRUE(replaceFile("plain.xml", "here"));
    EXPECT_EQ(vectors::fileBytes(folder_ / "plain.xml"), "here");
    fs::current_path(before);
}

TEST_F(UserFiles, TemporaryNameTaken_OldFileStays) {
    ASSERT_TRUE(replaceFile(path(), "old"));
    fs::create_directory(path() + ".tmp");
    EXPECT_FALSE(replaceFile(path(), "new"));
    EXPECT_EQ(vectors::fileBytes(path()), "old");
}

TEST_F(UserFiles, TargetIsAFolder_FailsWithoutTemporary) {
    fs::create_directories(path());
    EXPECT_FALSE(replaceFile(path(), "new"));
    EXPECT_TRUE(fs::is_directory(path()));
    EXPECT_EQ(filesInFolder(), 1u);
}

// A limit on the file size stops the write half way, as a full disk does.
TEST_F(UserFiles, WriteStopsHalfWay_OldFileStaysWholeWithoutTemporary) {
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

TEST_F(UserFiles, Link_StaysAndTheFileBehindItIsReplaced) {
    put(folder_ / "far" / "real.xml", "old");
    link(folder_ / "far" / "real.xml");
    EXPECT_TRUE(replaceFile(path(), "new"));
    EXPECT_EQ(fs::read_symlink(path()), folder_ / "far" / "real.xml");
    EXPECT_EQ(vectors::fileBytes(folder_ / "far" / "real.xml"), "new");
    EXPECT_FALSE(fs::is_symlink(folder_ / "far" / "real.xml"));
}

// Each link is meant from its own folder.
TEST_F(UserFiles, ChainOfRelativeLinks_LeadsToTheRealFile) {
    put(folder_ / "a" / "b" / "real.xml", "old");
    fs::create_symlink("b/real.xml", folder_ / "a" / "second.xml");
    link("../a/second.xml");
    EXPECT_TRUE(replaceFile(path(), "new"));
    EXPECT_TRUE(fs::is_symlink(path()));
    EXPECT_TRUE(fs::is_symlink(folder_ / "a" / "second.xml"));
    EXPECT_EQ(vectors::fileBytes(folder_ / "a" / "b" / "real.xml"), "new");
}

TEST_F(UserFiles, LinkToNothing_TheFileIsMadeThere) {
    fs::create_directory(folder_ / "far");
    link("../far/real.xml");
    EXPECT_TRUE(replaceFile(path(), "new"));
    EXPECT_TRUE(fs::is_symlink(path()));
    EXPECT_EQ(vectors::fileBytes(folder_ / "far" / "real.xml"), "new");
}

TEST_F(UserFiles, LinkIntoAMissingFolder_FailsAndMakesNothing) {
    link("../far/real.xml");
    EXPECT_FALSE(replaceFile(path(), "new"));
    EXPECT_FALSE(fs::exists(folder_ / "far"));
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(UserFiles, LinksThatLeadRound_FailWithoutTemporary) {
    link("other.xml");
    fs::create_symlink("file.xml", folder_ / "userdata" / "other.xml");
    EXPECT_FALSE(replaceFile(path(), "new"));
    EXPECT_TRUE(fs::is_symlink(path()));
    EXPECT_EQ(filesInFolder(), 2u);
}

// The temporary file stands beside the real one, so that the rename stays on one disk.
TEST_F(UserFiles, LinkWithTheRealFilesTemporaryNameTaken_OldFileStays) {
    put(folder_ / "far" / "real.xml", "old");
    link("../far/real.xml");
    fs::create_directory(path() + ".tmp");
    EXPECT_TRUE(replaceFile(path(), "new"));
    fs::create_directory(folder_ / "far" / "real.xml.tmp");
    EXPECT_FALSE(replaceFile(path(), "newer"));
    EXPECT_EQ(vectors::fileBytes(path()), "new");
}

TEST_F(UserFiles, PipeOrLinkToOne_IsLeftAlone) {
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    link("../pipe");
    EXPECT_FALSE(replaceFile(path(), "new"));
    EXPECT_FALSE(replaceFile(folder_ / "pipe", "new"));
    EXPECT_TRUE(fs::is_fifo(folder_ / "pipe"));
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(UserFiles, ModeOfTheOldFile_IsKept) {
    put(path(), "old");
    for (const mode_t mode : {0600U, 0640U, 0664U, 0666U, 0444U}) {
        ASSERT_EQ(chmod(path().c_str(), mode), 0);
        EXPECT_TRUE(replaceFile(path(), "new"));
        EXPECT_EQ(modeOf(path()), mode);
    }
}

TEST_F(UserFiles, NewFile_HasTheModeThatTheMaskLeaves) {
    const mode_t before = umask(027);
    EXPECT_TRUE(replaceFile(path(), "new"));
    umask(before);
    EXPECT_EQ(modeOf(path()), 0640u);
}

// What a power cut left, readable for all, must not give its rights to a private file.
TEST_F(UserFiles, TemporaryLeftBehind_GivesNoRights) {
    put(path(), "old");
    ASSERT_EQ(chmod(path().c_str(), 0600), 0);
    put(path() + ".tmp", "half");
    put(folder_ / "elsewhere", "mine");
    EXPECT_TRUE(replaceFile(path(), "new"));
    EXPECT_EQ(modeOf(path()), 0600u);
    fs::create_symlink("../elsewhere", path() + ".tmp");
    EXPECT_TRUE(replaceFile(path(), "newer"));
    EXPECT_EQ(vectors::fileBytes(folder_ / "elsewhere"), "mine");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(UserFiles, OwnerOfTheOldFile_IsKept) {
    put(path(), "old");
    if (chown(path().c_str(), 1234, 2345) != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    EXPECT_TRUE(replaceFile(path(), "new"));
    EXPECT_EQ(factsOf(path()).st_uid, 1234u);
    EXPECT_EQ(factsOf(path()).st_gid, 2345u);
}

// By a user who may replace the file, but can give files neither to its owner nor to its group.
TEST_F(UserFiles, OwnerThatCannotBeKept_NobodyGetsRightsThatTheyDidNotHave) {
    constexpr uid_t kNobody = 65534;
    put(path(), "old");
    if (chown(path().c_str(), 1234, 2345) != 0) {
        GTEST_SKIP() << "only root can give files away";
    }
    ASSERT_EQ(chmod(folder_.c_str(), 0755), 0);
    ASSERT_EQ(chmod((folder_ / "userdata").c_str(), 0777), 0);
    const mode_t olds[] = {0664, 0660, 0606};
    const mode_t news[] = {0644, 0600, 0600};
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(chown(path().c_str(), 1234, 2345), 0);
        ASSERT_EQ(chmod(path().c_str(), olds[i]), 0);
        ASSERT_EQ(seteuid(kNobody), 0);
        const bool replaced = replaceFile(path(), "new");
        ASSERT_EQ(seteuid(0), 0);
        EXPECT_TRUE(replaced);
        EXPECT_EQ(factsOf(path()).st_uid, kNobody);
        EXPECT_EQ(modeOf(path()), news[i]) << "was " << olds[i];
    }
}

std::string opened(UserFile& file, const std::string& path) {
    return file.read(path).value_or("null");
}

TEST_F(UserFiles, EveryByte_ReadAsItIs) {
    std::string content;
    for (int byte = 0; byte <= 0xFF; ++byte) {
        content.push_back(static_cast<char>(byte));
    }
    for (const std::string& each : {content, std::string("\0", 1), std::string(), content + '\0'}) {
        put(path(), each);
        UserFile file;
        EXPECT_EQ(opened(file, path()), each);
        EXPECT_FALSE(file.unreadable());
    }
}

TEST_F(UserFiles, NoFile_IsNoneAndMayBeWritten) {
    UserFile file;
    EXPECT_EQ(opened(file, path()), "null");
    link("nothing.xml");
    EXPECT_EQ(opened(file, path()), "null");
    EXPECT_FALSE(file.unreadable());
    EXPECT_TRUE(file.replace(path(), "new"));
    EXPECT_EQ(opened(file, path()), "new") << "through the link";
}

// A folder, a pipe that nobody writes into, a device, links that lead round, a folder of the path
// that is a file.
TEST_F(UserFiles, ThereButNotReadable_IsNeverWrittenOver) {
    put(folder_ / "real.xml", "mine");
    fs::create_directories(folder_ / "folder");
    ASSERT_EQ(mkfifo((folder_ / "pipe").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", folder_ / "device");
    fs::create_symlink("round", folder_ / "round");
    for (const char* name : {"folder", "pipe", "device", "round", "real.xml/file.xml"}) {
        UserFile file;
        EXPECT_EQ(opened(file, folder_ / name), "null") << name;
        EXPECT_TRUE(file.unreadable()) << name;
        EXPECT_FALSE(file.replace(folder_ / "real.xml", "new")) << name;
        // Nor when it has become readable, or has gone.
        EXPECT_EQ(opened(file, folder_ / "real.xml"), "mine") << name;
        EXPECT_EQ(opened(file, folder_ / "none.xml"), "null") << name;
        EXPECT_FALSE(file.replace(folder_ / "real.xml", "new")) << name;
        EXPECT_EQ(vectors::fileBytes(folder_ / "real.xml"), "mine");
    }
}

// 43 + 1 + 43 characters at the start, 50 playlists of 43 and of 53 elements of twice 99.
TEST_F(UserFiles, EndlessFile_IsReadAsFarAsTheScannerGoes) {
    put(path(), "x");
    fs::resize_file(path(), uintmax_t{1} << 30);
    UserFile file;
    EXPECT_EQ(opened(file, path()).size(), 526937u);
    EXPECT_FALSE(file.unreadable());
}

}  // namespace
