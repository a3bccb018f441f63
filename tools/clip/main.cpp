// velmora-clip: makes and examines clips.

#include <algorithm>
#include <cstdio>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "tools/base/errors.h"
#include "tools/base/known_command.h"
#include "tools/clip/commands.h"

namespace {

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
        if (!arguments.empty() && !arguments[0].starts_with('-')) {
            maker::checkCommand(app, arguments[0]);
        }
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
