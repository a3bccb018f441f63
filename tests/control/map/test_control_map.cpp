#include <gtest/gtest.h>

#include "tools/control/map/control_map.h"

namespace control {
namespace {

Heard note(int number, double value = 1) {
    Heard heard;
    heard.channel = 10;
    heard.number = number;
    heard.value = value;
    heard.device = "Great PAD 16";
    return heard;
}

size_t count(const Binding& binding, const Heard& heard) {
    ControlMap map;
    map.bindings = {binding};
    return bindingsFor(map, heard).size();
}

TEST(ListensTo, NoNames_AllDevices) {
    EXPECT_TRUE(listensTo({}, "anything"));
    EXPECT_TRUE(listensTo({}, ""));
}

TEST(ListensTo, Only_LeavesAllOthersOut) {
    ControlMap map;
    map.onlyDevices = {"nano", "KEYS"};
    EXPECT_TRUE(listensTo(map, "A NanoThing 1"));
    EXPECT_TRUE(listensTo(map, "big keys"));
    EXPECT_FALSE(listensTo(map, "nan o"));
    map.ignoredDevices = {"thing"};
    EXPECT_FALSE(listensTo(map, "A NanoThing 1"));
    EXPECT_TRUE(listensTo(map, "big keys"));
}

TEST(BindingsFor, Note_PressAndReleaseOfItsNumber) {
    const Binding binding{.number = 36};
    EXPECT_EQ(count(binding, note(36)), 1u);
    EXPECT_EQ(count(binding, note(36, 0)), 1u);
    EXPECT_EQ(count(binding, note(37)), 0u);
    Heard knob = note(36);
    knob.kind = HeardKind::KNOB;
    EXPECT_EQ(count(binding, knob), 0u);
}

TEST(BindingsFor, ChannelAndDevice_MustFit) {
    EXPECT_EQ(count({.channel = 10, .number = 36}, note(36)), 1u);
    EXPECT_EQ(count({.channel = 9, .number = 36}, note(36)), 0u);
    EXPECT_EQ(count({.number = 36, .device = "pad"}, note(36)), 1u);
    EXPECT_EQ(count({.number = 36, .device = "great pad 17"}, note(36)), 0u);
}

TEST(BindingsFor, BendAndProgram_OnlyTheSecondHasANumber) {
    Heard heard = note(5);
    heard.kind = HeardKind::BEND;
    EXPECT_EQ(count({.kind = HeardKind::BEND}, heard), 1u);
    heard.kind = HeardKind::PROGRAM;
    EXPECT_EQ(count({.kind = HeardKind::PROGRAM, .number = 5}, heard), 1u);
    EXPECT_EQ(count({.kind = HeardKind::PROGRAM, .number = 4}, heard), 0u);
}

TEST(BindingsFor, Osc_ItsAddressExactly) {
    Heard heard;
    heard.kind = HeardKind::OSC;
    heard.device = "10.0.0.7:9000";
    heard.address = "/1/push1";
    EXPECT_EQ(count({.kind = HeardKind::OSC, .address = "/1/push1"}, heard), 1u);
    EXPECT_EQ(count({.kind = HeardKind::OSC, .address = "/1/push"}, heard), 0u);
    EXPECT_EQ(count({.kind = HeardKind::OSC, .address = "/1/Push1"}, heard), 0u);
    EXPECT_EQ(count({.kind = HeardKind::OSC, .device = "10.0.0.7", .address = "/1/push1"}, heard),
              1u);
    EXPECT_EQ(count({.kind = HeardKind::OSC, .device = "10.0.0.8", .address = "/1/push1"}, heard),
              0u);
}

TEST(BindingsFor, TwoOfOneInput_BothInTheirOrder) {
    ControlMap map;
    map.bindings = {
        {.number = 36, .line = 1}, {.number = 37, .line = 2}, {.number = 36, .line = 3}};
    const auto found = bindingsFor(map, note(36));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[0]->line, 1);
    EXPECT_EQ(found[1]->line, 3);
}

}  // namespace
}  // namespace control
