// run, monitor: the bridge at work.

#include <memory>

#include "tools/base/velmora_folder.h"
#include "tools/control/bridge/session.h"
#include "tools/control/commands.h"
#include "tools/control/stage/action.h"

namespace control {

namespace {

void addBridge(CLI::App& app, Places& places, const char* name, const char* help, bool monitor) {
    CLI::App* command = app.add_subcommand(name, help);
    const auto setup = std::make_shared<SessionSetup>();
    setup->monitor = monitor;
    command
        ->add_option("--listen", setup->listen,
                     "Address of this machine that OSC comes in by; 127.0.0.1 is heard by nobody "
                     "else, 0.0.0.0 by all")
        ->option_text("ADDRESS");
    command->add_option("--port", setup->port, "UDP port of OSC")
        ->option_text("PORT")
        ->check(CLI::Range(1, 65535));
    command->add_option("--bpm", setup->tempo, "Beats a minute, from the start")
        ->option_text("TEMPO")
        ->check(CLI::Range(kSlowestTempo, kFastestTempo));
    command->callback([&places, setup] {
        setup->map = places.mapFile();
        setup->folder = maker::velmoraFolderToBe(places.folder, "--folder");
        runSession(*setup);
    });
}

}  // namespace

void addRun(CLI::App& app, Places& places, int&) {
    addBridge(app, places, "run", "Plays Velmora, until stopped", false);
}

void addMonitor(CLI::App& app, Places& places, int&) {
    addBridge(app, places, "monitor", "The same, and shows what comes in and what it does", true);
}

}  // namespace control
