#pragma once
// Which notes and buttons of which device are down, so that they are let go when the device is
// unplugged or input of it was lost. Pure, and bounded: 32 devices; of more nothing is remembered.
// Senders of OSC are not watched, since nothing tells that one is gone.

#include <array>
#include <bitset>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tools/control/base/heard.h"

namespace control {

class StillDown {
public:
    void hear(const Heard& heard);

    // What lets go of everything of this device that is down, notes first: each note, and each
    // controller in its upper half, with the value 0. It counts as let go then.
    std::vector<Heard> releasesFor(std::string_view device, Time when = {});

private:
    static constexpr size_t kDevices = 32;
    static constexpr int kChannels = 16;
    static constexpr int kNumbers = 128;
    using Buttons = std::bitset<size_t{kChannels} * kNumbers>;
    struct Device {
        Buttons notes, knobs;
        bool nothing() const { return notes.none() && knobs.none(); }
    };

    std::map<std::string, Device, std::less<>> devices_;
};

}  // namespace control
