#pragma once
// Follows a MIDI clock, which counts 24 ticks a beat and says nothing else: a tick that is lost on
// its way would move every beat behind it. So the follower knows when the next tick is due. Ticks
// that come later than that and stay as late tell how many are missing; a beat whose tick does not
// come is told all the same. Ticks that are merely held up come in a rush, and count as they are.

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "tools/control/base/time.h"

namespace control {

inline constexpr int kTicksOfBeat = 24;
// A clock that is silent for so long has stopped.
inline constexpr Duration kClockGone = milliseconds(1000);

class ClockFollower {
public:
    // Each returns the beat that is now, if one is: 0 the first of a bar.
    std::optional<int64_t> tick(Time now);
    std::optional<int64_t> advance(Time now);

    void start();
    void goOn() { running_ = true; }
    void stop() { running_ = false; }
    // The nearest beat is the first of a bar.
    void align();

    bool runs(Time now) const { return running_ && !recent_.empty() && now - last() < kClockGone; }
    double tempo() const;  // beats a minute; 0 while it is not known
    // When advance() may have a beat whose tick did not come; Time::max(): never.
    Time next() const;

private:
    struct Stamp {
        Time when;
        int64_t index;  // of the tick, lost ones counted
    };

    Time last() const { return recent_.back().when; }
    // Ticks closer together are a flood, no tempo.
    static constexpr Duration kShortestTick = milliseconds(2);
    bool knows() const { return stamps_.size() >= kTicksOfBeat && period_ >= kShortestTick; }
    int64_t nextBeat() const;
    int lostBefore(Time now);
    int lostBy(Duration error, Time now);
    void keep(Stamp stamp);

    bool running_ = true;        // clocks that never say START run from their first tick
    int64_t count_ = -1;         // the last tick of the beats
    int64_t told_ = -1;          // the beat told last
    std::deque<Stamp> recent_;   // the last beat's
    std::deque<Stamp> stamps_;   // those in time, of some beats: held up ones would bend the period
    Duration period_{};          // of a tick
    Time expected_{};            // when the last tick should have come
    std::vector<Duration> off_;  // by how much, of ticks that were off in a row
};

}  // namespace control
