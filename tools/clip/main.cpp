// velmora-clip: makes and examines clips.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "tools/clip/base/errors.h"
#include "tools/clip/base/texts.h"
#include "tools/clip/commands.h"

namespace {

// How many characters have to be put in, left out or changed.
size_t editsBetween(const std::string& a, const std::string& b) {
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < a.size(); ++i) {
        size_t before = std::exchange(row[0], i + 1);
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t changed = before + (a[i] == b[j] ? 0 : 1);
            before = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, before + 1});
        }
    }
    return row.back();
}

// Throws for a command that is not there, and names the one that may be meant.
void checkCommand(CLI::App& app, const std::vector<std::string>& arguments) {
    constexpr size_t kMostEdits = 2;
    if (arguments.empty() || arguments[0].starts_with('-')) {
        return;
    }
    std::string nearest;
    size_t edits = kMostEdits + 1;
    for (const CLI::App* command : app.get_subcommands([](CLI::App*) { return true; })) {
        const size_t now = editsBetween(arguments[0], command->get_name());
        nearest = now < edits ? command->get_name() : nearest;
        edits = std::min(edits, now);
    }
    if (edits > 0) {
        throw CLI::ValidationError("velmora-clip",
                                   "there is no command " + maker::inQuotes(arguments[0]) +
                                       (nearest.empty() ? "" : "; did you mean " + nearest + "?"));
    }
}

int run(int argc, char** argv) {
    int status = maker::kExitOk;
    CLI::App app("Makes and examines clips for Velmora.", "velmora-clip");
    app.require_subcommand(1);
    app.set_version_flag("--version", "velmora-clip " VELMORA_VERSION);
    for (maker::AddCommand* const add : maker::kCommands) {
        add(app, status);
    }
    try {
        std::vector<std::string> arguments = maker::argumentsOf(argc, argv);
        checkCommand(app, arguments);
        std::reverse(arguments.begin(), arguments.end());
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? maker::kExitOk : maker::kExitUsage;
    }
    return status;
}

// What was printed counts as done only once it is there.
int flushed(int status) {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) {
        return status;
    }
    maker::stopIfInterrupted();  // nobody reads on
    throw maker::ToolError("cannot write all of the output");
}

}  // namespace

int main(int argc, char** argv) {
    maker::catchInterrupts();
    try {
        return flushed(run(argc, argv));
    } catch (const maker::Interrupted&) {
        return maker::kExitInterrupted;
    } catch (const std::exception& error) {
        std::fflush(stdout);
        std::fprintf(stderr, "velmora-clip: %s\n", maker::lineOf(error));
        return maker::kExitFailed;
    }
}
