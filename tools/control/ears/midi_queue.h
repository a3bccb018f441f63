#pragma once
// What carries MIDI messages from the threads they come in on to the one that plays them. Bounded:
// what comes when it is full is dropped and counted, and its device says SKIPPED once.

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <vector>

#include "tools/control/base/heard.h"

namespace control {

// One opened port. Shared, since messages of it may wait here when it is closed.
struct MidiInput {
    explicit MidiInput(std::string device) : name(std::move(device)) {}
    const std::string name;
    bool skipped = false;  // the queue's own
};

class MidiQueue {
public:
    static constexpr size_t kMessages = 4096;

    MidiQueue();
    ~MidiQueue();
    MidiQueue(const MidiQueue&) = delete;
    MidiQueue& operator=(const MidiQueue&) = delete;

    // From any thread. Messages that mean nothing to heardOfMidi are left out.
    void push(const std::shared_ptr<MidiInput>& input, std::span<const uint8_t> message, Time when);
    // The last that comes of this port.
    void pushGone(const std::shared_ptr<MidiInput>& input, Time when);

    int fd() const { return event_; }  // readable when there is something to take
    void take(std::vector<Heard>& into);
    size_t dropped() const { return dropped_; }

private:
    static constexpr size_t kLongest = 3;  // bytes of a message
    struct Waiting {
        std::shared_ptr<MidiInput> input;
        std::array<uint8_t, kLongest> bytes{};
        size_t size = 0;  // 0: it is gone
        Time when{};
    };
    void wake();

    int event_;
    std::mutex mutex_;
    std::vector<Waiting> waiting_;
    std::vector<std::shared_ptr<MidiInput>> skipped_;
    std::vector<Waiting> taken_;  // of take() alone
    std::atomic<size_t> dropped_{0};
};

}  // namespace control
