#pragma once
// A mistyped subcommand, answered with the one that may be meant. For the sources that read a
// command line; nobody else sees the library for it.

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "tools/base/nearest.h"
#include "tools/base/texts.h"

namespace maker {

// Throws CLI::ValidationError for a subcommand that `app` does not have.
inline void checkCommand(const CLI::App& app, const std::string& typed) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(command->get_name());
    }
    const std::string nearest = nearestName(typed, names);
    if (nearest != typed) {
        throw CLI::ValidationError(app.get_name(),
                                   "there is no command " + inQuotes(typed) +
                                       (nearest.empty() ? "" : "; did you mean " + nearest + "?"));
    }
}

}  // namespace maker
