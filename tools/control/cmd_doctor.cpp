// doctor: what is missing, and how to mend it.

#include <cstdio>
#include <vector>

#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/base/velmora_folder.h"
#include "tools/control/bridge/map_keeper.h"
#include "tools/control/commands.h"
#include "tools/control/ears/midi.h"
#include "tools/control/ears/osc.h"
#include "tools/control/hands/roads.h"

namespace control {

namespace {

using Findings = std::vector<Finding>;

ControlMap examineMap(const Places& places, Findings& findings) {
    const std::string file = places.mapFile();
    MapKeeper keeper(file);
    const std::optional<ControlMap> map = keeper.changed();
    if (!keeper.faults().empty()) {
        for (const std::string& fault : keeper.faults()) {
            findings.push_back({false, fault, "what is right of it is in use"});
        }
    } else if (!map) {
        findings.push_back({true, "no map yet: `velmora-control run` writes " + file, ""});
    } else if (map->bindings.empty() && map->rules.empty()) {
        findings.push_back({true, file + " binds nothing yet; OSC's own names work", ""});
    } else {
        findings.push_back({true,
                            file + ": " + maker::counted(map->bindings.size(), "binding") + ", " +
                                maker::counted(map->rules.size(), "rule"),
                            ""});
    }
    return map.value_or(ControlMap{});
}

void examineMidi(const ControlMap& map, Findings& findings) {
    const MidiEar midi([&](std::string_view device) { return listensTo(map, device); });
    midi.waitForLook();
    for (const MidiDevice& each : midi.devices()) {
        const std::string name = "MIDI: " + maker::readable(each.name);
        findings.push_back(each.listened ? Finding{true, name, ""}
                                         : Finding{true, name + ", which the map leaves out", ""});
    }
    if (midi.devices().empty()) {
        findings.push_back({false, "no MIDI device", "plug one in; OSC and the beat work without"});
    }
}

void examineOsc(const ControlMap& map, Findings& findings) {
    std::string what = "OSC: " + map.listen + ", port " + std::to_string(map.port);
    try {
        const OscEar ear(map.listen, map.port);
        what.append(", is free; no bridge runs");
    } catch (const maker::ToolError&) {
        what.append(", is taken: a bridge runs, or another program has it");
    }
    findings.push_back({true, what, ""});
}

void examineFolder(const Places& places, Findings& findings) {
    try {
        findings.push_back({true,
                            "playlists and preferences: " +
                                maker::velmoraFolder(places.folder, "--folder").string(),
                            ""});
    } catch (const maker::ToolError& error) {
        findings.push_back({false, error.what(), ""});
    }
}

int doctor(const Places& places) {
    Findings findings = examineRoad();
    const ControlMap map = examineMap(places, findings);
    examineMidi(map, findings);
    examineOsc(map, findings);
    examineFolder(places, findings);
    int status = kExitOk;
    for (const Finding& each : findings) {
        std::printf("%s %s%s\n", each.fine ? "ok     " : "MISSING", each.what.c_str(),
                    each.mend.empty() ? "" : (": " + each.mend).c_str());
        status = each.fine ? status : kExitFailed;
    }
    return status;
}

}  // namespace

void addDoctor(CLI::App& app, Places& places, int& status) {
    app.add_subcommand("doctor", "Says what is missing, and how to mend it")
        ->callback([&places, &status] { status = doctor(places); });
}

}  // namespace control
