#include "tools/control/map/control_map.h"

#include <algorithm>

namespace control {

namespace {

bool sameLetter(char a, char b) {
    const auto small = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return small(a) == small(b);
}

bool isPart(std::string_view part, std::string_view name) {
    return part.empty() || std::search(name.begin(), name.end(), part.begin(), part.end(),
                                       sameLetter) != name.end();
}

bool hasNumber(HeardKind kind) {
    return kind == HeardKind::NOTE || kind == HeardKind::KNOB || kind == HeardKind::PROGRAM;
}

bool matches(const Binding& binding, const Heard& heard) {
    if (binding.kind != heard.kind || !isPart(binding.device, heard.device)) {
        return false;
    }
    if (heard.kind == HeardKind::OSC) {
        return binding.address == heard.address;
    }
    return (!binding.channel || *binding.channel == heard.channel) &&
           (!hasNumber(heard.kind) || binding.number == heard.number);
}

}  // namespace

bool listensTo(const ControlMap& map, std::string_view device) {
    const auto named = [&](const std::string& part) { return isPart(part, device); };
    return (map.onlyDevices.empty() || std::ranges::any_of(map.onlyDevices, named)) &&
           std::ranges::none_of(map.ignoredDevices, named);
}

std::vector<const Binding*> bindingsFor(const ControlMap& map, const Heard& heard) {
    std::vector<const Binding*> found;
    for (const Binding& binding : map.bindings) {
        if (matches(binding, heard)) {
            found.push_back(&binding);
        }
    }
    return found;
}

}  // namespace control
