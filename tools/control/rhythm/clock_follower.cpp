#include "tools/control/rhythm/clock_follower.h"

#include <algorithm>
#include <cmath>

namespace control {

namespace {

constexpr size_t kStampsKept = 4 * kTicksOfBeat + 1;
// So many ticks that are off alike are no chance.
constexpr int kTicksOff = 8;
// What of a tick's error moves the next one's time: a tempo that changes is followed within a few.
constexpr int kSlowness = 5;
constexpr double kMinute = 60;

}  // namespace

void ClockFollower::start() {
    running_ = true;
    count_ = -1;
    told_ = -1;
}

void ClockFollower::align() {
    const int64_t sinceBeat = count_ % kTicksOfBeat;
    const bool justWas = sinceBeat < kTicksOfBeat / 2;
    count_ = justWas ? sinceBeat : sinceBeat - kTicksOfBeat;
    told_ = justWas ? 0 : -1;
}

void ClockFollower::keep(Stamp stamp) {
    stamps_.push_back(stamp);
    if (stamps_.size() > kStampsKept) {
        stamps_.pop_front();
    }
    const Stamp& first = stamps_.front();
    if (stamp.index > first.index) {
        period_ = (stamp.when - first.when) / (stamp.index - first.index);
    }
}

// A tick that is off by half a period or more. Off as those before, but for some that were held up
// besides: so many are missing, or were taken for missing when they were not. Further and further
// off: the tempo is another one.
int ClockFollower::lostBy(Duration error, Time now) {
    expected_ += period_;
    off_.push_back(error);
    if (off_.size() < kTicksOff) {
        return 0;
    }
    const auto middle = off_.end() - kTicksOff / 2;
    const Duration before = *std::min_element(off_.end() - kTicksOff, middle);
    const Duration after = *std::min_element(middle, off_.end());
    if (std::chrono::abs(after - before) < period_ / 4) {
        const auto lost = std::lround(secondsOf(std::min(before, after)) / secondsOf(period_));
        expected_ += lost * period_;
        off_.clear();
        return static_cast<int>(lost);
    }
    if (off_.size() >= kTicksOfBeat) {
        expected_ = now;
        off_.clear();
        stamps_.clear();
        for (const Stamp& each : recent_) {
            keep(each);
        }
    }
    return 0;
}

// How many ticks before this one did not come.
int ClockFollower::lostBefore(Time now) {
    const Duration error = now - (expected_ + period_);
    if (!knows()) {
        expected_ = now;
        off_.clear();
        return 0;
    }
    if (std::chrono::abs(error) >= period_ / 2) {
        return lostBy(error, now);
    }
    expected_ += period_ + error / kSlowness;
    off_.clear();
    return 0;
}

std::optional<int64_t> ClockFollower::tick(Time now) {
    if (!recent_.empty() && now - last() >= kClockGone) {
        recent_.clear();
        stamps_.clear();
    }
    const int64_t before = recent_.empty() ? -1 : recent_.back().index;
    const int steps = 1 + lostBefore(now);
    recent_.push_back({now, before + steps});
    if (recent_.size() > kTicksOfBeat) {
        recent_.pop_front();
    }
    if (off_.empty()) {
        keep(recent_.back());
    }
    if (!running_) {
        return std::nullopt;
    }
    count_ += steps;
    const int64_t beat = count_ < 0 ? -1 : count_ / kTicksOfBeat;
    if (beat <= told_) {
        return std::nullopt;
    }
    told_ = beat;
    return beat;
}

int64_t ClockFollower::nextBeat() const {
    return std::max(count_ < 0 ? 0 : count_ / kTicksOfBeat + 1, told_ + 1);
}

// Half a period after its tick was due. Of a clock that has fallen silent nothing is made up.
Time ClockFollower::next() const {
    if (!running_ || !knows()) {
        return Time::max();
    }
    const Time due = expected_ + (nextBeat() * kTicksOfBeat - count_) * period_ + period_ / 2;
    return due - last() < kTicksOff * period_ ? due : Time::max();
}

std::optional<int64_t> ClockFollower::advance(Time now) {
    if (now < next()) {
        return std::nullopt;
    }
    told_ = nextBeat();
    return told_;
}

double ClockFollower::tempo() const {
    return period_ == Duration{} || stamps_.size() < 2
               ? 0
               : kMinute / (secondsOf(period_) * kTicksOfBeat);
}

}  // namespace control
