#pragma once
// Which of the ports that ALSA and JACK list are devices to listen to, and what they are called.
// Pure.

#include <string>
#include <string_view>
#include <vector>

namespace control {

inline constexpr std::string_view kAlsa = "ALSA";
inline constexpr std::string_view kJack = "JACK";

struct MidiSource {
    std::string_view api;  // kAlsa or kJack
    std::string port;      // as the API calls it
    std::string name;      // the same each time the device is plugged in
};

// Our own ports and what merely passes on are left out. JACK shows the machine's devices too: those
// are left out there when ALSA has any.
std::vector<MidiSource> midiSources(const std::vector<std::string>& alsaPorts,
                                    const std::vector<std::string>& jackPorts);

}  // namespace control
