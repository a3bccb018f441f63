#include "tools/clip/media/sound_track.h"

#include <algorithm>
#include <cmath>

extern "C" {
#include <libavutil/samplefmt.h>
}

#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/media/decoder.h"

namespace maker {

namespace {

constexpr int kRate = 48000;           // samples a second of the film
constexpr int kSamplesAtOnce = 1024;   // what every encoder takes
constexpr int64_t kBitRate = 192'000;  // of one that leaves something out

int64_t samplesIn(double seconds) {
    return std::llround(seconds * kRate);
}

std::string filtersOf(const SoundSettings& settings, const AVCodec& encoder) {
    const std::string form = av_get_sample_fmt_name(encoder.sample_fmts[0]);
    std::string filters = "aformat=sample_fmts=" + form + ":sample_rates=" + std::to_string(kRate) +
                          ":channel_layouts=stereo";
    if (settings.start > 0) {
        filters += ",atrim=start=" + decimals(settings.start, 6) + ",asetpts=N";
    }
    return filters + ",asetnsamples=n=" + std::to_string(kSamplesAtOnce) + ":p=0";
}

}  // namespace

SoundTrack::SoundTrack(const SoundSettings& settings, const char* encoder, bool header)
    : settings_(settings),
      format_(openMedia(settings.path, 0)),
      packet_(needed(av_packet_alloc())),
      coded_(needed(av_packet_alloc())) {
    openDecoder();
    openEncoder(encoder, header);
}

void SoundTrack::require(int result, const char* step) const {
    if (result < 0) {
        stopIfInterrupted();
        throw ToolError("cannot take the sound of " + settings_.path + ": " + step + ": " +
                        reasonOf(result));
    }
}

void SoundTrack::openDecoder() {
    const AVCodec* codec = nullptr;
    stream_ = av_find_best_stream(format_.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &codec, 0);
    if (stream_ < 0) {
        throw ToolError("there is no sound in " + settings_.path);
    }
    for (unsigned i = 0; i < format_->nb_streams; ++i) {
        format_->streams[i]->discard =
            static_cast<int>(i) == stream_ ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    }
    decoder_.reset(needed(avcodec_alloc_context3(codec)));
    const AVStream& stream = *format_->streams[stream_];
    require(avcodec_parameters_to_context(decoder_.get(), stream.codecpar), codec->name);
    require(avcodec_open2(decoder_.get(), codec, nullptr), codec->name);
    silence_ = std::max<int64_t>(0, std::llround(-settings_.start * decoder_->sample_rate));
}

void SoundTrack::openEncoder(const char* name, bool header) {
    const AVCodec* codec = avcodec_find_encoder_by_name(name);
    require(codec != nullptr ? 0 : AVERROR_ENCODER_NOT_FOUND, name);
    const FramePtr like = newFrame();
    like->sample_rate = decoder_->sample_rate;
    like->format = decoder_->sample_fmt;
    if (decoder_->ch_layout.order == AV_CHANNEL_ORDER_UNSPEC) {
        av_channel_layout_default(&decoder_->ch_layout, decoder_->ch_layout.nb_channels);
    }
    require(av_channel_layout_copy(&like->ch_layout, &decoder_->ch_layout), name);
    graph_.emplace(*like, AVRational{1, decoder_->sample_rate}, filtersOf(settings_, *codec),
                   "cannot take the sound of " + settings_.path);
    encoder_.reset(needed(avcodec_alloc_context3(codec)));
    encoder_->sample_rate = kRate;
    encoder_->sample_fmt = codec->sample_fmts[0];
    av_channel_layout_default(&encoder_->ch_layout, 2);
    encoder_->time_base = {1, kRate};
    encoder_->bit_rate = kBitRate;
    encoder_->flags |= header ? AV_CODEC_FLAG_GLOBAL_HEADER : 0;
    require(avcodec_open2(encoder_.get(), codec, nullptr), name);
}

// Into the filters, in the place of what the file has later.
void SoundTrack::pushSilence() {
    const FramePtr frame = newFrame();
    frame->nb_samples = static_cast<int>(std::min<int64_t>(silence_, kSamplesAtOnce));
    frame->format = decoder_->sample_fmt;
    frame->sample_rate = decoder_->sample_rate;
    require(av_channel_layout_copy(&frame->ch_layout, &decoder_->ch_layout), "silence");
    require(av_frame_get_buffer(frame.get(), 0), "silence");
    av_samples_set_silence(frame->extended_data, 0, frame->nb_samples, frame->ch_layout.nb_channels,
                           decoder_->sample_fmt);
    silence_ -= frame->nb_samples;
    push(*frame);
}

void SoundTrack::push(AVFrame& frame) {
    frame.pts = pushed_;
    pushed_ += frame.nb_samples;
    graph_->push(&frame);
}

// More of the file into the filters; false at its end, which they have heard of then.
bool SoundTrack::readOn() {
    if (silence_ > 0) {
        pushSilence();
        return true;
    }
    const FramePtr frame = newFrame();
    while (!drained_) {
        const int got = avcodec_receive_frame(decoder_.get(), frame.get());
        if (got >= 0) {
            push(*frame);
            return true;
        }
        if (got == AVERROR_EOF) {
            graph_->push(nullptr);
            drained_ = true;
            return false;
        }
        stopIfInterrupted();
        const int read = av_read_frame(format_.get(), packet_.get());
        // What is damaged is left out.
        if (read < 0) {
            avcodec_send_packet(decoder_.get(), nullptr);
        } else if (packet_->stream_index == stream_) {
            avcodec_send_packet(decoder_.get(), packet_.get());
        }
        av_packet_unref(packet_.get());
    }
    return false;
}

void SoundTrack::encode(const AVFrame* frame, const Write& write) {
    require(avcodec_send_frame(encoder_.get(), frame), encoder_->codec->name);
    while (true) {
        const int got = avcodec_receive_packet(encoder_.get(), coded_.get());
        if (got == AVERROR(EAGAIN) || got == AVERROR_EOF) {
            return;
        }
        require(got, encoder_->codec->name);
        write(*coded_);
    }
}

void SoundTrack::writeUntil(double seconds, const Write& write) {
    const int64_t end = samplesIn(seconds);
    while (encoded_ < end) {
        const FramePtr frame = newFrame();
        if (!graph_->pull(*frame)) {
            if (drained_) {
                return;
            }
            readOn();
            continue;
        }
        frame->nb_samples =
            static_cast<int>(std::min<int64_t>(frame->nb_samples, last_ - encoded_));
        frame->pts = encoded_;
        encoded_ += frame->nb_samples;
        encode(frame.get(), write);
    }
}

void SoundTrack::finish(double seconds, const Write& write) {
    last_ = std::max(encoded_, samplesIn(seconds));
    writeUntil(seconds, write);
    encode(nullptr, write);
}

}  // namespace maker
