#include "tools/clip/media/source.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

extern "C" {
#include <libavutil/imgutils.h>
}

#include "common/limits.h"

#include "tools/base/errors.h"
#include "tools/clip/media/image_sequence.h"
#include "tools/clip/media/picture.h"

namespace maker {

namespace {

int frameLimit(const SourceOptions& options) {
    return options.duration > 0 ? framesFor(options.duration, options.fps, options.limit)
                                : options.limit;
}

double pictureFps(const SourceOptions& options) {
    return options.pictureFps > 0 ? options.pictureFps : options.fps;
}

// How late a timestamp may be and still count as on time. Matroska and others round to whole
// milliseconds; that moves nothing by more than a tenth of a frame at any rate.
constexpr double kRounding = 0.6e-3;  // seconds
constexpr double kMostSlack = 0.1;    // of a frame

constexpr int kLargestTerm = 100000;  // of the frame rate as a fraction

}  // namespace

VideoSource::VideoSource(const SourceOptions& options)
    : options_(options),
      film_({options.path, options.start, pictureFps(options), options.threads}, options.look),
      scaler_({options.path, options.fit, options.look, options.alpha,
               options.nearest || options.fit == Fit::WHOLE}),
      pacer_(options.fps, frameLimit(options)) {
    frameFilters_ = frameFilters(options.look, options.length);
    more_ = film_.next(upcoming_);
    if (!more_) {
        throw ToolError("cannot read " + options.path +
                        ": no picture could be decoded; it is damaged or empty, so export it anew");
    }
    canSeeThrough_ = formatHasAlpha(*upcoming_.picture) || imagePattern(options.path).has_value();
}

int VideoSource::expectedFrames() const {
    const double seconds = (film_.decoder().seconds() - options_.start) * options_.look.slow;
    return framesFor(seconds, options_.fps, frameLimit(options_));
}

// Moves on to the next source picture and finds how many clip frames show it; false at the end.
bool VideoSource::advance() {
    if (!more_ || pacer_.finished()) {
        return false;
    }
    alone_ = !current_.picture;
    current_ = std::move(upcoming_);
    upcoming_ = {};
    drawn_ = !next_.empty();
    scaled_.swap(next_);
    next_.clear();
    finished_ = -1;
    more_ = film_.next(upcoming_);
    double until = more_ ? upcoming_.time : current_.time + current_.duration;
    if (!more_ && alone_) {
        // One single picture: its own duration means nothing.
        until = options_.start + (options_.duration > 0 ? options_.duration : 1 / options_.fps);
    }
    until_ = std::max(until - options_.start, 0.0);
    pending_ = pacer_.due(until_);
    count();
    return true;
}

void VideoSource::count() {
    const bool beforeStart = until_ <= kRounding;
    sampling_.pictures += beforeStart ? 0 : 1;
    sampling_.leftOut += !beforeStart && pending_ == 0 ? 1 : 0;
    sampling_.repeated += pending_ > 1 ? 1 : 0;
}

// The last picture for one frame more.
bool VideoSource::holdOn() {
    if (index_ < 0 || held_ == options_.hold || index_ + 1 >= frameLimit(options_)) {
        return false;
    }
    ++held_;
    ++pending_;
    return true;
}

bool VideoSource::step() {
    stopIfInterrupted();
    while (pending_ == 0) {
        if (!advance() && !holdOn()) {
            return false;
        }
    }
    --pending_;
    ++index_;
    return true;
}

bool VideoSource::goesOn() const {
    return more_ || framesFor(until_, options_.fps, kNoLimit) > frameLimit(options_);
}

const std::vector<uint8_t>& VideoSource::picture() {
    if (!drawn_) {
        scaler_.render(*current_.picture, film_.turns(), scaled_);
        drawn_ = true;
    }
    const std::vector<uint8_t>& shown = blended();
    if (frameFilters_.empty()) {
        return shown;
    }
    const bool eachAnew = options_.look.fades() || options_.look.slow > 1;
    if (finished_ < 0 || (eachAnew && finished_ != index_)) {
        finishFrame(shown);
        finished_ = index_;
    }
    return picture_;
}

// Of a slowed film, the frame between the picture on show and the one after it.
const std::vector<uint8_t>& VideoSource::blended() {
    constexpr int kParts = 256;
    const double from = current_.time - options_.start;
    const double apart = more_ ? upcoming_.time - current_.time : 0;
    if (options_.look.slow <= 1 || !(apart > 0)) {
        return scaled_;
    }
    const double share = (index_ / options_.fps - from) / apart;
    const int part = static_cast<int>(std::lround(std::clamp(share, 0.0, 1.0) * kParts));
    if (part == 0) {
        return scaled_;
    }
    if (next_.empty()) {
        seenThrough_ = scaler_.seesThrough(*upcoming_.picture);
        scaler_.render(*upcoming_.picture, film_.turns(), next_);
    }
    blended_ = scaled_;
    mixInto(blended_, next_, part, kParts);
    return blended_;
}

// The filters are given one frame and give one back.
void VideoSource::finishFrame(const std::vector<uint8_t>& frame) {
    const FramePtr in = newFrame();
    in->width = kFrameWidth;
    in->height = kFrameHeight;
    in->format = AV_PIX_FMT_RGBA;
    in->pts = index_;
    const int pitch = kFrameWidth * 4;
    if (av_frame_get_buffer(in.get(), 0) < 0) {
        throw std::bad_alloc();
    }
    av_image_copy_plane(in->data[0], in->linesize[0], frame.data(), pitch, pitch, kFrameHeight);
    if (!filters_) {
        filters_.emplace(*in, av_inv_q(av_d2q(options_.fps, kLargestTerm)),
                         frameFilters_ + ",format=rgba", "cannot filter " + options_.path);
    }
    filters_->push(in.get());
    const FramePtr out = newFrame();
    if (!filters_->pull(*out)) {
        throw ToolError("cannot filter " + options_.path);
    }
    picture_.resize(frame.size());
    av_image_copy_plane(picture_.data(), pitch, out->data[0], out->linesize[0], pitch,
                        kFrameHeight);
}

bool VideoSource::seesThrough() {
    return drawn_ ? seenThrough_ : scaler_.seesThrough(*current_.picture);
}

int framesFor(double seconds, double fps, int limit) {
    const double slack = std::min(kRounding * fps, kMostSlack);
    const double frames = std::ceil(seconds * fps - slack);
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
