#include "tools/clip/jobs/looped_source.h"

#include <algorithm>
#include <utility>

#include "clip/format.h"

namespace maker {

using Pixels = std::vector<uint8_t>;

LoopedSource::LoopedSource(const EncodePlan& plan, const EncodeSettings& settings)
    : plan_(plan), settings_(settings), source_(plan.source) {
    if (settings.loop.kind == LoopKind::CROSSFADE) {
        ahead_.emplace(plan.source);
    }
}

// What the clip under way has of the source, or may have when the frames were not counted.
int LoopedSource::clipFrames() const {
    const int most = settings_.longInput == LongInput::FIT && settings_.loop.kind == LoopKind::BEST
                         ? clip::kMaxFrames
                         : framesTaken(settings_.loop);
    return std::min(most, plan_.frames == kNoLimit ? most : plan_.frames - taken_);
}

// As the file announces, when the frames were not counted.
int LoopedSource::expectedFrames() const {
    if (plan_.seam) {
        return plan_.seam->end - plan_.seam->begin;
    }
    const int most = framesTaken(settings_.loop);
    int left = plan_.frames != kNoLimit ? plan_.frames : source_.expectedFrames();
    int given = 0;
    for (bool more = left > 0; more; left -= most) {
        given += framesGiven(settings_.loop, std::min(left, most));
        more = settings_.longInput == LongInput::SPLIT && left > most;
    }
    return given;
}

bool LoopedSource::nextClip() {
    if (begun_ && settings_.longInput != LongInput::SPLIT) {
        return false;
    }
    begun_ = true;
    most_ = clipFrames();
    at_ = 0;
    shown_.clear();
    back_.reset();
    last_.clear();
    fetchEnd();
    return ready();
}

// Backwards all of the clip's frames are fetched before the first: 256 at most.
bool LoopedSource::next(Pixels& rgba) {
    if (!settings_.reverse) {
        return nextForwards(rgba);
    }
    for (Pixels picture; nextForwards(picture);) {
        kept_.push_back(std::move(picture));
    }
    if (kept_.empty()) {
        return false;
    }
    rgba = std::move(kept_.back());
    kept_.pop_back();
    return true;
}

bool LoopedSource::nextForwards(Pixels& rgba) {
    switch (settings_.loop.kind) {
        case LoopKind::PINGPONG:
            return nextPingpong(rgba);
        case LoopKind::CROSSFADE:
            return nextCrossfade(rgba);
        default:
            return nextStraight(rgba);
    }
}

// Steps no earlier than it must, so that the source counts no picture that nobody asked for.
bool LoopedSource::ready() {
    if (!waiting_ && !ended_) {
        waiting_ = source_.step();
        ended_ = !waiting_;
    }
    return waiting_;
}

Pixels LoopedSource::pictureOf(VideoSource& source) const {
    Pixels rgba = source.picture();
    applyKey(settings_, rgba);
    return rgba;
}

void LoopedSource::pass() {
    waiting_ = false;
    ++at_;
    ++taken_;
}

Pixels LoopedSource::take() {
    Pixels rgba = pictureOf(source_);
    pass();
    return rgba;
}

bool LoopedSource::nextStraight(Pixels& rgba) {
    while (plan_.seam && at_ < plan_.seam->begin && ready()) {
        pass();
    }
    if (!ready() || at_ >= (plan_.seam ? plan_.seam->end : most_)) {
        return false;
    }
    rgba = take();
    return true;
}

bool LoopedSource::nextPingpong(Pixels& rgba) {
    if (ready() && at_ < most_) {
        rgba = take();
        shown_.push_back(rgba);
        return true;
    }
    const size_t before = back_.value_or(std::max(shown_.size(), size_t{1}) - 1);
    if (before < 2) {
        return false;
    }
    back_ = before - 1;
    rgba = shown_[*back_];
    return true;
}

void LoopedSource::fetchEnd() {
    const int from = most_ - blendOf(settings_.loop, most_);
    for (int i = 0; ahead_ && i < most_ && ahead_->step(); ++i) {
        if (i >= from) {
            last_.push_back(pictureOf(*ahead_));
        }
    }
}

bool LoopedSource::nextCrossfade(Pixels& rgba) {
    const int blend = blendOf(settings_.loop, most_);
    if (ready() && at_ < most_ - blend) {
        const int index = at_;
        rgba = take();
        if (index < blend && !last_.empty()) {
            crossfade(index, blend, last_.front(), rgba);
            last_.pop_front();
        }
        return true;
    }
    while (ready() && at_ < most_) {
        pass();
    }
    return false;
}

}  // namespace maker
