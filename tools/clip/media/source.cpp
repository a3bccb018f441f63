#include "tools/clip/media/source.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "tools/clip/base/errors.h"
#include "tools/clip/media/image_sequence.h"

namespace maker {

namespace {

int frameLimit(const SourceOptions& options) {
    return options.duration > 0 ? framesFor(options.duration, options.fps, options.limit)
                                : options.limit;
}

double pictureFps(const SourceOptions& options) {
    return options.pictureFps > 0 ? options.pictureFps : options.fps;
}

// Part of a clip frame that rounded timestamps may be early or late.
constexpr double kSlack = 1e-3;

}  // namespace

VideoSource::VideoSource(const SourceOptions& options)
    : options_(options),
      decoder_({options.path, options.start, pictureFps(options), options.threads}),
      scaler_(
          {options.path, options.fit, options.alpha, options.nearest || options.fit == Fit::WHOLE}),
      pacer_(options.fps, frameLimit(options)) {
    more_ = decoder_.next(upcoming_);
    if (!more_) {
        throw ToolError("cannot read " + options.path + ": no picture could be decoded");
    }
    canSeeThrough_ = formatHasAlpha(*upcoming_.picture) || imagePattern(options.path).has_value();
}

int VideoSource::expectedFrames() const {
    const double seconds = decoder_.seconds() - options_.start;
    return framesFor(seconds, options_.fps, frameLimit(options_));
}

// Moves on to the next source picture and finds how many clip frames show it; false at the end.
bool VideoSource::advance() {
    stopIfInterrupted();
    if (!more_ || pacer_.finished()) {
        return false;
    }
    alone_ = !current_.picture;
    current_ = std::move(upcoming_);
    upcoming_ = {};
    drawn_ = false;
    more_ = decoder_.next(upcoming_);
    double until = more_ ? upcoming_.time : current_.time + current_.duration;
    if (!more_ && alone_) {
        // One single picture: its own duration means nothing.
        until = options_.start + (options_.duration > 0 ? options_.duration : 1 / options_.fps);
    }
    until_ = std::max(until - options_.start, 0.0);
    pending_ = pacer_.due(until_);
    return true;
}

bool VideoSource::step() {
    while (pending_ == 0) {
        if (!advance()) {
            return false;
        }
    }
    --pending_;
    return true;
}

bool VideoSource::goesOn() const {
    return more_ || framesFor(until_, options_.fps, kNoLimit) > frameLimit(options_);
}

const std::vector<uint8_t>& VideoSource::picture() {
    if (!drawn_) {
        AVFrame& picture = *current_.picture;
        scaler_.render(picture, decoder_.pixelAspect(&picture), decoder_.turns(), picture_);
        drawn_ = true;
    }
    return picture_;
}

bool VideoSource::seesThrough() {
    return !drawn_ && scaler_.seesThrough(*current_.picture);
}

int framesFor(double seconds, double fps, int limit) {
    const double frames = std::ceil(seconds * fps - kSlack);
    if (!(frames > 0)) {
        return 0;
    }
    return frames < limit ? static_cast<int>(frames) : limit;
}

int Pacer::due(double until) {
    const int target = framesFor(until, fps_, limit_);
    if (target <= given_) {
        return 0;
    }
    const int frames = target - given_;
    given_ = target;
    return frames;
}

}  // namespace maker
