#include "tools/control/bridge/heard_text.h"

#include "tools/base/texts.h"

namespace control {

namespace {

std::string what(const Heard& heard) {
    const std::string number = std::to_string(heard.number);
    switch (heard.kind) {
        case HeardKind::NOTE:
            return "note " + number + (heard.value == 0.0 ? " let go" : "");
        case HeardKind::KNOB:
            return "knob " + number;
        case HeardKind::BEND:
            return "pitch wheel";
        case HeardKind::PROGRAM:
            return "program " + number;
        case HeardKind::CLOCK:
            return "clock";
        case HeardKind::START:
            return "clock starts";
        case HeardKind::CONTINUE:
            return "clock goes on";
        case HeardKind::STOP:
            return "clock stops";
        case HeardKind::OSC:
            return heard.address;
        case HeardKind::GONE:
            return "unplugged";
        case HeardKind::SKIPPED:
            return "more came in than could be heard";
    }
    return "";
}

}  // namespace

std::string textOf(const Heard& heard) {
    std::string text = maker::readable(heard.device);
    text.append(": ").append(what(heard));
    if (heard.value && heard.kind != HeardKind::NOTE) {
        text.append(" ").append(maker::decimals(*heard.value, 2));
    }
    if (!heard.text.empty()) {
        text.append(" ").append(maker::inQuotes(heard.text));
    }
    if (heard.channel != 0) {
        text.append(", channel ").append(std::to_string(heard.channel));
    }
    return text;
}

}  // namespace control
