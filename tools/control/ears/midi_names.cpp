#include "tools/control/ears/midi_names.h"

#include <algorithm>

namespace control {

namespace {

// How JACK's bridges to ALSA call their ports.
constexpr std::string_view kBridges[] = {"system:midi_capture", "a2j:", "Midi-Bridge:"};

bool isOwn(std::string_view port) {
    return port.starts_with("Velmora") || port.find("Midi Through") != std::string_view::npos;
}

bool isBridged(std::string_view port) {
    return std::any_of(std::begin(kBridges), std::end(kBridges),
                       [&](std::string_view bridge) { return port.starts_with(bridge); });
}

// ALSA's ports end in their numbers, " 20:0", which are others each time.
std::string withoutNumbers(const std::string& port) {
    const size_t blank = port.rfind(' ');
    const bool numbers = blank != std::string::npos && blank + 1 < port.size() &&
                         port.find(':', blank) != std::string::npos &&
                         port.find_first_not_of("0123456789:", blank + 1) == std::string::npos;
    return numbers ? port.substr(0, blank) : port;
}

}  // namespace

std::vector<MidiSource> midiSources(const std::vector<std::string>& alsaPorts,
                                    const std::vector<std::string>& jackPorts) {
    std::vector<MidiSource> sources;
    for (const std::string& port : alsaPorts) {
        if (!isOwn(port)) {
            sources.push_back({kAlsa, port, withoutNumbers(port)});
        }
    }
    const bool alsaHasDevices = !sources.empty();
    for (const std::string& port : jackPorts) {
        if (!isOwn(port) && !(alsaHasDevices && isBridged(port))) {
            sources.push_back({kJack, port, port});
        }
    }
    return sources;
}

}  // namespace control
