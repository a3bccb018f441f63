#include "tools/control/ears/midi_bytes.h"

#include <algorithm>

namespace control {

namespace {

constexpr int kHighest = 127;
constexpr int kBendMiddle = 8192;
constexpr int kBendHighest = 16383;

// Both halves of the wheel reach their end, though the upper one is a step shorter.
double bendValue(int bend) {
    return bend <= kBendMiddle ? 0.5 * bend / kBendMiddle
                               : 0.5 + 0.5 * (bend - kBendMiddle) / (kBendHighest - kBendMiddle);
}

std::optional<Heard> heardOfByte(uint8_t byte) {
    Heard heard;
    switch (byte) {
        case 0xF8:
            heard.kind = HeardKind::CLOCK;
            return heard;
        case 0xFA:
            heard.kind = HeardKind::START;
            return heard;
        case 0xFB:
            heard.kind = HeardKind::CONTINUE;
            return heard;
        case 0xFC:
            heard.kind = HeardKind::STOP;
            return heard;
        default:
            return std::nullopt;
    }
}

std::optional<Heard> heardOfThree(int status, Heard heard, int second) {
    heard.value = static_cast<double>(second) / kHighest;
    switch (status) {
        case 0x80:
            heard.kind = HeardKind::NOTE;
            heard.value = 0;
            return heard;
        case 0x90:
            heard.kind = HeardKind::NOTE;
            return heard;
        case 0xB0:
            heard.kind = HeardKind::KNOB;
            return heard;
        case 0xE0:
            heard.kind = HeardKind::BEND;
            heard.value = bendValue(second << 7 | heard.number);
            heard.number = 0;
            return heard;
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<Heard> heardOfMidi(std::span<const uint8_t> message) {
    if (message.size() == 1) {
        return heardOfByte(message[0]);
    }
    if (message.size() < 2 || message.size() > 3 ||
        std::any_of(message.begin() + 1, message.end(), [](int data) { return data > kHighest; })) {
        return std::nullopt;
    }
    const int status = message[0] & 0xF0;
    Heard heard;
    heard.channel = (message[0] & 0x0F) + 1;
    heard.number = message[1];
    if (message.size() == 3) {
        return heardOfThree(status, heard, message[2]);
    }
    heard.kind = HeardKind::PROGRAM;
    return status == 0xC0 ? std::optional(heard) : std::nullopt;
}

}  // namespace control
