#include "files/read_ahead.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>

namespace {

constexpr off_t kBytes = 3 * 128 * 1024 + 5;

class ReadAheadTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_NE(mkdtemp(folder_), nullptr);
        path_ = std::string(folder_) + "/file";
        const int file = ::open(path_.c_str(), O_WRONLY | O_CREAT, 0600);
        ASSERT_GE(file, 0);
        const std::string bytes(kBytes, 'b');
        EXPECT_EQ(write(file, bytes.data(), bytes.size()), kBytes);
        // Out of memory, where the file system lets go of it.
        fsync(file);
        posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED);
        close(file);
    }
    void TearDown() override {
        unlink(path_.c_str());
        rmdir(folder_);
    }
    bool comes(off_t from, off_t end) {
        const auto late = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!ahead_.haveCome(from, end)) {
            if (std::chrono::steady_clock::now() > late) {
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return true;
    }

    char folder_[32] = "/tmp/velmora-ahead-XXXXXX";
    std::string path_;
    ReadAhead ahead_;
};

TEST_F(ReadAheadTest, Asked_Comes) {
    ahead_.open(path_);
    EXPECT_TRUE(comes(0, 10));
    EXPECT_TRUE(comes(1000, 200'000));
    EXPECT_TRUE(comes(200'000, kBytes));
}

TEST_F(ReadAheadTest, PastTheEnd_NothingToWaitFor) {
    ahead_.open(path_);
    EXPECT_TRUE(comes(0, 10 * kBytes));
    EXPECT_TRUE(ahead_.haveCome(2 * kBytes, 3 * kBytes));
}

TEST_F(ReadAheadTest, FileIsCut_NothingToWaitFor) {
    ahead_.open(path_);
    ahead_.haveCome(0, 1000);
    ASSERT_EQ(truncate(path_.c_str(), 0), 0);
    EXPECT_TRUE(ahead_.haveCome(0, 1000));
}

TEST_F(ReadAheadTest, NoFile_NothingToWaitFor) {
    EXPECT_TRUE(ahead_.haveCome(0, 1000));
    ahead_.open(path_ + " that is not there");
    EXPECT_FALSE(ahead_.isOpen());
    EXPECT_TRUE(ahead_.haveCome(0, 1000));
    const std::string pipe = path_ + "pipe";
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    ahead_.open(pipe);
    EXPECT_FALSE(ahead_.isOpen());
    unlink(pipe.c_str());
}

TEST_F(ReadAheadTest, AnotherFile_TheFirstIsClosed) {
    ahead_.open(path_);
    const int before = dup(0);
    close(before);
    ahead_.open(path_);
    EXPECT_TRUE(comes(0, kBytes));
    ahead_.close();
    EXPECT_FALSE(ahead_.isOpen());
    const int after = dup(0);
    close(after);
    EXPECT_LT(after, before);
}

}  // namespace
