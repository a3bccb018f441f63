#include "tools/clip/decoder.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <utility>

extern "C" {
#include <libavutil/display.h>
#include <libavutil/imgutils.h>
}

#include "tools/clip/errors.h"
#include "tools/clip/interrupt.h"

namespace maker {

namespace {

constexpr double kFallbackFrameSeconds = 1.0 / 25;

std::string reasonOf(int error) {
    char text[AV_ERROR_MAX_STRING_SIZE] = "";
    av_strerror(error, text, sizeof(text));
    return text;
}

int interruptAsked(void*) {
    return interrupted() ? 1 : 0;
}

double secondsOf(AVRational rational) {
    return av_q2d(rational);
}

int64_t durationOf(const AVFrame& frame) {
#if LIBAVUTIL_VERSION_INT >= AV_VERSION_INT(57, 30, 100)
    return frame.duration;
#else
    return frame.pkt_duration;
#endif
}

// A colon would make FFmpeg look for a protocol in the name of a file that is there.
std::string addressOf(const std::string& path) {
    std::error_code ignored;
    const bool isFile = std::filesystem::exists(path, ignored);
    return isFile && path.find(':') != std::string::npos ? "file:" + path : path;
}

const int32_t* displayMatrix(const AVStream& stream) {
#if LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(60, 31, 102)
    const AVPacketSideData* data =
        av_packet_side_data_get(stream.codecpar->coded_side_data,
                                stream.codecpar->nb_coded_side_data, AV_PKT_DATA_DISPLAYMATRIX);
    return data != nullptr ? reinterpret_cast<const int32_t*>(data->data) : nullptr;
#else
    return reinterpret_cast<const int32_t*>(
        av_stream_get_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr));
#endif
}

// The matrix turns counter-clockwise. Only whole quarter turns count.
int quarterTurns(const AVStream& stream) {
    const int32_t* matrix = displayMatrix(stream);
    if (matrix == nullptr) {
        return 0;
    }
    const double angle = av_display_rotation_get(matrix);
    if (std::isnan(angle)) {
        return 0;
    }
    const int turns = static_cast<int>(std::lround(-angle / 90)) % 4;
    return (turns + 4) % 4;
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
    FramePtr frame(av_frame_alloc());
    if (!frame) {
        throw std::bad_alloc();
    }
    return frame;
}

Decoder::Decoder(const std::string& path, double start) {
    av_log_set_level(AV_LOG_QUIET);
    open(path);
    if (start > 0 && !seek(start)) {
        open(path);
    }
}

void Decoder::open(const std::string& path) {
    if (std::filesystem::is_directory(path)) {
        throw ToolError("cannot read " + path + ": it is a folder");
    }
    damaged_ = 0;
    draining_ = false;
    expectedTime_ = 0;
    ahead_ = {};
    packet_.reset(av_packet_alloc());
    AVFormatContext* format = avformat_alloc_context();
    if (!packet_ || format == nullptr) {
        avformat_free_context(format);
        throw std::bad_alloc();
    }
    format->interrupt_callback.callback = interruptAsked;
    int error = avformat_open_input(&format, addressOf(path).c_str(), nullptr, nullptr);
    format_.reset(error < 0 ? nullptr : format);
    if (error >= 0) {
        error = avformat_find_stream_info(format, nullptr);
    }
    stopIfInterrupted();
    if (error < 0) {
        throw ToolError("cannot read " + path + ": " + reasonOf(error));
    }
    const AVCodec* codec = nullptr;
    const int index = av_find_best_stream(format, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    if (index < 0) {
        throw ToolError("cannot read " + path + ": no pictures that can be decoded");
    }
    stream_ = format->streams[index];
    for (unsigned i = 0; i < format->nb_streams; ++i) {
        format->streams[i]->discard =
            format->streams[i] == stream_ ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    turns_ = quarterTurns(*stream_);
    openCodec(codec);
}

void Decoder::openCodec(const AVCodec* codec) {
    const AVCodec* withAlpha = alphaDecoder(*stream_);
    codec = withAlpha != nullptr ? withAlpha : codec;
    codec_.reset(avcodec_alloc_context3(codec));
    if (!codec_) {
        throw std::bad_alloc();
    }
    int error = avcodec_parameters_to_context(codec_.get(), stream_->codecpar);
    if (error >= 0) {
        codec_->pkt_timebase = stream_->time_base;
        error = avcodec_open2(codec_.get(), codec, nullptr);
    }
    if (error < 0) {
        throw ToolError("cannot decode the pictures: " + reasonOf(error));
    }
}

// A seek that lands too late, or fails, is of no use: the caller opens the file again.
bool Decoder::seek(double start) {
    const int64_t first = stream_->start_time == AV_NOPTS_VALUE ? 0 : stream_->start_time;
    const int64_t target =
        first + static_cast<int64_t>(std::floor(start / secondsOf(stream_->time_base)));
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
            return avcodec_send_packet(codec_.get(), nullptr) >= 0;
        }
        const bool ours = packet_->stream_index == stream_->index;
        const int sent = ours ? avcodec_send_packet(codec_.get(), packet_.get()) : 0;
        av_packet_unref(packet_.get());
        if (ours && sent >= 0) {
            return true;
        }
        damaged_ += ours ? 1 : 0;
    }
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
    const double unit = secondsOf(stream_->time_base);
    const AVFrame& picture = *frame.picture;
    const AVRational rate = av_guess_frame_rate(format_.get(), stream_, frame.picture.get());
    frame.duration = static_cast<double>(durationOf(picture)) * unit;
    if (!(frame.duration > 0)) {
        frame.duration =
            rate.num > 0 && rate.den > 0 ? secondsOf(av_inv_q(rate)) : kFallbackFrameSeconds;
    }
    frame.time = expectedTime_;
    if (picture.best_effort_timestamp != AV_NOPTS_VALUE) {
        const int64_t first = stream_->start_time == AV_NOPTS_VALUE ? 0 : stream_->start_time;
        frame.time = static_cast<double>(picture.best_effort_timestamp - first) * unit;
    }
    expectedTime_ = frame.time + frame.duration;
}

double Decoder::pixelAspect(AVFrame* picture) const {
    const AVRational aspect = av_guess_sample_aspect_ratio(format_.get(), stream_, picture);
    return aspect.num > 0 && aspect.den > 0 ? secondsOf(aspect) : 1.0;
}

double Decoder::seconds() const {
    if (stream_->duration != AV_NOPTS_VALUE) {
        return static_cast<double>(stream_->duration) * secondsOf(stream_->time_base);
    }
    return format_->duration != AV_NOPTS_VALUE
               ? static_cast<double>(format_->duration) / AV_TIME_BASE
               : 0;
}

}  // namespace maker
