#pragma once
// The map: which pad, knob or OSC address does what, and what happens on the beat. Read from
// ~/.config/velmora/control.toml (map_file.h). Plain values: it knows no file and no device.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/control/base/heard.h"
#include "tools/control/stage/action.h"

namespace control {

// When an action is played that was asked for between two beats.
enum class Quantum : uint8_t { NOW, BEAT, BAR };

// One [[on]]: what must come in, and what it does.
struct Binding {
    HeardKind kind = HeardKind::NOTE;  // NOTE, KNOB, BEND, PROGRAM or OSC
    std::optional<int> channel{};      // 1 to 16; any when none is said
    int number = 0;                    // 0 to 127, of NOTE, KNOB and PROGRAM
    std::string device{};              // a part of its name, capitals or not; any when empty
    std::string address{};             // of OSC, begins with "/"
    Action action{};
    Quantum at = Quantum::NOW;
    int line = 0;  // of the map, for messages

    bool operator==(const Binding&) const = default;
};

// One [[every]]: what happens on each `beats`-th beat.
struct Rule {
    int beats = 4;   // 1 to 256
    int offset = 0;  // beats after the first one of a turn: 0 to beats - 1
    // One of them each time, drawn by lot when there are several.
    std::vector<Action> actions{};
    double chance = 1;  // that it happens at all: above 0, up to 1
    int line = 0;

    bool operator==(const Rule&) const = default;
};

inline constexpr int kOscPort = 7770;
inline constexpr int kBeatsOfBar = 4;

struct ControlMap {
    // [osc]; `--listen` and `--port` of the command line come before these.
    bool osc = true;
    std::string listen = "127.0.0.1";  // a numeric address of this machine
    int port = kOscPort;
    // [midi]: parts of names, capitals or not. Devices that are not listened to; a name in
    // `onlyDevices` leaves all others out.
    std::vector<std::string> ignoredDevices{};
    std::vector<std::string> onlyDevices{};
    // [beat]
    std::optional<double> tempo{};  // beats a minute, from the start
    bool clock = true;              // MIDI clock is followed
    int bar = kBeatsOfBar;          // beats, 1 to 16
    std::vector<Binding> bindings{};
    std::vector<Rule> rules{};

    bool operator==(const ControlMap&) const = default;
};

// True when the map has this device listened to.
bool listensTo(const ControlMap& map, std::string_view device);

// The bindings that what came in has, in the order of the map: pointers into it.
std::vector<const Binding*> bindingsFor(const ControlMap& map, const Heard& heard);

}  // namespace control
