#include "tools/control/ears/still_down.h"

#include <gtest/gtest.h>

namespace control {
namespace {

Heard heard(HeardKind kind, const std::string& device, int channel, int number, double value) {
    Heard heard;
    heard.kind = kind;
    heard.device = device;
    heard.channel = channel;
    heard.number = number;
    heard.value = value;
    return heard;
}

TEST(StillDown, Release_IsOfWhatIsDownOfThatDevice) {
    StillDown down;
    down.hear(heard(HeardKind::NOTE, "pads", 16, 127, 0.1));
    down.hear(heard(HeardKind::NOTE, "pads", 1, 0, 1));
    down.hear(heard(HeardKind::NOTE, "pads", 1, 1, 1));
    down.hear(heard(HeardKind::NOTE, "pads", 1, 1, 0));
    down.hear(heard(HeardKind::KNOB, "pads", 2, 7, 0.5));
    down.hear(heard(HeardKind::KNOB, "pads", 2, 8, 0.49));
    down.hear(heard(HeardKind::NOTE, "keys", 1, 2, 1));
    const auto releases = down.releasesFor("pads", Time(milliseconds(5)));
    ASSERT_EQ(releases.size(), 3U);
    EXPECT_EQ(releases[0].kind, HeardKind::NOTE);
    EXPECT_EQ(releases[0].channel, 1);
    EXPECT_EQ(releases[0].number, 0);
    EXPECT_EQ(releases[0].device, "pads");
    EXPECT_EQ(releases[0].when, Time(milliseconds(5)));
    EXPECT_EQ(releases[1].channel, 16);
    EXPECT_EQ(releases[1].number, 127);
    EXPECT_EQ(releases[2].kind, HeardKind::KNOB);
    EXPECT_EQ(releases[2].number, 7);
    for (const Heard& release : releases) {
        EXPECT_EQ(release.value, 0.0);
    }
    EXPECT_TRUE(down.releasesFor("pads").empty());
    EXPECT_EQ(down.releasesFor("keys").size(), 1U);
}

TEST(StillDown, OtherKindsAndNumbers_AreNotKept) {
    StillDown down;
    down.hear(heard(HeardKind::OSC, "d", 1, 1, 1));
    down.hear(heard(HeardKind::BEND, "d", 1, 1, 1));
    down.hear(heard(HeardKind::NOTE, "d", 0, 1, 1));
    down.hear(heard(HeardKind::NOTE, "d", 17, 1, 1));
    down.hear(heard(HeardKind::NOTE, "d", 1, 128, 1));
    down.hear(heard(HeardKind::NOTE, "d", 1, -1, 1));
    EXPECT_TRUE(down.releasesFor("d").empty());
}

TEST(StillDown, Devices_AreBounded) {
    StillDown down;
    for (int i = 0; i < 33; ++i) {
        down.hear(heard(HeardKind::NOTE, std::to_string(i), 1, 1, 1));
    }
    EXPECT_TRUE(down.releasesFor("32").empty());
    EXPECT_EQ(down.releasesFor("31").size(), 1U);
    // One has room again; one that let go of everything takes none.
    down.hear(heard(HeardKind::NOTE, "30", 1, 1, 0));
    down.hear(heard(HeardKind::NOTE, "a", 1, 1, 1));
    down.hear(heard(HeardKind::NOTE, "b", 1, 1, 1));
    EXPECT_EQ(down.releasesFor("b").size(), 1U);
}

}  // namespace
}  // namespace control
