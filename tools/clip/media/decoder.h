#pragma once
// The first video stream of a file, decoded by FFmpeg: pictures with their times.
//
// Times are in seconds from the beginning of the stream. Damaged packets are counted and skipped.
// The cover picture of a music file is no video. What cannot be opened, holds no video or has
// pictures beyond the limits is thrown as ToolError; an interrupt stops reading.

#include <memory>
#include <string>

#include "tools/clip/media/media_file.h"

namespace maker {

FramePtr newFrame();

struct TimedFrame {
    FramePtr picture;
    double time = 0;
    double duration = 0;
};

struct DecoderOptions {
    std::string path;       // or the pattern of an image sequence (image_sequence.h)
    double start = 0;       // decoding begins at or before it where the file can seek
    double pictureFps = 0;  // of an image sequence, which has no times of its own
    int threads = 1;
};

class Decoder {
public:
    explicit Decoder(const DecoderOptions& options);

    // The next picture, which names the shape of its pixels; false at the end.
    bool next(TimedFrame& frame);

    int turns() const { return turns_; }  // quarter turns clockwise that make the picture upright
    double seconds() const;               // of the whole stream; 0 when the file does not tell
    int damaged() const { return damaged_; }

    // Once next() has come to the end: "" or, when the file breaks off, how that shows.
    std::string cutOff() const;

private:
    void open();
    void checkSize(int width, int height) const;
    void openCodec(const AVCodec* codec);
    bool seek(double start);
    bool sendPacket();
    void notePacket(const AVPacket& packet);
    void setTimes(TimedFrame& frame);
    bool streamTellsLength() const { return stream_->duration != AV_NOPTS_VALUE; }

    DecoderOptions options_;
    FormatPtr format_;
    CodecPtr codec_;
    PacketPtr packet_;
    AVStream* stream_ = nullptr;
    int turns_ = 0;
    int damaged_ = 0;
    bool draining_ = false;
    bool readFailed_ = false;      // reading ended before the end of the file
    bool lastIncomplete_ = false;  // the last packet read is
    double packetsEnd_ = 0;        // seconds from the beginning of the file
    double expectedTime_ = 0;      // of the next picture, should it have no timestamp
    TimedFrame ahead_;             // decoded to try out a seek
};

}  // namespace maker
