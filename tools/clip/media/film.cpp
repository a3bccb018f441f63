#include "tools/clip/media/film.h"

#include <cmath>
#include <utility>

extern "C" {
#include <libavutil/pixdesc.h>
}

#include "tools/base/errors.h"

namespace maker {

namespace {

constexpr AVRational kMicroseconds{1, 1000000};
constexpr double kSameMoment = 1e-5;  // seconds

// White of 203 candela is what graphics have in such films. What is brighter is compressed so
// that darker colours stay as they are.
const char* const kToneMap =
    "zscale=transfer=linear:npl=203,format=gbrpf32le,zscale=primaries=bt709,"
    "tonemap=mobius:desat=0,zscale=transfer=bt709:matrix=bt709:range=tv,format=yuv444p";

bool flaggedInterlaced(const AVFrame& picture) {
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(58, 7, 100)
    return (picture.flags & AV_FRAME_FLAG_INTERLACED) != 0;
#else
    return picture.interlaced_frame != 0;
#endif
}

bool isHdr(const AVFrame& picture) {
    return picture.color_trc == AVCOL_TRC_SMPTE2084 || picture.color_trc == AVCOL_TRC_ARIB_STD_B67;
}

bool isRgb(const AVFrame& picture) {
    const AVPixFmtDescriptor* format =
        av_pix_fmt_desc_get(static_cast<AVPixelFormat>(picture.format));
    return format != nullptr && (format->flags & AV_PIX_FMT_FLAG_RGB) != 0;
}

const char* turnFilters(int turns) {
    constexpr const char* kTurns[] = {"", "transpose=clock,", "hflip,vflip,", "transpose=cclock,"};
    return kTurns[turns];
}

}  // namespace

std::string faultOf(const std::string& filters) {
    const FramePtr like = newFrame();
    like->width = 1280;
    like->height = 720;
    like->format = AV_PIX_FMT_YUV420P;
    try {
        FilterGraph(*like, kMicroseconds, filters, "FFmpeg does not take " + filters);
    } catch (const ToolError& error) {
        return error.what();
    }
    return "";
}

Film::Film(const DecoderOptions& options, const Look& look)
    : decoder_(options), look_(look), path_(options.path), start_(options.start) {}

bool Film::next(TimedFrame& frame) {
    while (ready_.empty() && !ended_) {
        feed();
    }
    if (ready_.empty()) {
        return false;
    }
    frame = std::move(ready_.front());
    ready_.pop_front();
    frame.time = start_ + (frame.time - start_) * look_.slow;
    frame.duration *= look_.slow;
    return true;
}

int Film::turns() const {
    return look_.filter.empty() ? decoder_.turns() : 0;
}

std::string Film::note() const {
    std::string note = interlaced_ ? "deinterlaced" : "";
    if (hdr_) {
        note += note.empty() ? "" : "; ";
        note += "high dynamic range brought down";
    }
    return note;
}

void Film::feed() {
    TimedFrame in;
    if (!decoder_.next(in)) {
        ended_ = true;
        change(*newFrame(), "");
        return;
    }
    prepare(*in.picture);
    change(*in.picture, filtersFor(*in.picture));
    if (!graph_) {
        ready_.push_back(std::move(in));
        return;
    }
    inTime_ = in.time - start_;
    inDuration_ = in.duration;
    in.picture->pts = std::llround(inTime_ / av_q2d(kMicroseconds));
    graph_->push(in.picture.get());
    collect();
}

// Notes what has to be done, and names what the filters have to know.
void Film::prepare(AVFrame& picture) {
    const bool marked = look_.deinterlace == Deinterlace::AUTO && flaggedInterlaced(picture);
    interlaced_ = interlaced_ || marked || look_.deinterlace == Deinterlace::ON;
    if (!isHdr(picture)) {
        return;
    }
    hdr_ = true;
    if (picture.colorspace == AVCOL_SPC_UNSPECIFIED) {
        picture.colorspace = AVCOL_SPC_BT2020_NCL;
    }
    if (picture.color_primaries == AVCOL_PRI_UNSPECIFIED) {
        picture.color_primaries = AVCOL_PRI_BT2020;
    }
}

// Once a picture was interlaced all go the same way; the filter lets the others through.
std::string Film::filtersFor(const AVFrame& picture) const {
    std::string filters;
    const auto add = [&filters](const std::string& filter) {
        filters += (filters.empty() ? "" : ",") + filter;
    };
    if (interlaced_) {
        add(look_.deinterlace == Deinterlace::ON ? "bwdif=mode=send_frame:deint=all"
                                                 : "bwdif=mode=send_frame:deint=interlaced");
    }
    if (isHdr(picture)) {
        add(kToneMap);
    }
    if (!look_.filter.empty()) {
        add(turnFilters(decoder_.turns()) + look_.filter);
    }
    return filters;
}

// Sees to it that the graph takes this picture; pictures that an older one holds come out first.
void Film::change(const AVFrame& picture, const std::string& filters) {
    if (graph_ && filters == filters_ && graph_->takes(picture)) {
        return;
    }
    if (graph_) {
        graph_->push(nullptr);
        collect();
        graph_.reset();
    }
    filters_ = filters;
    if (!filters.empty()) {
        rgb_ = isRgb(picture);
        graph_.emplace(picture, kMicroseconds, filters, "cannot filter " + path_);
    }
}

void Film::collect() {
    TimedFrame out;
    out.picture = newFrame();
    while (graph_->pull(*out.picture)) {
        const double time = static_cast<double>(out.picture->pts) * av_q2d(graph_->unit());
        const bool same = std::abs(time - inTime_) < kSameMoment || time <= outTime_;
        out.duration = same ? inDuration_ : time - outTime_;
        out.time = start_ + time;
        outTime_ = time;
        if (rgb_ && !isRgb(*out.picture)) {
            out.picture->colorspace = AVCOL_SPC_SMPTE170M;  // which FFmpeg converts to
        }
        ready_.push_back(std::move(out));
        out.picture = newFrame();
    }
}

}  // namespace maker
