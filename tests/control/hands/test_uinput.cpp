#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/input.h>
#include <unistd.h>

#include <array>
#include <memory>
#include <string>

#include "tools/base/errors.h"
#include "tools/control/hands/uinput.h"

namespace {

using control::Key;
using control::milliseconds;
using control::Time;
using control::UinputHands;

const Time kNow = Time{} + std::chrono::hours(1);
uint64_t running = 0;

uint64_t whichRuns() {
    return running;
}

class Uinput : public testing::Test {
protected:
    Uinput() {
        EXPECT_EQ(pipe2(ends_.data(), O_NONBLOCK | O_CLOEXEC), 0);
        running = 7;
        hands_ = std::make_unique<UinputHands>(ends_[1], whichRuns);
    }
    ~Uinput() override {
        hands_.reset();
        close(ends_[0]);
    }

    // "type/code/value" of each event since the last call.
    std::string take() {
        std::string all;
        input_event event{};
        while (read(ends_[0], &event, sizeof event) == sizeof event) {
            all.append(all.empty() ? "" : " ").append(std::to_string(event.type));
            all.append("/").append(std::to_string(event.code));
            all.append("/").append(std::to_string(event.value));
        }
        return all;
    }

    std::array<int, 2> ends_{};
    std::unique_ptr<UinputHands> hands_;
};

// Type 1 is a key, 3 an axis, 0 the end of what happens together. Q is 16, the left button 272.
TEST_F(Uinput, Events_AreTheKernels) {
    hands_->key(Key::Q, true);
    hands_->key(Key::Q, true);
    hands_->key(Key::Q, false);
    hands_->key(Key::Q, false);
    EXPECT_EQ(take(), "1/16/1 0/0/0 1/16/0 0/0/0");
    hands_->button(true);
    hands_->button(true);
    hands_->button(false);
    EXPECT_EQ(take(), "1/272/1 0/0/0 1/272/0 0/0/0");
    hands_->point(0, 0);
    hands_->point(639, 359);
    EXPECT_EQ(take(), "3/0/320 3/1/180 0/0/0 3/0/959 3/1/539 0/0/0");
}

TEST_F(Uinput, Process_EndedLetsGo) {
    hands_->look(kNow);
    EXPECT_EQ(hands_->stage(), 7U);
    hands_->key(Key::A, true);
    hands_->button(true);
    take();
    running = 0;
    hands_->look(kNow + milliseconds(999));
    EXPECT_EQ(take(), "");
    hands_->look(kNow + milliseconds(1000));
    EXPECT_EQ(take(), "1/30/0 0/0/0 1/272/0 0/0/0");
    EXPECT_EQ(hands_->stage(), 0U);
    EXPECT_FALSE(hands_->reachesVelmora());
    hands_->key(Key::A, true);
    hands_->button(true);
    hands_->point(1, 1);
    EXPECT_EQ(take(), "");
    running = 8;
    hands_->look(kNow + milliseconds(2000));
    EXPECT_EQ(hands_->stage(), 8U);
    hands_->key(Key::A, true);
    EXPECT_EQ(take(), "1/30/1 0/0/0");
}

TEST_F(Uinput, Process_ReplacedLetsGo) {
    hands_->look(kNow);
    hands_->key(Key::A, true);
    take();
    running = 8;
    hands_->look(kNow + milliseconds(1000));
    EXPECT_EQ(take(), "1/30/0 0/0/0");
    EXPECT_TRUE(hands_->reachesVelmora());
}

TEST_F(Uinput, Destructor_LetsGoAndCloses) {
    hands_->key(Key::UP, true);
    take();
    hands_.reset();
    EXPECT_EQ(take(), "1/103/0 0/0/0");
    char byte = 0;
    EXPECT_EQ(read(ends_[0], &byte, 1), 0);
}

TEST(UinputDevice, Missing_SaysWhatMayBringIt) {
    if (access("/dev/uinput", F_OK) == 0) {
        GTEST_SKIP() << "/dev/uinput is there";
    }
    try {
        control::openUinput();
        FAIL() << "no error";
    } catch (const maker::ToolError& error) {
        EXPECT_STREQ(error.what(),
                     "cannot open /dev/uinput: No such file or directory; "
                     "`sudo modprobe uinput` may bring it");
    }
}

}  // namespace
