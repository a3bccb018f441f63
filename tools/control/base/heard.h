#pragma once
// What came in, whatever it came by: one note, turn of a knob, beat of a clock or OSC message.

#include <cstdint>
#include <optional>
#include <string>

#include "tools/control/base/time.h"

namespace control {

enum class HeardKind : uint8_t {
    NOTE,      // `number`; `value` 0: let go, otherwise its strength
    KNOB,      // a controller, `number`; `value`
    BEND,      // the pitch wheel; `value`, 0.5 in the middle
    PROGRAM,   // `number`
    CLOCK,     // one of 24 in a beat
    START,     // the clock's next beat is the first of a bar
    CONTINUE,  // the clock runs on from where it stopped
    STOP,
    OSC,      // `address`; `value` when the message has a number, `text` when it has one
    GONE,     // a device was unplugged; nothing of it is down any more
    SKIPPED,  // input was lost: whatever was down of this device may be up
};

struct Heard {
    HeardKind kind = HeardKind::NOTE;
    int channel = 0;  // of MIDI: 1 to 16
    int number = 0;   // note, controller, program: 0 to 127
    // 0 to 1 from MIDI. From OSC any finite number, and none when the message has none.
    std::optional<double> value;
    std::string device;   // MIDI: the device's name. OSC: who sent it, "127.0.0.1:9000"
    std::string address;  // of OSC: "/top/next"
    std::string text;     // of OSC: its first text
    Time when{};          // when it came
};

}  // namespace control
