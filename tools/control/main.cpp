// velmora-control: plays Velmora from MIDI, OSC and the beat.

#include <cstdio>
#include <exception>
#include <string>

#include "tools/base/errors.h"
#include "tools/base/known_command.h"
#include "tools/control/bridge/map_keeper.h"
#include "tools/control/commands.h"

namespace control {

std::string Places::mapFile() const {
    return map.empty() ? userMapFile().string() : map;
}

namespace {

// The first word that is neither an option nor the value of one; empty when there is none.
std::string commandIn(int argc, char** argv) {
    int at = 1;
    while (at < argc && argv[at][0] == '-') {
        const std::string option = argv[at];
        at += option == "--map" || option == "--folder" ? 2 : 1;
    }
    return at < argc ? argv[at] : "";
}

int run(int argc, char** argv) {
    int status = kExitOk;
    Places places;
    CLI::App app("Plays Velmora from MIDI, OSC and the beat.", "velmora-control");
    app.require_subcommand(1);
    app.fallthrough();
    app.set_version_flag("--version", "velmora-control " VELMORA_VERSION);
    app.add_option("--map", places.map, "The map; ~/.config/velmora/control.toml without it")
        ->option_text("FILE");
    app.add_option("--folder", places.folder, "Velmora's folder; ~/Velmora without it")
        ->option_text("FOLDER");
    for (AddCommand* const add : kCommands) {
        add(app, places, status);
    }
    try {
        const std::string command = commandIn(argc, argv);
        if (!command.empty()) {
            maker::checkCommand(app, command);
        }
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kExitOk : kExitUsage;
    }
    return status;
}

}  // namespace

}  // namespace control

int main(int argc, char** argv) {
    try {
        maker::catchInterrupts();
        return control::run(argc, argv);
    } catch (const maker::Interrupted&) {
        return control::kExitInterrupted;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora-control: %s\n", maker::lineOf(error));
        return control::kExitFailed;
    }
}
