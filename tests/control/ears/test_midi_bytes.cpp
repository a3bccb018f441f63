#include "tools/control/ears/midi_bytes.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace control {
namespace {

// In a buffer of exact size, so that sanitizers see reads beyond it.
std::optional<Heard> hear(const std::vector<uint8_t>& bytes) {
    const auto exact = std::make_unique<uint8_t[]>(bytes.size());
    std::copy(bytes.begin(), bytes.end(), exact.get());
    return heardOfMidi({exact.get(), bytes.size()});
}

void expectHeard(const std::vector<uint8_t>& bytes, HeardKind kind, int channel, int number,
                 std::optional<double> value) {
    const auto heard = hear(bytes);
    ASSERT_TRUE(heard);
    EXPECT_EQ(heard->kind, kind);
    EXPECT_EQ(heard->channel, channel);
    EXPECT_EQ(heard->number, number);
    EXPECT_EQ(heard->value, value);
}

TEST(MidiBytes, Notes_AreOnAndOff) {
    expectHeard({0x90, 60, 127}, HeardKind::NOTE, 1, 60, 1.0);
    expectHeard({0x9F, 127, 1}, HeardKind::NOTE, 16, 127, 1.0 / 127);
    expectHeard({0x93, 0, 0}, HeardKind::NOTE, 4, 0, 0.0);
    expectHeard({0x83, 36, 64}, HeardKind::NOTE, 4, 36, 0.0);
}

TEST(MidiBytes, Controllers_AreKnobs) {
    expectHeard({0xB0, 7, 0}, HeardKind::KNOB, 1, 7, 0.0);
    expectHeard({0xB9, 7, 127}, HeardKind::KNOB, 10, 7, 1.0);
    expectHeard({0xB0, 123, 0}, HeardKind::KNOB, 1, 123, 0.0);
    expectHeard({0xB0, 120, 127}, HeardKind::KNOB, 1, 120, 1.0);
}

TEST(MidiBytes, Bend_ReachesItsEndsAndMiddle) {
    expectHeard({0xE0, 0, 0}, HeardKind::BEND, 1, 0, 0.0);
    expectHeard({0xE1, 0, 64}, HeardKind::BEND, 2, 0, 0.5);
    expectHeard({0xE0, 127, 127}, HeardKind::BEND, 1, 0, 1.0);
    expectHeard({0xE0, 0, 32}, HeardKind::BEND, 1, 0, 0.25);
}

TEST(MidiBytes, Program_HasNoValue) {
    expectHeard({0xC5, 99}, HeardKind::PROGRAM, 6, 99, std::nullopt);
}

TEST(MidiBytes, Clock_IsOneByte) {
    expectHeard({0xF8}, HeardKind::CLOCK, 0, 0, std::nullopt);
    expectHeard({0xFA}, HeardKind::START, 0, 0, std::nullopt);
    expectHeard({0xFB}, HeardKind::CONTINUE, 0, 0, std::nullopt);
    expectHeard({0xFC}, HeardKind::STOP, 0, 0, std::nullopt);
}

TEST(MidiBytes, AnythingElse_IsNothing) {
    const std::vector<std::vector<uint8_t>> others = {{},
                                                      {0x90},
                                                      {0x90, 60},
                                                      {0x90, 60, 128},
                                                      {0x90, 128, 1},
                                                      {0x90, 60, 1, 2},
                                                      {0xC0},
                                                      {0xC0, 128},
                                                      {0xC0, 1, 1},
                                                      {0xE0, 0},
                                                      {0xA0, 1, 1},
                                                      {0xD0, 1},
                                                      {0xF0, 1, 0xF7},
                                                      {0xF1, 1},
                                                      {0xF2, 1, 1},
                                                      {0xF6},
                                                      {0xF9},
                                                      {0xFD},
                                                      {0xFE},
                                                      {0xFF},
                                                      {60},
                                                      {60, 60, 60},
                                                      {0x80, 60},
                                                      {0xB0, 255, 0}};
    for (const auto& bytes : others) {
        EXPECT_FALSE(hear(bytes)) << testing::PrintToString(bytes);
    }
}

}  // namespace
}  // namespace control
