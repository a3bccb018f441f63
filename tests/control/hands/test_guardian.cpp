#include <gtest/gtest.h>
// GoogleTest comes before X's macros.
#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <string>

#include "app/clock.h"
#include "control/hands/test_window.h"
#include "tools/control/hands/xtest.h"

namespace {

using control::Guardian;
using control::Key;
using control::TestServer;
using control::TestWindow;
using control::XTestHands;

// The first child of a process, 0: none.
pid_t childOf(pid_t process) {
    const std::string id = std::to_string(process);
    std::ifstream list("/proc/" + id + "/task/" + id + "/children");
    pid_t child = 0;
    list >> child;
    return child;
}

// A process that has ended, or only waits for its parent to hear so.
bool ended(pid_t process) {
    std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
    std::string id;
    std::string name;
    std::string state;
    return !(stat >> id >> name >> state) || state == "Z";
}

// It has let go of the files that it was born with.
bool guards(pid_t process) {
    std::error_code none;
    const auto output = "/proc/" + std::to_string(process) + "/fd/1";
    return std::filesystem::read_symlink(output, none) == "/dev/null";
}

// A process that plays and then waits for its end by a signal. `pipe` is its standard output.
pid_t startPlayer(int pipe) {
    const pid_t child = fork();
    if (child == 0) {
        setpgid(0, 0);
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        dup2(pipe, STDOUT_FILENO);
        XTestHands hands;
        hands.key(Key::Q, true);
        hands.key(Key::LEFT, true);
        hands.button(true);
        while (true) {
            pause();
        }
    }
    return child;
}

TEST(Guardian, KilledPlayer_LeavesNothingDown) {
    TestServer server;
    TestWindow window;
    window.focus();
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe2(ends.data(), O_CLOEXEC), 0);
    const pid_t player = startPlayer(ends[1]);
    close(ends[1]);
    ASSERT_TRUE(app::waitUntil([&] { return window.down() == 3; }));
    const pid_t guardian = childOf(player);
    ASSERT_GT(guardian, 0);

    ASSERT_TRUE(app::waitUntil([&] { return guards(guardian); }));
    kill(guardian, SIGSTOP);  // it lives on while the pipe's other end is looked at
    ASSERT_TRUE(app::waitUntil([&] {
        std::ifstream stat("/proc/" + std::to_string(guardian) + "/stat");
        std::string id;
        std::string name;
        std::string state;
        return stat >> id >> name >> state && state == "T";
    }));
    kill(player, SIGKILL);
    ASSERT_EQ(waitpid(player, nullptr, 0), player);
    pollfd waiting = {ends[0], POLLIN, 0};
    ASSERT_EQ(poll(&waiting, 1, 1000 * app::slowness()), 1);
    char byte = 0;
    EXPECT_EQ(read(ends[0], &byte, 1), 0);
    close(ends[0]);
    EXPECT_EQ(window.down(), 3);

    kill(guardian, SIGCONT);
    EXPECT_TRUE(app::waitUntil([&] { return window.down() == 0; }, 1000 * app::slowness()));
    EXPECT_TRUE(app::waitUntil([&] { return ended(guardian); }));
}

TEST(Guardian, KilledGroup_LeavesNothingDown) {
    TestServer server;
    TestWindow window;
    window.focus();
    const pid_t player = startPlayer(STDOUT_FILENO);
    ASSERT_TRUE(app::waitUntil([&] { return window.down() == 3; }));
    kill(-player, SIGKILL);
    ASSERT_EQ(waitpid(player, nullptr, 0), player);
    EXPECT_TRUE(app::waitUntil([&] { return window.down() == 0; }, 1000 * app::slowness()));
}

TEST(Guardian, Signals_OfTheTerminalDoNotEndIt) {
    TestServer server;
    TestWindow window;
    window.focus();
    const pid_t player = startPlayer(STDOUT_FILENO);
    ASSERT_TRUE(app::waitUntil([&] { return window.down() == 3; }));
    const pid_t guardian = childOf(player);
    ASSERT_GT(guardian, 0);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
        kill(guardian, signal);
    }
    kill(player, SIGKILL);
    ASSERT_EQ(waitpid(player, nullptr, 0), player);
    EXPECT_TRUE(app::waitUntil([&] { return window.down() == 0; }, 1000 * app::slowness()));
}

TEST(Guardian, Destructor_LeavesNoProcess) {
    const pid_t before = childOf(getpid());
    pid_t child = 0;
    {
        Guardian guardian;
        child = childOf(getpid());
        EXPECT_NE(child, before);
        guardian.note(38, true);
        guardian.note(38, false);
    }
    EXPECT_NE(kill(child, 0), 0);
    EXPECT_EQ(errno, ESRCH);
}

TEST(Guardian, Died_EndsNotItsOwner) {
    Guardian guardian;
    const pid_t child = childOf(getpid());
    ASSERT_GT(child, 0);
    kill(child, SIGKILL);
    ASSERT_TRUE(app::waitUntil([&] { return ended(child); }));
    guardian.note(38, true);
    guardian.note(38, false);
}

}  // namespace
