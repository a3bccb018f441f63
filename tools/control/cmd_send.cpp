// send: one action, by the bridge that runs.

#include <poll.h>

#include <memory>
#include <vector>

#include "tools/base/errors.h"
#include "tools/control/bridge/map_keeper.h"
#include "tools/control/commands.h"
#include "tools/control/ears/osc.h"
#include "tools/control/stage/action.h"

namespace control {

namespace {

struct Sending {
    std::vector<std::string> words;
    std::optional<double> value;
    std::optional<std::string> to;  // "ADDRESS:PORT"
};

// True when the bridge has done it. Throws when it says why not.
bool wasDone(OscEar& ear, int milliseconds) {
    pollfd file = {ear.fd(), POLLIN, 0};
    std::vector<Heard> answers;
    if (poll(&file, 1, milliseconds) > 0) {
        ear.take(Clock::now(), answers);
    }
    for (const Heard& answer : answers) {
        if (answer.address == "/refused") {
            throw maker::ToolError(answer.text);
        }
        if (answer.address == "/done") {
            return true;
        }
    }
    return false;
}

void send(const Sending& sending, const Places& places) {
    std::string name;
    for (const std::string& word : sending.words) {
        name.append(name.empty() ? "" : " ").append(word);
    }
    if (!actionNamed(name)) {
        throw maker::ToolError(whyNoAction(name));
    }
    const ControlMap map = MapKeeper(places.mapFile()).changed().value_or(ControlMap{});
    const std::string to = sending.to.value_or("127.0.0.1:" + std::to_string(map.port));
    const bool six = to.starts_with('[');
    OscEar ear(six ? "::" : "0.0.0.0", 0);
    constexpr int kPatience = 1000;  // milliseconds
    if (!ear.answer(to, "/do", sending.value, name) || !wasDone(ear, kPatience)) {
        throw maker::ToolError("no bridge answers at " + to + "; start `velmora-control run`");
    }
}

}  // namespace

void addSend(CLI::App& app, Places& places, int&) {
    CLI::App* command = app.add_subcommand("send", "Has the bridge that runs play one action");
    const auto sending = std::make_shared<Sending>();
    command->add_option("ACTION", sending->words, "As `actions` lists them: top.next, playlist 3")
        ->required();
    command
        ->add_option("--value", sending->value,
                     "How far a knob is turned, 0 to 1; of what is held 1 holds and 0 lets go")
        ->option_text("VALUE");
    command->add_option("--to", sending->to, "Where the bridge listens; 127.0.0.1:7770 without it")
        ->option_text("ADDRESS:PORT");
    command->callback([&places, sending] { send(*sending, places); });
}

}  // namespace control
