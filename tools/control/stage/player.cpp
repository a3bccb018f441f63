#include "tools/control/stage/player.h"

#include <algorithm>
#include <cmath>

namespace control {

bool Player::play(const Gesture& gesture) {
    if (gesture.empty()) {
        return true;
    }
    if (steps_.size() + gesture.size() + 1 > kMostSteps) {
        return false;
    }
    if (needsGap(steps_.empty() ? down_ : steps_.back(), gesture[0])) {
        steps_.push_back(0);
    }
    steps_.insert(steps_.end(), gesture.begin(), gesture.end());
    return true;
}

void Player::hold(Key key, bool down) {
    held_[indexOf(key)].wanted = down;
}

void Player::scrub(double value, Time now) {
    scrub_.wanted = std::clamp(value, 0.0, 1.0);
    scrub_.heard = now;
}

// Up before down, and in the order of the keys: a filter letter goes down before what it is held
// for.
void Player::change(KeySet to, Time now) {
    for (const bool down : {false, true}) {
        const KeySet keys = down ? to & ~down_ : down_ & ~to;
        for (size_t i = 0; i < kKeys; ++i) {
            if ((keys & setOf(keyAt(i))) != 0) {
                hands_.key(keyAt(i), down);
            }
        }
    }
    before_ = down_;
    down_ = to;
    changed_ = now;
}

Time Player::advanceSteps(Time now) {
    const bool due = now - changed_ >= kStep;
    const bool resting = down_ == 0 && !steps_.empty() && !needsGap(before_, steps_.front());
    if (steps_.empty() && down_ == 0) {
        return Time::max();
    }
    if (!due && !resting) {
        return changed_ + kStep;
    }
    if (steps_.empty()) {
        change(0, now);
        return Time::max();
    }
    change(steps_.front(), now);
    steps_.pop_front();
    ++begun_;
    return changed_ + kStep;
}

Time Player::advanceHeld(Time now) {
    Time next = Time::max();
    for (size_t i = 0; i < kKeys; ++i) {
        Held& held = held_[i];
        if (held.wanted == held.down) {
            continue;
        }
        if (now - held.changed < kStep) {
            next = std::min(next, held.changed + kStep);
            continue;
        }
        held.down = held.wanted;
        held.changed = now;
        hands_.key(keyAt(i), held.down);
    }
    return next;
}

void Player::point(double value) {
    scrub_.shown = value;
    hands_.point(kScrubLeft + static_cast<int>(std::lround(value * (kScrubRight - kScrubLeft))),
                 kScrubLine);
}

void Player::release() {
    hands_.button(false);
    scrub_ = {};
}

// A motion in the frame of the press would count as its place, so the pointer stands for kStep.
Time Player::advanceScrub(Time now) {
    if (!scrub_.down) {
        if (!scrub_.wanted || !steps_.empty() || down_ != 0) {
            return Time::max();
        }
        point(*scrub_.wanted);
        hands_.button(true);
        scrub_.down = true;
        scrub_.pressed = now;
        return now + kStep;
    }
    if (now - scrub_.pressed < kStep) {
        return scrub_.pressed + kStep;
    }
    if (scrub_.wanted && *scrub_.wanted != scrub_.shown) {
        point(*scrub_.wanted);
        // Seen for a frame before the button goes up.
        scrub_.heard = std::max(scrub_.heard, now - kScrubRest + kStep);
    }
    if (!scrub_.wanted || !steps_.empty() || now - scrub_.heard >= kScrubRest) {
        release();
        return Time::max();
    }
    return scrub_.heard + kScrubRest;
}

Time Player::advance(Time now) {
    const bool scrubs = scrub_.down;
    Time next = std::min(advanceHeld(now), advanceScrub(now));
    // Keys that would change the layer under the pointer wait until the button is up.
    if (!scrubs || !scrub_.down) {
        next = std::min(next, advanceSteps(now));
        if (!scrub_.down && scrub_.wanted) {
            next = std::min(next, advanceScrub(now));
        }
    }
    return next;
}

void Player::stop() {
    steps_.clear();
    for (size_t i = 0; i < kKeys; ++i) {
        if (held_[i].down || (down_ & setOf(keyAt(i))) != 0) {
            hands_.key(keyAt(i), false);
        }
        held_[i] = {};
    }
    if (scrub_.down) {
        hands_.button(false);
    }
    down_ = 0;
    before_ = 0;
    scrub_ = {};
}

}  // namespace control
