#pragma once
// The subcommands of velmora-control. Each adds itself to the command line; the one that was asked
// for runs while the line is parsed. What goes wrong is thrown (tools/base/errors.h).

#include <CLI/CLI.hpp>
#include <string>

namespace control {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitInterrupted = 130;

// What all commands may be told.
struct Places {
    std::string map;     // the map's file; empty: the user's
    std::string folder;  // Velmora's; empty: where it usually is

    std::string mapFile() const;
};

using AddCommand = void(CLI::App& app, Places& places, int& status);

AddCommand addRun, addMonitor, addLearn, addList, addSend, addDoctor, addActions, addMap;

// In the order of the help.
inline constexpr AddCommand* kCommands[] = {addRun,  addMonitor, addLearn,   addList,
                                            addSend, addDoctor,  addActions, addMap};

}  // namespace control
