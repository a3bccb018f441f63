#include "ffmpeg_codec.h"

extern "C" {
#include <libavutil/log.h>
#include <libswscale/swscale.h>
}

#include <cstdio>
#include <cstdlib>

#include "common/limits.h"

namespace {

constexpr int kMjpegQuality = 3;  // of 1, the best, to 31

template <typename T>
T* required(T* made, const char* what) {
    if (made == nullptr) {
        fprintf(stderr, "FFmpeg has no %s\n", what);
        exit(1);
    }
    return made;
}

void require(int result, const char* what) {
    if (result < 0) {
        fprintf(stderr, "FFmpeg refuses: %s\n", what);
        exit(1);
    }
}

}  // namespace

FfmpegCodec::FfmpegCodec(AVCodecID id, AVPixelFormat format, const std::vector<Picture>& pictures)
    : decoded_(av_frame_alloc()) {
    av_log_set_level(AV_LOG_ERROR);
    encode(id, format, pictures);
    const AVCodec* codec = required(avcodec_find_decoder(id), "decoder");
    decoder_.reset(avcodec_alloc_context3(codec));
    decoder_->width = kFrameWidth;
    decoder_->height = kFrameHeight;
    decoder_->codec_tag = id == AV_CODEC_ID_HAP ? MKTAG('H', 'a', 'p', '1') : 0;
    decoder_->thread_count = 1;
    require(avcodec_open2(decoder_.get(), codec, nullptr), "opening the decoder");
}

void FfmpegCodec::encode(AVCodecID id, AVPixelFormat format, const std::vector<Picture>& pictures) {
    const AVCodec* codec = required(avcodec_find_encoder(id), "encoder");
    const Owned<AVCodecContext> encoder(avcodec_alloc_context3(codec));
    encoder->width = kFrameWidth;
    encoder->height = kFrameHeight;
    encoder->pix_fmt = format;
    encoder->time_base = {1, 25};
    encoder->flags |= AV_CODEC_FLAG_QSCALE;
    encoder->global_quality = kMjpegQuality * FF_QP2LAMBDA;
    encoder->thread_count = 1;
    require(avcodec_open2(encoder.get(), codec, nullptr), "opening the encoder");
    SwsContext* scaler =
        required(sws_getContext(kFrameWidth, kFrameHeight, AV_PIX_FMT_RGB565, kFrameWidth,
                                kFrameHeight, format, SWS_BILINEAR, nullptr, nullptr, nullptr),
                 "conversion");
    const Owned<AVFrame> frame(av_frame_alloc());
    frame->width = kFrameWidth;
    frame->height = kFrameHeight;
    frame->format = format;
    frame->quality = encoder->global_quality;
    require(av_frame_get_buffer(frame.get(), 0), "a frame");
    for (const Picture& picture : pictures) {
        const uint8_t* const planes[] = {reinterpret_cast<const uint8_t*>(picture.data())};
        const int strides[] = {kFrameWidth * 2};
        sws_scale(scaler, planes, strides, 0, kFrameHeight, frame->data, frame->linesize);
        frame->pts = static_cast<int64_t>(packets_.size());
        require(avcodec_send_frame(encoder.get(), frame.get()), "encoding");
        packets_.emplace_back(av_packet_alloc());
        require(avcodec_receive_packet(encoder.get(), packets_.back().get()), "a packet");
    }
    sws_freeContext(scaler);
}

void FfmpegCodec::decode(size_t picture) {
    require(avcodec_send_packet(decoder_.get(), packets_[picture].get()), "decoding");
    require(avcodec_receive_frame(decoder_.get(), decoded_.get()), "a decoded frame");
}

size_t FfmpegCodec::bytes() const {
    size_t sum = 0;
    for (const auto& packet : packets_) {
        sum += static_cast<size_t>(packet->size);
    }
    return sum;
}
