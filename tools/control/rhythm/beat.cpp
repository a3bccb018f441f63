#include "tools/control/rhythm/beat.h"

#include <cmath>

#include "tools/control/stage/action.h"

namespace control {

namespace {

constexpr size_t kMostTaps = 8;
constexpr size_t kTicksKept = 4 * kTicksOfBeat + 1;
constexpr double kMinute = 60;

// The mean distance of times that follow each other.
Duration meanOf(const std::deque<Time>& times) {
    return (times.back() - times.front()) / static_cast<int64_t>(times.size() - 1);
}

}  // namespace

bool Beat::clockRuns(Time now) const {
    return clock_.running && !ticks_.empty() && now - ticks_.back() < kClockGone;
}

// While a clock runs a tap says which of its beats, the nearest, is the first of a bar.
void Beat::alignClock() {
    const int64_t sinceBeat = clock_.ticks % kTicksOfBeat;
    clock_.ticks = sinceBeat < kTicksOfBeat / 2 ? sinceBeat : sinceBeat - kTicksOfBeat;
}

// A tap is the beat that is nearest to it: one that is due soon is here already, one that was told
// is only moved.
std::optional<int64_t> Beat::tap(Time now) {
    if (clockRuns(now)) {
        alignClock();
        return std::nullopt;
    }
    const bool first = taps_.empty() || now - taps_.back() > kLongestTap;
    if (first) {
        taps_.clear();
        counted_ = -1;
    }
    taps_.push_back(now);
    if (taps_.size() > kMostTaps) {
        taps_.pop_front();
    }
    const bool early = first || period_ == Duration{} || now - origin_ > period_ / 2;
    counted_ += early ? 1 : 0;
    period_ = first ? period_ : meanOf(taps_);
    origin_ = now;
    return early ? std::optional(counted_) : std::nullopt;
}

std::optional<int64_t> Beat::tick(Time now) {
    if (!ticks_.empty() && now - ticks_.back() >= kClockGone) {
        ticks_.clear();
    }
    ticks_.push_back(now);
    if (ticks_.size() > kTicksKept) {
        ticks_.pop_front();
    }
    if (!clock_.running) {
        return std::nullopt;
    }
    period_ = {};
    ++clock_.ticks;
    return clock_.ticks >= 0 && clock_.ticks % kTicksOfBeat == 0
               ? std::optional(clock_.ticks / kTicksOfBeat)
               : std::nullopt;
}

std::optional<int64_t> Beat::advance(Time now) {
    if (now < next()) {
        return std::nullopt;
    }
    const int64_t passed = (now - origin_) / period_;
    counted_ += passed;
    origin_ += passed * period_;
    return counted_;
}

void Beat::setTempo(double tempo, Time now) {
    taps_.clear();
    period_ = durationOf(kMinute / tempo);
    origin_ = now - period_;
    counted_ = -1;
}

void Beat::stop() {
    taps_.clear();
    period_ = {};
    clock_.running = false;
}

Time Beat::next() const {
    return period_ == Duration{} ? Time::max() : origin_ + period_;
}

double Beat::tempo(Time now) const {
    if (clockRuns(now)) {
        return ticks_.size() < 2 ? 0 : kMinute / (secondsOf(meanOf(ticks_)) * kTicksOfBeat);
    }
    return period_ == Duration{} ? 0 : kMinute / secondsOf(period_);
}

}  // namespace control
