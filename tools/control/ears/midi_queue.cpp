#include "tools/control/ears/midi_queue.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>

#include "tools/base/errors.h"
#include "tools/control/ears/midi_bytes.h"

namespace control {

MidiQueue::MidiQueue() : event_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (event_ < 0) {
        throw maker::ToolError("no more files can be opened");
    }
    waiting_.reserve(kMessages);
    taken_.reserve(kMessages);
}

MidiQueue::~MidiQueue() {
    close(event_);
}

void MidiQueue::wake() {
    // It fails only when the count is at its end, and then it is readable.
    [[maybe_unused]] const int result = eventfd_write(event_, 1);
}

void MidiQueue::push(const std::shared_ptr<MidiInput>& input, std::span<const uint8_t> message,
                     Time when) {
    if (message.empty() || message.size() > kLongest) {
        return;
    }
    Waiting item{input, {}, message.size(), when};
    std::copy(message.begin(), message.end(), item.bytes.begin());
    {
        const std::lock_guard lock(mutex_);
        if (waiting_.size() < kMessages) {
            waiting_.push_back(std::move(item));
        } else {
            ++dropped_;
            if (!input->skipped) {
                input->skipped = true;
                skipped_.push_back(input);
            }
        }
    }
    wake();
}

void MidiQueue::pushGone(const std::shared_ptr<MidiInput>& input, Time when) {
    {
        const std::lock_guard lock(mutex_);
        waiting_.push_back({input, {}, 0, when});
    }
    wake();
}

void MidiQueue::take(std::vector<Heard>& into) {
    eventfd_t count = 0;
    eventfd_read(event_, &count);
    std::vector<std::shared_ptr<MidiInput>> skipped;
    {
        const std::lock_guard lock(mutex_);
        taken_.swap(waiting_);
        skipped.swap(skipped_);
        for (const auto& input : skipped) {
            input->skipped = false;
        }
    }
    for (const Waiting& item : taken_) {
        Heard gone;
        gone.kind = HeardKind::GONE;
        auto heard = item.size == 0 ? gone : heardOfMidi(std::span(item.bytes).first(item.size));
        if (heard) {
            heard->device = item.input->name;
            heard->when = item.when;
            into.push_back(std::move(*heard));
        }
    }
    const Time last = taken_.empty() ? Time{} : taken_.back().when;
    for (const auto& input : skipped) {
        Heard heard;
        heard.kind = HeardKind::SKIPPED;
        heard.device = input->name;
        heard.when = last;
        into.push_back(std::move(heard));
    }
    taken_.clear();
}

}  // namespace control
