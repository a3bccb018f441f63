#pragma once
// A codec of FFmpeg to time the clip decoder beside: the same pictures, encoded by FFmpeg's own
// encoder and decoded on one thread. Ends the program when FFmpeg refuses.

#include <cstdint>
#include <memory>
#include <vector>

extern "C" {
#include <libavcodec/avcodec.h>
}

using Picture = std::vector<uint16_t>;  // 640 x 360 pixels of RGB565

class FfmpegCodec {
public:
    FfmpegCodec(AVCodecID id, AVPixelFormat format, const std::vector<Picture>& pictures);

    void decode(size_t picture);  // into a frame of FFmpeg's own
    size_t pictures() const { return packets_.size(); }
    size_t bytes() const;  // of all packets

private:
    struct Free {
        void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
        void operator()(AVFrame* frame) const { av_frame_free(&frame); }
        void operator()(AVPacket* packet) const { av_packet_free(&packet); }
    };
    template <typename T>
    using Owned = std::unique_ptr<T, Free>;

    void encode(AVCodecID id, AVPixelFormat format, const std::vector<Picture>& pictures);

    std::vector<Owned<AVPacket>> packets_;
    Owned<AVCodecContext> decoder_;
    Owned<AVFrame> decoded_;
};
