#include "tools/control/ears/still_down.h"

namespace control {

namespace {

constexpr double kHalf = 0.5;

}  // namespace

void StillDown::hear(const Heard& heard) {
    const bool note = heard.kind == HeardKind::NOTE;
    if ((!note && heard.kind != HeardKind::KNOB) || heard.channel < 1 ||
        heard.channel > kChannels || heard.number < 0 || heard.number >= kNumbers) {
        return;
    }
    const double value = heard.value.value_or(0);
    const bool down = note ? value > 0 : value >= kHalf;
    auto found = devices_.find(heard.device);
    if (found == devices_.end()) {
        if (!down || devices_.size() == kDevices) {
            return;
        }
        found = devices_.emplace(heard.device, Device{}).first;
    }
    Device& device = found->second;
    const int index = (heard.channel - 1) * kNumbers + heard.number;
    (note ? device.notes : device.knobs).set(static_cast<size_t>(index), down);
    if (device.nothing()) {
        devices_.erase(found);
    }
}

std::vector<Heard> StillDown::releasesFor(std::string_view device, Time when) {
    std::vector<Heard> releases;
    const auto found = devices_.find(device);
    if (found == devices_.end()) {
        return releases;
    }
    const auto letGo = [&](HeardKind kind, const Buttons& down) {
        for (int index = 0; index < kChannels * kNumbers; ++index) {
            if (!down[static_cast<size_t>(index)]) {
                continue;
            }
            Heard heard;
            heard.kind = kind;
            heard.channel = index / kNumbers + 1;
            heard.number = index % kNumbers;
            heard.value = 0;
            heard.device = device;
            heard.when = when;
            releases.push_back(heard);
        }
    };
    letGo(HeardKind::NOTE, found->second.notes);
    letGo(HeardKind::KNOB, found->second.knobs);
    devices_.erase(found);
    return releases;
}

}  // namespace control
