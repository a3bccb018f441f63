// learn: asks for each action, shows what comes in, and writes the map.

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>
#include <vector>

#include "files/userfile.h"
#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/control/bridge/heard_text.h"
#include "tools/control/bridge/learning.h"
#include "tools/control/bridge/map_keeper.h"
#include "tools/control/commands.h"
#include "tools/control/ears/midi.h"
#include "tools/control/ears/osc.h"
#include "tools/control/map/map_edit.h"

namespace control {

namespace {

class Learner {
public:
    Learner(const std::string& file, const ControlMap& map)
        : file_(file),
          midi_([map](std::string_view device) { return listensTo(map, device); }),
          osc_(map.listen, map.port) {}

    // False when the user wants to end.
    bool learn(const std::string& name);

private:
    enum class Typed { NOTHING, SKIP, END };

    Typed waitAndRead();
    void write(const Binding& binding) const;

    std::string file_;
    MidiEar midi_;
    OscEar osc_;
    std::vector<Heard> heard_;
};

// What was typed, and in `heard_` what came in.
Learner::Typed Learner::waitAndRead() {
    std::array<pollfd, 3> files = {
        {{STDIN_FILENO, POLLIN, 0}, {midi_.fd(), POLLIN, 0}, {osc_.fd(), POLLIN, 0}}};
    poll(files.data(), files.size(), -1);
    maker::stopIfInterrupted();
    heard_.clear();
    midi_.take(heard_);
    osc_.take(Clock::now(), heard_);
    if (files[0].revents == 0) {
        return Typed::NOTHING;
    }
    std::array<char, 256> line{};
    const ssize_t got = read(STDIN_FILENO, line.data(), line.size());
    return got <= 0 || line[0] == 'q' ? Typed::END : Typed::SKIP;
}

void Learner::write(const Binding& binding) const {
    const std::optional<std::string> text = readRegular(file_, kLargestMap);
    if (!text || !readMap(*text).faults.empty()) {
        throw maker::ToolError("cannot read " + file_ + " without faults; `doctor` names them");
    }
    const std::string changed = withBinding(*text, binding);
    maker::writeWholeFile(file_,
                          {reinterpret_cast<const uint8_t*>(changed.data()), changed.size()});
}

bool Learner::learn(const std::string& name) {
    const std::optional<Action> action = actionNamed(name);
    if (!action) {
        throw maker::ToolError(whyNoAction(name));
    }
    std::printf("%s: play it; Return leaves it as it is, q ends\n", name.c_str());
    std::fflush(stdout);
    Learning learning(*action);
    while (true) {
        const Typed typed = waitAndRead();
        for (const Heard& heard : heard_) {
            const std::optional<Binding> binding = learning.hear(heard);
            if (binding) {
                write(*binding);
                std::printf("    %s\n", textOf(heard).c_str());
                return true;
            }
        }
        if (typed != Typed::NOTHING) {
            return typed == Typed::SKIP;
        }
    }
}

void learnAll(const Places& places, const std::vector<std::string>& asked) {
    const std::string file = places.mapFile();
    MapKeeper keeper(file);
    keeper.makeWhenMissing();
    const ControlMap map = keeper.changed().value_or(ControlMap{});
    for (const std::string& fault : keeper.faults()) {
        throw maker::ToolError(fault);
    }
    Learner learner(file, map);
    for (const std::string& name : asked.empty() ? usualActions() : asked) {
        if (!learner.learn(name)) {
            break;
        }
    }
    std::printf("%s is as it should be now\n", file.c_str());
}

}  // namespace

void addLearn(CLI::App& app, Places& places, int&) {
    CLI::App* command =
        app.add_subcommand("learn", "Asks for a pad or knob for each action, and writes the map");
    const auto names = std::make_shared<std::vector<std::string>>();
    command->add_option("ACTION", *names, "These; without any, those that are played most");
    command->callback([&places, names] { learnAll(places, *names); });
}

}  // namespace control
