#pragma once
// Where the beat is: tapped, told by a MIDI clock, or from a tempo. Counts beats from the first of
// a bar, 0. Owns no clock.

#include <cstdint>
#include <deque>
#include <optional>

#include "tools/control/base/time.h"
#include "tools/control/rhythm/clock_follower.h"

namespace control {

// Taps further apart than this begin anew, with the first of a bar.
inline constexpr Duration kLongestTap = milliseconds(3000);

class Beat {
public:
    // Each returns the beat that is now, if one is.
    std::optional<int64_t> tap(Time now);
    std::optional<int64_t> tick(Time now);  // of the MIDI clock
    // Beats that are due by a tempo, or by a clock whose tick did not come: one at most. Of those
    // of a tempo that were missed only the last one is played.
    std::optional<int64_t> advance(Time now);

    void setTempo(double tempo, Time now);  // the first beat is now
    void start() { clock_.start(); }
    void goOn() { clock_.goOn(); }
    void stopClock() { clock_.stop(); }
    void stop();  // nothing beats until tap, tempo or clock

    // When advance() has something to do; Time::max(): never.
    Time next() const;
    bool beats(Time now) const { return period_ != Duration{} || clock_.runs(now); }
    // Beats a minute; 0 while nothing beats or it is not known yet.
    double tempo(Time now) const;

private:
    Time nextOfTempo() const;

    std::deque<Time> taps_;
    Duration period_{};     // zero: no tempo
    int64_t counted_ = -1;  // the beat told last
    Time origin_{};         // when it was
    ClockFollower clock_;
};

}  // namespace control
