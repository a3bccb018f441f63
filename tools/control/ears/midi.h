#pragma once
// Hears every MIDI device that is wanted, through ALSA and JACK, also those plugged in later, and
// what other programs send to its own port "Velmora". A thread of its own looks for devices once a
// second, so nothing here waits. Without any MIDI on the machine it is silent.
//
// A device that is unplugged, or no longer wanted, gives GONE; two of the same make share a name.

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "tools/control/base/heard.h"

namespace control {

struct MidiDevice {
    std::string name;
    std::string_view api;  // "ALSA", "JACK"
    bool listened = false;

    bool operator==(const MidiDevice&) const = default;
};

class MidiEar {
public:
    // `wanted` is asked on the other thread, so it must be safe there.
    explicit MidiEar(std::function<bool(std::string_view device)> wanted);
    ~MidiEar();
    MidiEar(const MidiEar&) = delete;
    MidiEar& operator=(const MidiEar&) = delete;

    int fd() const;  // readable when there is something to take
    void take(std::vector<Heard>& into);
    // As of the last look; not our own ports.
    std::vector<MidiDevice> devices() const;
    size_t dropped() const;  // messages, since too many waited
    // Which devices are wanted is asked anew, soon.
    void wantAgain();
    // Waits until devices() is known, for commands that only list them.
    void waitForLook() const;

private:
    class Watch;
    std::unique_ptr<Watch> watch_;
};

}  // namespace control
