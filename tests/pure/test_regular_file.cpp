#include "files/regular_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace {

class RegularFile : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(mkdtemp(folder_), nullptr);
        path_ = std::string(folder_) + "/file";
    }
    void TearDown() override {
        unlink(path_.c_str());
        rmdir(folder_);
    }
    void writeFile(const char* text) {
        FILE* file = fopen(path_.c_str(), "wb");
        ASSERT_NE(file, nullptr);
        fputs(text, file);
        fclose(file);
    }

    char folder_[32] = "/tmp/velmora-regular-XXXXXX";
    std::string path_;
};

TEST_F(RegularFile, Open_GivesTheBytes) {
    writeFile("ab");
    FILE* file = openRegularFile(path_);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(fgetc(file), 'a');
    EXPECT_EQ(fgetc(file), 'b');
    EXPECT_EQ(fgetc(file), EOF);
    fclose(file);
}

TEST_F(RegularFile, Open_MissingFileIsSaidToBeMissing) {
    EXPECT_EQ(openRegular(path_), -1);
    EXPECT_EQ(errno, ENOENT);
    errno = 0;
    EXPECT_EQ(openRegularFile(path_), nullptr);
    EXPECT_EQ(errno, ENOENT);
}

// Nobody writes to it: without O_NONBLOCK this never ends.
TEST_F(RegularFile, Open_PipeIsRefusedAtOnce) {
    ASSERT_EQ(mkfifo(path_.c_str(), 0600), 0);
    EXPECT_EQ(openRegularFile(path_), nullptr);
    EXPECT_EQ(errno, EINVAL);
}

TEST_F(RegularFile, Open_FolderIsRefused) {
    EXPECT_EQ(openRegular(folder_), -1);
    EXPECT_EQ(errno, EINVAL);
}

}  // namespace
