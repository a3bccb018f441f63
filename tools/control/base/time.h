#pragma once
// The one clock of velmora-control: it never jumps. Whoever needs the time is handed it, so that
// tests say what time it is.

#include <chrono>

namespace control {

using Clock = std::chrono::steady_clock;
using Time = Clock::time_point;
using Duration = Clock::duration;

using std::chrono::milliseconds;

inline double secondsOf(Duration duration) {
    return std::chrono::duration<double>(duration).count();
}

inline Duration durationOf(double seconds) {
    return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds));
}

}  // namespace control
