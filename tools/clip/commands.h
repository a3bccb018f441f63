#pragma once
// The subcommands of velmora-clip. Each adds itself to the command line; when it is the one that
// was asked for, its work runs while the line is parsed and leaves the exit status in `status`.
// What goes wrong is thrown (errors.h).

#include <CLI/CLI.hpp>

namespace maker {

inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitInterrupted = 130;

using AddCommand = void(CLI::App& app, int& status);

AddCommand addEncode, addImport, addInfo, addVerify, addCheck, addSheet, addExport, addDiff,
    addDemo;

// In the order of the help.
inline constexpr AddCommand* kCommands[] = {addEncode, addImport, addInfo, addVerify, addCheck,
                                            addSheet,  addExport, addDiff, addDemo};

}  // namespace maker
