#include "tools/clip/source.h"

#include <utility>

#include "clip/format.h"
#include "tools/clip/errors.h"
#include "tools/clip/interrupt.h"

namespace maker {

namespace {

int frameLimit(const SourceOptions& options) {
    return options.duration > 0 ? framesFor(options.duration, options.fps, clip::kMaxFrames)
                                : clip::kMaxFrames;
}

// Whether anything in the asked part of the source is transparent. Formats with alpha often use
// none of it, and the clip's header tells before the first block. The first picture decides for
// sources that cannot be transparent at all.
bool findTransparency(const SourceOptions& options) {
    if (!options.alpha) {
        return false;
    }
    Decoder decoder(options.path, options.start);
    Scaler scaler({options.fit, true});
    const double end = options.start + static_cast<double>(frameLimit(options)) / options.fps;
    TimedFrame frame;
    while (decoder.next(frame) && frame.time < end) {
        stopIfInterrupted();
        if (!formatHasAlpha(*frame.picture)) {
            return false;
        }
        const bool shown = frame.time + frame.duration > options.start;
        if (shown && scaler.seesThrough(*frame.picture)) {
            return true;
        }
    }
    return false;
}

}  // namespace

VideoSource::VideoSource(const SourceOptions& options)
    : options_(options),
      alpha_(findTransparency(options)),
      decoder_(options.path, options.start),
      scaler_({options.fit, alpha_}),
      pacer_(options.fps, frameLimit(options)) {
    more_ = decoder_.next(upcoming_);
    if (!more_) {
        throw ToolError("cannot read " + options.path + ": no picture could be decoded");
    }
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
    pending_ = pacer_.due(until - options_.start);
    return true;
}

bool VideoSource::next(std::vector<uint8_t>& rgba) {
    while (pending_ == 0) {
        if (!advance()) {
            return false;
        }
    }
    --pending_;
    if (!drawn_) {
        AVFrame& picture = *current_.picture;
        scaler_.render(picture, decoder_.pixelAspect(&picture), decoder_.turns(), picture_);
        drawn_ = true;
    }
    rgba = picture_;
    return true;
}

}  // namespace maker
