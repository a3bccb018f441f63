// Any bytes as MIDI messages: what is heard stays in its ranges, and what is down can be let go.
//
// Input: for each message a byte that says how long it is and which device it is of, then its
// bytes.
#include <memory>
#include <string>

#include "fuzz/input.h"
#include "tools/control/ears/midi_bytes.h"
#include "tools/control/ears/still_down.h"

namespace {

using fuzz::require;

constexpr int kLongest = 5;
constexpr int kDevices = 40;  // more than are remembered

void checkRanges(const control::Heard& heard) {
    require(heard.channel >= 0 && heard.channel <= 16, "channels are 1 to 16, or none");
    require(heard.number >= 0 && heard.number <= 127, "numbers are 0 to 127");
    require(!heard.value || (*heard.value >= 0 && *heard.value <= 1), "values are 0 to 1");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fuzz::Input input(data, size);
    control::StillDown down;
    while (!input.empty()) {
        const uint8_t head = input.byte();
        const auto length = static_cast<size_t>(head % (kLongest + 1));
        const auto message = std::make_unique<uint8_t[]>(length);
        input.peek(message.get(), length);
        input.skip(length);
        auto heard = control::heardOfMidi({message.get(), length});
        if (heard) {
            heard->device = std::to_string(head % kDevices);
            checkRanges(*heard);
            down.hear(*heard);
        }
    }
    for (int device = 0; device < kDevices; ++device) {
        const std::string name = std::to_string(device);
        for (const control::Heard& release : down.releasesFor(name)) {
            checkRanges(release);
            require(release.value == 0.0 && release.device == name, "a release lets go");
        }
        require(down.releasesFor(name).empty(), "a release is given once");
    }
    return 0;
}
