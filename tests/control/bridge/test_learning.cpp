#include <gtest/gtest.h>

#include "tools/control/bridge/learning.h"

namespace control {

namespace {

Heard midi(HeardKind kind, int number, double value) {
    Heard heard;
    heard.kind = kind;
    heard.channel = 3;
    heard.number = number;
    heard.value = value;
    heard.device = "pads";
    return heard;
}

Heard osc(const std::string& address, std::optional<double> value) {
    Heard heard;
    heard.kind = HeardKind::OSC;
    heard.address = address;
    heard.value = value;
    heard.device = "127.0.0.1:9";
    return heard;
}

Learning learningOf(const char* action) {
    return Learning(actionNamed(action).value());
}

}  // namespace

TEST(Learning, Pad_IsBoundWhenItGoesDown) {
    Learning learning = learningOf("flash");
    EXPECT_FALSE(learning.hear(midi(HeardKind::NOTE, 36, 0)));
    const auto binding = learning.hear(midi(HeardKind::NOTE, 36, 0.5));
    ASSERT_TRUE(binding);
    Binding wanted;
    wanted.kind = HeardKind::NOTE;
    wanted.channel = 3;
    wanted.number = 36;
    wanted.device = "pads";
    wanted.action = {.kind = ActionKind::FLASH};
    EXPECT_EQ(*binding, wanted);
}

TEST(Learning, TremblingKnob_IsNotBound) {
    Learning learning = learningOf("scrub");
    EXPECT_FALSE(learning.hear(midi(HeardKind::KNOB, 1, 0.5)));
    EXPECT_FALSE(learning.hear(midi(HeardKind::KNOB, 1, 0.74)));
    EXPECT_FALSE(learning.hear(midi(HeardKind::KNOB, 2, 0.1)));
    const auto binding = learning.hear(midi(HeardKind::KNOB, 1, 0.25));
    ASSERT_TRUE(binding);
    EXPECT_EQ(binding->kind, HeardKind::KNOB);
    EXPECT_EQ(binding->number, 1);
}

TEST(Learning, PadOfAScrub_IsNotBound) {
    Learning learning = learningOf("top.scrub");
    EXPECT_FALSE(learning.hear(midi(HeardKind::NOTE, 36, 1)));
    EXPECT_FALSE(learning.hear(midi(HeardKind::PROGRAM, 1, 1)));
    EXPECT_FALSE(learning.hear(osc("/1/push", std::nullopt)));
}

TEST(Learning, ProgramOfWhatIsHeld_IsNotBound) {
    EXPECT_FALSE(learningOf("fade").hear(midi(HeardKind::PROGRAM, 1, 1)));
    EXPECT_TRUE(learningOf("flash").hear(midi(HeardKind::PROGRAM, 1, 1)));
}

TEST(Learning, OscButton_IsBoundByItsAddressAlone) {
    Learning learning = learningOf("flash");
    EXPECT_FALSE(learning.hear(osc("/1/push", 0)));
    const auto binding = learning.hear(osc("/1/push", 1));
    ASSERT_TRUE(binding);
    EXPECT_EQ(binding->address, "/1/push");
    EXPECT_EQ(binding->device, "");
    EXPECT_FALSE(binding->channel);
}

TEST(Learning, OscFaderOfAScrub_IsBoundWhenItHasMoved) {
    Learning learning = learningOf("scrub");
    EXPECT_FALSE(learning.hear(osc("/fader", 0)));
    Heard moved = osc("/fader", 0.3);
    moved.device = "127.0.0.1:10";
    EXPECT_TRUE(learning.hear(moved));
}

TEST(Learning, ClockAndUnplugging_AreNotBound) {
    Learning learning = learningOf("flash");
    EXPECT_FALSE(learning.hear(midi(HeardKind::CLOCK, 0, 1)));
    EXPECT_FALSE(learning.hear(midi(HeardKind::GONE, 0, 1)));
}

TEST(Learning, UsualActions_AreAllThere) {
    for (const std::string& name : usualActions()) {
        EXPECT_TRUE(actionNamed(name)) << name;
    }
}

}  // namespace control
