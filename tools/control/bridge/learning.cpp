#include "tools/control/bridge/learning.h"

#include <algorithm>
#include <cmath>

namespace control {

namespace {

constexpr double kFarEnough = 0.25;
constexpr size_t kMostKnobs = 256;

// Some senders of OSC take another port for each message.
bool sameKnob(const Heard& a, const Heard& b) {
    return a.kind == b.kind && a.channel == b.channel && a.number == b.number &&
           a.address == b.address && (a.kind == HeardKind::OSC || a.device == b.device);
}

}  // namespace

// Knobs tremble, and some send all their places when they are plugged in.
bool Learning::moved(const Heard& heard) {
    const auto known =
        std::ranges::find_if(knobs_, [&](const Heard& each) { return sameKnob(each, heard); });
    if (known != knobs_.end()) {
        return std::abs(*heard.value - *known->value) >= kFarEnough;
    }
    if (knobs_.size() < kMostKnobs) {
        knobs_.push_back(heard);
    }
    return false;
}

std::optional<Binding> Learning::hear(const Heard& heard) {
    const bool scrubs = takesValue(action_.kind);
    bool clear = false;
    switch (heard.kind) {
        case HeardKind::NOTE:
            clear = heard.value != 0.0 && !scrubs;
            break;
        case HeardKind::KNOB:
        case HeardKind::BEND:
            clear = moved(heard);
            break;
        case HeardKind::PROGRAM:
            clear = !scrubs && !isHeld(action_.kind);
            break;
        case HeardKind::OSC:
            clear = scrubs ? heard.value && moved(heard) : heard.value != 0.0;
            break;
        default:
            break;
    }
    if (!clear) {
        return std::nullopt;
    }
    Binding binding;
    binding.kind = heard.kind;
    binding.action = action_;
    if (heard.kind == HeardKind::OSC) {
        binding.address = heard.address;
    } else {
        binding.channel = heard.channel;
        binding.number = heard.kind == HeardKind::BEND ? 0 : heard.number;
        binding.device = heard.device;
    }
    return binding;
}

const std::vector<std::string>& usualActions() {
    static const std::vector<std::string> kUsual = {
        "top.next",     "top.previous", "bottom.next",    "bottom.previous",
        "mode.none",    "mode.blend",   "mode.add",       "mode.multiply",
        "mode.alpha",   "mode.half",    "flash",          "fade",
        "hold",         "top.reverse",  "bottom.reverse", "top.scrub",
        "bottom.scrub", "tap",          "panel"};
    return kUsual;
}

}  // namespace control
