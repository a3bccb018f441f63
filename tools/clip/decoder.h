#pragma once
// The first video stream of a file, decoded by FFmpeg: pictures with their times.
//
// Times are in seconds from the beginning of the stream. Damaged packets are counted and skipped.
// What cannot be opened or holds no video is thrown as ToolError; an interrupt stops reading.

#include <memory>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace maker {

// For each FFmpeg object the call that frees it.
struct FreeFormat {
    void operator()(AVFormatContext* format) const { avformat_close_input(&format); }
};
struct FreeCodec {
    void operator()(AVCodecContext* codec) const { avcodec_free_context(&codec); }
};
struct FreePacket {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};
struct FreeFrame {
    void operator()(AVFrame* frame) const { av_frame_free(&frame); }
};

using FramePtr = std::unique_ptr<AVFrame, FreeFrame>;

FramePtr newFrame();

struct TimedFrame {
    FramePtr picture;
    double time = 0;
    double duration = 0;
};

class Decoder {
public:
    // Decoding begins at or before `start` where the file can seek, else at the beginning.
    Decoder(const std::string& path, double start);

    // The next picture; false at the end.
    bool next(TimedFrame& frame);

    double pixelAspect(AVFrame* picture) const;
    int turns() const { return turns_; }  // quarter turns clockwise that make the picture upright
    double seconds() const;               // of the whole stream; 0 when the file does not tell
    int damaged() const { return damaged_; }

private:
    void open(const std::string& path);
    void openCodec(const AVCodec* codec);
    bool seek(double start);
    bool sendPacket();
    void setTimes(TimedFrame& frame);

    std::unique_ptr<AVFormatContext, FreeFormat> format_;
    std::unique_ptr<AVCodecContext, FreeCodec> codec_;
    std::unique_ptr<AVPacket, FreePacket> packet_;
    AVStream* stream_ = nullptr;
    int turns_ = 0;
    int damaged_ = 0;
    bool draining_ = false;
    double expectedTime_ = 0;  // of the next picture, should it have no timestamp
    TimedFrame ahead_;         // decoded to try out a seek
};

}  // namespace maker
