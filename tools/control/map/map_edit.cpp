#include "tools/control/map/map_edit.h"

#include <algorithm>
#include <cstdio>

#include "tools/control/map/map_file.h"

namespace control {

namespace {

// As TOML writes it.
std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            result.append("\\").append(1, c);
        } else if (byte < 0x20 || byte == 0x7f) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04X", byte);
            result.append(escape);
        } else {
            result.append(1, c);
        }
    }
    return result.append("\"");
}

std::string inputOf(const Binding& binding) {
    switch (binding.kind) {
        case HeardKind::KNOB:
            return "knob = " + std::to_string(binding.number);
        case HeardKind::PROGRAM:
            return "program = " + std::to_string(binding.number);
        case HeardKind::BEND:
            return "bend = true";
        case HeardKind::OSC:
            return "osc = " + quoted(binding.address);
        default:
            return "note = " + std::to_string(binding.number);
    }
}

std::string print(const Binding& binding, bool withDevice) {
    std::string text = "[[on]]\n" + inputOf(binding) + "\n";
    if (binding.channel) {
        text += "channel = " + std::to_string(*binding.channel) + "\n";
    }
    if (withDevice) {
        text += "device = " + quoted(binding.device) + "\n";
    }
    text += "do = " + quoted(nameOf(binding.action)) + "\n";
    if (binding.at != Quantum::NOW) {
        text +=
            std::string("at = ") + (binding.at == Quantum::BEAT ? "\"beat\"" : "\"bar\"") + "\n";
    }
    return text;
}

// Where a line begins, the first being 1; the end of the text when it has fewer.
size_t startOfLine(std::string_view text, int line) {
    size_t at = 0;
    for (int i = 1; i < line && at < text.size(); ++i) {
        const size_t end = text.find('\n', at);
        at = end == std::string_view::npos ? text.size() : end + 1;
    }
    return at;
}

bool hasCarriageReturns(std::string_view text) {
    const size_t end = text.find('\n');
    return end != std::string_view::npos && end > 0 && text[end - 1] == '\r';
}

std::string withLineEnds(const std::string& text, std::string_view lineEnd) {
    std::string result;
    for (const char c : text) {
        c == '\n' ? result.append(lineEnd) : result.append(1, c);
    }
    return result;
}

}  // namespace

std::string printBinding(const Binding& binding) {
    // A name that no text of TOML can hold (it is not UTF-8) is left out.
    const std::string text = print(binding, !binding.device.empty());
    return readMap(text).faults.empty() ? text : print(binding, false);
}

std::string withBinding(std::string_view text, const Binding& binding) {
    const MapReading reading = readMap(text);
    const std::vector<Binding>& bindings = reading.map.bindings;
    const std::string lineEnd = hasCarriageReturns(text) ? "\r\n" : "\n";
    std::string block = withLineEnds(printBinding(binding), lineEnd);
    const auto old = std::ranges::find(bindings, binding.action, &Binding::action);
    const bool replaces = old != bindings.end();
    const auto lineAfter = [&](size_t index) {
        return startOfLine(text, reading.lastLines[index] + 1);
    };
    const size_t to = replaces           ? lineAfter(static_cast<size_t>(old - bindings.begin()))
                      : bindings.empty() ? text.size()
                                         : lineAfter(bindings.size() - 1);
    const size_t from = replaces ? startOfLine(text, old->line) : to;
    if (!replaces && from > 0) {
        block.insert(0, lineEnd);
    }
    std::string result(text.substr(0, from));
    if (from > 0 && result.back() != '\n') {
        result += lineEnd;
    }
    return result.append(block).append(text.substr(to));
}

}  // namespace control
