#include "tools/clip/media/decoder.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "tools/base/errors.h"
#include "tools/base/texts.h"

namespace maker {

namespace {

constexpr double kFallbackFrameSeconds = 1.0 / 25;
constexpr int kMostThreads = 16;  // each may hold a picture

// A file that ends earlier than it announces, by more than rounding explains, is cut off.
constexpr double kCutOffSeconds = 0.5;
constexpr double kCutOffPart = 0.05;

// When the stream begins, in its own units. Times are counted from there in floating point: files
// may name any.
int64_t firstTime(const AVStream& stream) {
    return stream.start_time == AV_NOPTS_VALUE ? 0 : stream.start_time;
}

double sinceFirst(double time, const AVStream& stream) {
    return (time - static_cast<double>(firstTime(stream))) * av_q2d(stream.time_base);
}

int64_t durationOf(const AVFrame& frame) {
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(57, 30, 100)
    return frame.duration;
#else
    return frame.pkt_duration;
#endif
}

// A codec that holds whole pictures only leaves it to the container to tell that they are
// interlaced.
void markInterlaced(AVFrame& picture, const AVCodecParameters& facts) {
    const AVCodecDescriptor* codec = avcodec_descriptor_get(facts.codec_id);
    const bool intra = codec != nullptr && (codec->props & AV_CODEC_PROP_INTRA_ONLY) != 0;
    const bool topFirst = facts.field_order == AV_FIELD_TT || facts.field_order == AV_FIELD_BT;
    const bool bottomFirst = facts.field_order == AV_FIELD_BB || facts.field_order == AV_FIELD_TB;
    if (!intra || !(topFirst || bottomFirst)) {
        return;
    }
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(58, 7, 100)
    picture.flags |= AV_FRAME_FLAG_INTERLACED | (topFirst ? AV_FRAME_FLAG_TOP_FIELD_FIRST : 0);
#else
    picture.interlaced_frame = 1;
    picture.top_field_first = topFirst ? 1 : 0;
#endif
}

// The alpha of a VP8 or VP9 stream is a second picture that only this decoder puts together.
const AVCodec* alphaDecoder(const AVStream& stream) {
    const AVDictionaryEntry* mode =
        av_dict_get(stream.metadata, "alpha_mode", nullptr, AV_DICT_MATCH_CASE);
    if (mode == nullptr || std::strcmp(mode->value, "1") != 0) {
        return nullptr;
    }
    switch (stream.codecpar->codec_id) {
        case AV_CODEC_ID_VP8:
            return avcodec_find_decoder_by_name("libvpx");
        case AV_CODEC_ID_VP9:
            return avcodec_find_decoder_by_name("libvpx-vp9");
        default:
            return nullptr;
    }
}

}  // namespace

FramePtr newFrame() {
    return FramePtr(needed(av_frame_alloc()));
}

Decoder::Decoder(const DecoderOptions& options) : options_(options) {
    open();
    if (options.start > 0 && !seek(options.start)) {
        open();
    }
}

void Decoder::open() {
    format_ = openMedia(options_.path, options_.pictureFps);
    packet_.reset(needed(av_packet_alloc()));
    damaged_ = 0;
    draining_ = false;
    readFailed_ = false;
    lastIncomplete_ = false;
    packetsEnd_ = 0;
    expectedTime_ = 0;
    ahead_ = {};
    const AVCodec* codec = nullptr;
    stream_ = videoStream(*format_, options_.path, &codec);
    // Where only the whole file tells its length, every packet counts towards it.
    for (unsigned i = 0; i < format_->nb_streams; ++i) {
        AVStream* stream = format_->streams[i];
        const bool read = stream == stream_ || !streamTellsLength();
        stream->discard = read ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    checkSize(stream_->codecpar->width, stream_->codecpar->height);
    turns_ = quarterTurns(*stream_);
    openCodec(codec);
}

void Decoder::checkSize(int width, int height) const {
    const std::string limits = std::to_string(kMaxPictureSide) + " pixels on a side and " +
                               std::to_string(kMaxPicturePixels) + " in all";
    const bool webp = std::strncmp(format_->iformat->name, "webp", 4) == 0;
    if ((width <= 0 || height <= 0) && webp) {
        throw ToolError("cannot read " + options_.path +
                        ": the picture is damaged, or animated, which FFmpeg here does not read");
    }
    if (width <= 0 || height <= 0) {
        throw ToolError("cannot read " + options_.path +
                        ": its pictures are damaged, or larger than " + limits);
    }
    if (width > kMaxPictureSide || height > kMaxPictureSide ||
        int64_t{width} * height > kMaxPicturePixels) {
        throw ToolError("cannot read " + options_.path + ": its pictures of " +
                        std::to_string(width) + " x " + std::to_string(height) +
                        " pixels are larger than " + limits);
    }
}

void Decoder::openCodec(const AVCodec* codec) {
    const AVCodec* withAlpha = alphaDecoder(*stream_);
    codec = withAlpha != nullptr ? withAlpha : codec;
    codec_.reset(needed(avcodec_alloc_context3(codec)));
    int error = avcodec_parameters_to_context(codec_.get(), stream_->codecpar);
    if (error >= 0) {
        codec_->pkt_timebase = stream_->time_base;
        codec_->max_pixels = kMaxPicturePixels;
        codec_->thread_count = std::min(options_.threads, kMostThreads);
        error = avcodec_open2(codec_.get(), codec, nullptr);
    }
    if (error < 0) {
        throw ToolError("cannot read " + options_.path + ": " + troubleOf(error));
    }
}

// A seek that lands too late, or fails, is of no use: the caller opens the file again.
bool Decoder::seek(double start) {
    const int64_t units = static_cast<int64_t>(std::floor(start / av_q2d(stream_->time_base)));
    const int64_t target = av_sat_add64(firstTime(*stream_), units);
    if (av_seek_frame(format_.get(), stream_->index, target, AVSEEK_FLAG_BACKWARD) < 0) {
        return false;
    }
    avcodec_flush_buffers(codec_.get());
    TimedFrame frame;
    if (!next(frame) || frame.picture->best_effort_timestamp == AV_NOPTS_VALUE ||
        frame.time > start) {
        return false;
    }
    ahead_ = std::move(frame);
    return true;
}

// Feeds the decoder one packet, or the end of the stream.
bool Decoder::sendPacket() {
    for (;;) {
        const int error = av_read_frame(format_.get(), packet_.get());
        stopIfInterrupted();
        if (error < 0) {
            draining_ = true;
            readFailed_ = error != AVERROR_EOF;
            return avcodec_send_packet(codec_.get(), nullptr) >= 0;
        }
        notePacket(*packet_);
        const bool ours = packet_->stream_index == stream_->index;
        const int sent = ours ? avcodec_send_packet(codec_.get(), packet_.get()) : 0;
        av_packet_unref(packet_.get());
        if (ours && sent >= 0) {
            return true;
        }
        damaged_ += ours ? 1 : 0;
    }
}

void Decoder::notePacket(const AVPacket& packet) {
    const AVStream& stream = *format_->streams[packet.stream_index];
    lastIncomplete_ = (packet.flags & AV_PKT_FLAG_CORRUPT) != 0;
    if (packet.pts == AV_NOPTS_VALUE) {
        return;
    }
    const double end = static_cast<double>(packet.pts) + static_cast<double>(packet.duration);
    packetsEnd_ = std::max(packetsEnd_, sinceFirst(end, stream));
}

std::string Decoder::cutOff() const {
    if (!draining_) {
        return "";
    }
    if (readFailed_ || lastIncomplete_) {
        return "it breaks off after " + decimals(packetsEnd_, 1) + " seconds";
    }
    const bool told =
        streamTellsLength() || format_->duration_estimation_method == AVFMT_DURATION_FROM_STREAM;
    const double missing = seconds() - packetsEnd_;
    if (!told || packetsEnd_ <= 0 || missing <= std::max(kCutOffSeconds, kCutOffPart * seconds())) {
        return "";
    }
    return "it is to last " + decimals(seconds(), 1) + " seconds and ends after " +
           decimals(packetsEnd_, 1);
}

bool Decoder::next(TimedFrame& frame) {
    if (ahead_.picture) {
        frame = std::exchange(ahead_, {});
        return true;
    }
    frame.picture = newFrame();
    for (;;) {
        const int error = avcodec_receive_frame(codec_.get(), frame.picture.get());
        if (error >= 0) {
            checkSize(frame.picture->width, frame.picture->height);
            const bool broken = (frame.picture->flags & AV_FRAME_FLAG_CORRUPT) != 0 ||
                                frame.picture->decode_error_flags != 0;
            damaged_ += broken ? 1 : 0;
            frame.picture->sample_aspect_ratio =
                av_guess_sample_aspect_ratio(format_.get(), stream_, frame.picture.get());
            markInterlaced(*frame.picture, *stream_->codecpar);
            setTimes(frame);
            return true;
        }
        if (error == AVERROR_EOF) {
            return false;
        }
        if (error != AVERROR(EAGAIN)) {
            ++damaged_;
        }
        if (draining_ || !sendPacket()) {
            return false;
        }
    }
}

void Decoder::setTimes(TimedFrame& frame) {
    const double unit = av_q2d(stream_->time_base);
    const AVFrame& picture = *frame.picture;
    const AVRational rate = av_guess_frame_rate(format_.get(), stream_, frame.picture.get());
    frame.duration = static_cast<double>(durationOf(picture)) * unit;
    if (!(frame.duration > 0)) {
        frame.duration =
            rate.num > 0 && rate.den > 0 ? av_q2d(av_inv_q(rate)) : kFallbackFrameSeconds;
    }
    frame.time = expectedTime_;
    if (picture.best_effort_timestamp != AV_NOPTS_VALUE) {
        frame.time = sinceFirst(static_cast<double>(picture.best_effort_timestamp), *stream_);
    }
    expectedTime_ = frame.time + frame.duration;
}

double Decoder::seconds() const {
    if (stream_->duration != AV_NOPTS_VALUE) {
        return static_cast<double>(stream_->duration) * av_q2d(stream_->time_base);
    }
    return format_->duration != AV_NOPTS_VALUE
               ? static_cast<double>(format_->duration) / AV_TIME_BASE
               : 0;
}

}  // namespace maker
