// A signal that stops the tool also ends a read that begins after it.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <thread>

#include "tools/base/errors.h"

namespace {

constexpr auto kPatience = std::chrono::seconds(20);

// A process that is asked to stop, then reads twice from a pipe that gives nothing;
// its status says how many of the reads were ended.
[[noreturn]] void readTwice(int pipe) {
    maker::catchInterrupts();
    raise(SIGINT);
    int ended = 0;
    for (int i = 0; i < 2; ++i) {
        char byte = 0;
        ended += read(pipe, &byte, 1) == -1 && errno == EINTR && maker::interrupted();
    }
    _exit(ended);
}

TEST(Interrupt, ReadThatBeginsAfterTheSignal_Ends) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        readTwice(ends[0]);
    }
    int status = 0;
    const auto end = std::chrono::steady_clock::now() + kPatience;
    pid_t done = 0;
    while ((done = waitpid(child, &status, WNOHANG)) == 0 &&
           std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    if (done == 0) {
        kill(child, SIGKILL);
        waitpid(child, &status, 0);
    }
    EXPECT_EQ(done, child) << "the process still reads";
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 2);
    close(ends[0]);
    close(ends[1]);
}

}  // namespace
