#pragma once
// The bridge at work: hears MIDI and OSC, plays Velmora, reads the map again when it changes, until
// the user stops it.

#include <filesystem>
#include <optional>
#include <string>

namespace control {

struct SessionSetup {
    std::filesystem::path map;     // the map's file
    std::filesystem::path folder;  // Velmora's
    // In place of what the map says.
    std::optional<std::string> listen;
    std::optional<int> port;
    std::optional<double> tempo;
    bool monitor = false;  // a line for all that comes in and what it does
};

// Returns when the user stops it. Throws ToolError: at the start, when there is no way to Velmora
// or the OSC port is taken; later, when the X server has ended.
void runSession(const SessionSetup& setup);

}  // namespace control
