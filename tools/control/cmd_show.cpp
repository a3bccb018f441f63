// list, actions, map: what there is.

#include <cstdio>
#include <memory>

#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/control/bridge/map_keeper.h"
#include "tools/control/commands.h"
#include "tools/control/ears/midi.h"
#include "tools/control/map/default_map.h"
#include "tools/control/stage/action.h"

namespace control {

namespace {

int listDevices(const Places& places) {
    const ControlMap map = MapKeeper(places.mapFile()).changed().value_or(ControlMap{});
    const MidiEar midi([&](std::string_view device) { return listensTo(map, device); });
    midi.waitForLook();
    const std::vector<MidiDevice> devices = midi.devices();
    for (const MidiDevice& each : devices) {
        std::printf("%s (%s)%s\n", maker::readable(each.name).c_str(),
                    std::string(each.api).c_str(), each.listened ? "" : ", not listened to");
    }
    if (devices.empty()) {
        std::puts("no MIDI device");
        return kExitFailed;
    }
    return kExitOk;
}

void printMap(const std::string& name) {
    const std::string_view map = mapNamed(name);
    if (map.empty()) {
        throw maker::ToolError("there is no map " + maker::inQuotes(name) +
                               ": pads-4x4, knobs-8, phone-osc");
    }
    std::fwrite(map.data(), 1, map.size(), stdout);
}

}  // namespace

void addList(CLI::App& app, Places& places, int& status) {
    app.add_subcommand("list", "Lists the MIDI devices")->callback([&places, &status] {
        status = listDevices(places);
    });
}

void addActions(CLI::App& app, Places&, int&) {
    app.add_subcommand("actions", "Lists the actions by name")->callback([] {
        for (const std::string& name : actionNames()) {
            std::puts(name.c_str());
        }
    });
}

void addMap(CLI::App& app, Places&, int&) {
    CLI::App* command = app.add_subcommand("map", "Prints a map that comes along");
    const auto name = std::make_shared<std::string>();
    command->add_option("NAME", *name, "pads-4x4, knobs-8 or phone-osc")->required();
    command->callback([name] { printMap(*name); });
}

}  // namespace control
