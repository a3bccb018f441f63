#include "tools/control/rhythm/beat.h"

#include <algorithm>

#include "tools/control/stage/action.h"

namespace control {

namespace {

constexpr size_t kMostTaps = 8;
constexpr double kMinute = 60;

// The mean distance of times that follow each other.
Duration meanOf(const std::deque<Time>& times) {
    return (times.back() - times.front()) / static_cast<int64_t>(times.size() - 1);
}

}  // namespace

// While a clock runs a tap says which of its beats is the first of a bar. Otherwise it is the beat
// that is nearest to it: one that is due soon is here already, one that was told
// is only moved.
std::optional<int64_t> Beat::tap(Time now) {
    if (clock_.runs(now)) {
        clock_.align();
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
    const std::optional<int64_t> beat = clock_.tick(now);
    if (clock_.runs(now)) {
        period_ = {};
    }
    return beat;
}

std::optional<int64_t> Beat::advance(Time now) {
    if (now < nextOfTempo()) {
        return clock_.advance(now);
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
    clock_.stop();
}

Time Beat::nextOfTempo() const {
    return period_ == Duration{} ? Time::max() : origin_ + period_;
}

Time Beat::next() const {
    return std::min(nextOfTempo(), clock_.next());
}

double Beat::tempo(Time now) const {
    if (clock_.runs(now)) {
        return clock_.tempo();
    }
    return period_ == Duration{} ? 0 : kMinute / secondsOf(period_);
}

}  // namespace control
