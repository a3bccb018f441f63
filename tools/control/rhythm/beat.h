#pragma once
// Where the beat is: tapped, told by a MIDI clock, or from a tempo. Counts beats from the first of
// a bar, 0. Owns no clock.

#include <cstdint>
#include <deque>
#include <optional>

#include "tools/control/base/time.h"

namespace control {

inline constexpr int kTicksOfBeat = 24;  // of a MIDI clock
// Taps further apart than this begin anew, with the first of a bar.
inline constexpr Duration kLongestTap = milliseconds(3000);
// A clock that is silent for so long has stopped.
inline constexpr Duration kClockGone = milliseconds(1000);

class Beat {
public:
    // Each returns the beat that is now, if one is.
    std::optional<int64_t> tap(Time now);
    std::optional<int64_t> tick(Time now);  // of the MIDI clock
    // Beats that are due by a tempo: one at most. Of those that were missed only the last one is
    // played.
    std::optional<int64_t> advance(Time now);

    void setTempo(double tempo, Time now);  // the first beat is now
    void start() { clock_ = {.running = true, .ticks = -1}; }
    void goOn() { clock_.running = true; }
    void stopClock() { clock_.running = false; }
    void stop();  // nothing beats until tap, tempo or clock

    // When advance() has something to do; Time::max(): never.
    Time next() const;
    bool beats(Time now) const { return period_ != Duration{} || clockRuns(now); }
    // Beats a minute; 0 while nothing beats or it is not known yet.
    double tempo(Time now) const;

private:
    struct MidiClock {
        bool running = true;  // clocks that never say START run from their first tick
        int64_t ticks = -1;   // the number of the last one
    };

    bool clockRuns(Time now) const;
    void alignClock();

    std::deque<Time> taps_;
    Duration period_{};     // zero: no tempo
    int64_t counted_ = -1;  // the beat told last
    Time origin_{};         // when it was
    MidiClock clock_;
    std::deque<Time> ticks_;  // of the last beats
};

}  // namespace control
