#include "tools/control/ears/midi_queue.h"

#include <gtest/gtest.h>
#include <poll.h>

namespace control {
namespace {

constexpr uint8_t kNote[] = {0x90, 60, 127};

bool readable(const MidiQueue& queue) {
    pollfd waiting{queue.fd(), POLLIN, 0};
    return poll(&waiting, 1, 0) == 1;
}

TEST(MidiQueue, Messages_ComeInOrderWithTheirDevice) {
    MidiQueue queue;
    const auto pads = std::make_shared<MidiInput>("pads");
    EXPECT_FALSE(readable(queue));
    queue.push(pads, kNote, Time(milliseconds(1)));
    queue.push(pads, std::vector<uint8_t>{0xFE}, Time(milliseconds(2)));
    queue.push(pads, std::vector<uint8_t>{0xF0, 1, 2, 3, 0xF7}, Time(milliseconds(2)));
    queue.push(pads, std::vector<uint8_t>{}, Time(milliseconds(2)));
    queue.pushGone(pads, Time(milliseconds(3)));
    EXPECT_TRUE(readable(queue));
    std::vector<Heard> heard;
    queue.take(heard);
    EXPECT_FALSE(readable(queue));
    ASSERT_EQ(heard.size(), 2U);
    EXPECT_EQ(heard[0].kind, HeardKind::NOTE);
    EXPECT_EQ(heard[0].device, "pads");
    EXPECT_EQ(heard[0].when, Time(milliseconds(1)));
    EXPECT_EQ(heard[1].kind, HeardKind::GONE);
    EXPECT_EQ(heard[1].device, "pads");
}

TEST(MidiQueue, Overflow_IsCountedAndSaidOnceForEachDevice) {
    MidiQueue queue;
    const auto pads = std::make_shared<MidiInput>("pads");
    const auto keys = std::make_shared<MidiInput>("keys");
    for (int i = 0; i < 4099; ++i) {
        queue.push(pads, kNote, Time(milliseconds(i)));
    }
    queue.push(keys, kNote, Time{});
    queue.pushGone(keys, Time{});
    EXPECT_EQ(queue.dropped(), 4U);
    std::vector<Heard> heard;
    queue.take(heard);
    ASSERT_EQ(heard.size(), 4099U);
    EXPECT_EQ(heard[4095].kind, HeardKind::NOTE);
    EXPECT_EQ(heard[4096].kind, HeardKind::GONE);
    EXPECT_EQ(heard[4097].kind, HeardKind::SKIPPED);
    EXPECT_EQ(heard[4097].device, "pads");
    EXPECT_EQ(heard[4098].device, "keys");
    heard.clear();
    queue.push(pads, kNote, Time{});
    queue.take(heard);
    EXPECT_EQ(heard.size(), 1U);
}

}  // namespace
}  // namespace control
