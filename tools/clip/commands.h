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

void addEncode(CLI::App& app, int& status);
void addImport(CLI::App& app, int& status);
void addInfo(CLI::App& app, int& status);
void addVerify(CLI::App& app, int& status);
void addCheck(CLI::App& app, int& status);
void addSheet(CLI::App& app, int& status);
void addExport(CLI::App& app, int& status);
void addDiff(CLI::App& app, int& status);
void addDemo(CLI::App& app, int& status);

}  // namespace maker
