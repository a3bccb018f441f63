// velmora-control: plays Velmora from MIDI, OSC and the beat.

#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "tools/base/errors.h"
#include "tools/base/nearest.h"
#include "tools/base/texts.h"
#include "tools/control/bridge/map_keeper.h"
#include "tools/control/commands.h"

namespace control {

std::string Places::mapFile() const {
    return map.empty() ? userMapFile().string() : map;
}

namespace {

// Throws for a command that is not there, and names the one that may be meant.
void checkCommand(CLI::App& app, int argc, char** argv) {
    int at = 1;
    while (at < argc && argv[at][0] == '-') {
        at += std::string(argv[at]) == "--map" || std::string(argv[at]) == "--folder" ? 2 : 1;
    }
    if (at >= argc) {
        return;
    }
    const std::string typed = argv[at];
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](CLI::App*) { return true; })) {
        names.push_back(command->get_name());
    }
    const std::string nearest = maker::nearestName(typed, names);
    if (nearest != typed) {
        throw CLI::ValidationError("velmora-control",
                                   "there is no command " + maker::inQuotes(typed) +
                                       (nearest.empty() ? "" : "; did you mean " + nearest + "?"));
    }
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
        checkCommand(app, argc, argv);
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
