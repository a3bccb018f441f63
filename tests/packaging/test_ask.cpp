// velmora-ask: its keys on a terminal of the tests' own, its buttons on the joystick double, with
// scripted time; and the program itself, with its status and the terminal that it leaves.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <thread>

#include "app/pad.h"
#include "support/folder.h"
#include "tools/ask/keys.h"
#include "tools/ask/pads.h"

namespace {

using namespace std::chrono_literals;

// A terminal; the tests type on its other end.
class Terminal {
public:
    Terminal() { EXPECT_EQ(openpty(&hands_, &program_, nullptr, nullptr, nullptr), 0); }
    ~Terminal() {
        close(hands_);
        close(program_);
    }
    void type(const char* keys) const {
        EXPECT_EQ(write(hands_, keys, strlen(keys)), static_cast<ssize_t>(strlen(keys)));
    }
    // Until they have come: the system hands them on in its own time.
    void typeAndWait(const char* keys) const {
        type(keys);
        pollfd arrived = {program_, POLLIN, 0};
        EXPECT_EQ(poll(&arrived, 1, 60'000), 1);
    }
    tcflag_t mode() const {
        termios now = {};
        EXPECT_EQ(tcgetattr(program_, &now), 0);
        return now.c_lflag & static_cast<tcflag_t>(ICANON | ECHO);
    }
    int program() const { return program_; }

private:
    int hands_ = -1;
    int program_ = -1;
};

constexpr tcflag_t kPlain = ICANON | ECHO;

// As standard input of the test itself.
class OnInput {
public:
    explicit OnInput(const Terminal& terminal) : kept_(dup(STDIN_FILENO)) {
        dup2(terminal.program(), STDIN_FILENO);
    }
    ~OnInput() {
        dup2(kept_, STDIN_FILENO);
        close(kept_);
    }

private:
    int kept_;
};

TEST(AskKeys, AnyKeyAfterTheQuestion_IsAYes) {
    for (const char* key : {"x", " ", "\x1b[A", "\r", "\x03"}) {
        const Terminal terminal;
        const OnInput input(terminal);
        ask::Keys keys;
        ASSERT_TRUE(keys.there());
        EXPECT_EQ(terminal.mode(), 0u);
        EXPECT_FALSE(keys.pressed(500));
        terminal.typeAndWait(key);
        EXPECT_TRUE(keys.pressed(1000));
        EXPECT_FALSE(keys.pressed(2000));
    }
}

TEST(AskKeys, KeyBeforeTheQuestion_DoesNotCount) {
    const Terminal terminal;
    const OnInput input(terminal);
    terminal.typeAndWait("xyz\n");
    ask::Keys keys;
    EXPECT_FALSE(keys.pressed(1000));
}

TEST(AskKeys, HeldKey_DoesNotCountUntilItWasLetGo) {
    const Terminal terminal;
    const OnInput input(terminal);
    ask::Keys keys;
    for (long now = 92; now < 2000; now += 92) {
        terminal.typeAndWait("x");
        EXPECT_FALSE(keys.pressed(now)) << now;
    }
    terminal.typeAndWait("x");
    EXPECT_TRUE(keys.pressed(3000));
}

TEST(AskKeys, Terminal_IsAsBeforeAndShowsNothingAfterwards) {
    const Terminal terminal;
    const OnInput input(terminal);
    {
        const ask::Keys keys;
        terminal.typeAndWait("left over\n");
    }
    EXPECT_EQ(terminal.mode(), kPlain);
    EXPECT_EQ(fcntl(terminal.program(), F_SETFL, O_NONBLOCK), 0);
    char byte = 0;
    EXPECT_EQ(read(terminal.program(), &byte, 1), -1);
}

TEST(AskPads, ButtonThatGoesDown_IsAYesAndAHeldOneIsNot) {
    const TemporaryFolder folder;
    app::Pad pad("pad");
    const app::Pad::Plugged plugged(pad);
    ask::Pads pads;
    ASSERT_TRUE(pads.there());
    pad.set(3, true);
    EXPECT_FALSE(pads.pressed(0));
    EXPECT_FALSE(pads.pressed(1000));
    pad.set(7, true);
    EXPECT_TRUE(pads.pressed(2000));
    EXPECT_FALSE(pads.pressed(3000));
    pad.set(3, false);
    EXPECT_FALSE(pads.pressed(4000));
    pad.set(3, true);
    EXPECT_TRUE(pads.pressed(5000));
    // A driver may tell late of what was down before.
    pad.set(9, true);
    EXPECT_FALSE(pads.pressed(100));
    EXPECT_FALSE(pads.pressed(6000));
}

class Asked {
public:
    // `terminal` null: standard input is no terminal.
    Asked(const Terminal* terminal, const std::vector<std::string>& arguments,
          const std::string& pad = "") {
        id_ = fork();
        if (id_ != 0) {
            return;
        }
        const int nothing = open("/dev/null", O_RDWR);
        dup2(terminal != nullptr ? terminal->program() : nothing, STDIN_FILENO);
        dup2(open("said", O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
        if (!pad.empty()) {
            setenv(app::kPadFileVariable, pad.c_str(), 1);
            setenv("LD_PRELOAD", ASK_PRELOAD, 1);
        }
        std::vector<char*> words = {const_cast<char*>(VELMORA_ASK)};
        for (const std::string& argument : arguments) {
            words.push_back(const_cast<char*>(argument.c_str()));
        }
        words.push_back(nullptr);
        execv(VELMORA_ASK, words.data());
        _exit(127);
    }
    ~Asked() {
        if (id_ > 0) {
            kill(id_, SIGKILL);
            waitpid(id_, nullptr, 0);
        }
    }

    // Calls `meanwhile` again and again until it ends; a minute at most.
    int status(const std::function<void()>& meanwhile = [] {}) {
        const auto end = std::chrono::steady_clock::now() + 60s;
        int status = 0;
        while (waitpid(id_, &status, WNOHANG) == 0) {
            if (std::chrono::steady_clock::now() > end) {
                return -1;
            }
            meanwhile();
            std::this_thread::sleep_for(20ms);
        }
        id_ = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    void stop() const { kill(id_, SIGTERM); }

    static std::string said() {
        std::ifstream file("said");
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    pid_t id_ = 0;
};

class Ask : public testing::Test {
protected:
    Ask() { unsetenv(app::kPadFileVariable); }
    void waitUntilItAsks() const {
        while (terminal_.mode() == kPlain) {
            std::this_thread::sleep_for(10ms);
        }
    }
    TemporaryFolder folder_;
    Terminal terminal_;
};

TEST_F(Ask, Key_Is0AndTheTerminalIsAsBefore) {
    Asked asked(&terminal_, {"--seconds", "60"});
    waitUntilItAsks();
    int looks = 0;
    // With pauses, as a hand makes them.
    EXPECT_EQ(asked.status([&] {
        if (++looks % 25 == 0) {
            terminal_.type("x");
        }
    }),
              0);
    EXPECT_EQ(terminal_.mode(), kPlain);
}

TEST_F(Ask, Nobody_Is1) {
    terminal_.typeAndWait("too early\n");
    Asked asked(&terminal_, {"--seconds", "1"});
    EXPECT_EQ(asked.status(), 1);
    EXPECT_EQ(terminal_.mode(), kPlain);
    EXPECT_EQ(Asked::said(), "");
}

TEST_F(Ask, Stopped_LeavesTheTerminalAsBefore) {
    Asked asked(&terminal_, {"--seconds", "60"});
    waitUntilItAsks();
    asked.stop();
    EXPECT_EQ(asked.status(), 130);
    EXPECT_EQ(terminal_.mode(), kPlain);
}

TEST_F(Ask, Button_Is0AndAHeldOneIs1) {
    app::Pad pad("pad");
    pad.set(2, true);
    Asked held(nullptr, {"--seconds", "1"}, "pad");
    EXPECT_EQ(held.status(), 1);
    int looks = 0;
    Asked pressed(nullptr, {"--seconds", "60"}, "pad");
    EXPECT_EQ(pressed.status([&] { pad.set(2, ++looks % 25 > 12); }), 0);
}

TEST_F(Ask, NothingToAsk_Is3AndOneLine) {
    Asked asked(nullptr, {});
    EXPECT_EQ(asked.status(), 3);
    EXPECT_EQ(Asked::said(), "velmora-ask: there is neither a keyboard nor a controller to ask\n");
}

TEST_F(Ask, OtherArguments_Are2) {
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"--seconds"},
                                               {"--seconds", "0"},
                                               {"--seconds", "601"},
                                               {"--seconds", "x"},
                                               {"now"}}) {
        Asked asked(&terminal_, arguments);
        EXPECT_EQ(asked.status(), 2);
        EXPECT_EQ(Asked::said(), "Usage: velmora-ask [--seconds N], 1 to 600\n");
    }
}

}  // namespace
