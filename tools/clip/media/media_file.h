#pragma once
// A media file opened by FFmpeg, and what its container says about the video in it.
//
// Patterns of numbered pictures are opened like files, pipes are not: whoever makes a clip goes
// through its input more than once. FFmpeg's own log is silent; what cannot be opened is thrown as
// ToolError, and an interrupt stops opening and all later reading.

#include <cstdint>
#include <memory>
#include <new>
#include <string>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

namespace maker {

// The largest pictures that are read: some hundred megabytes each while they are scaled.
inline constexpr int kMaxPictureSide = 16384;
inline constexpr int64_t kMaxPicturePixels = int64_t{1} << 26;

// What FFmpeg gives when there is memory for it.
template <class Object>
Object* needed(Object* object) {
    return object != nullptr ? object : throw std::bad_alloc();
}

// An FFmpeg object with the call that frees it, which takes its address.
template <class Object, void (*kFree)(Object**)>
struct FreeByAddress {
    void operator()(Object* object) const { kFree(&object); }
};
template <class Object, void (*kFree)(Object**)>
using AvPtr = std::unique_ptr<Object, FreeByAddress<Object, kFree>>;

using FormatPtr = AvPtr<AVFormatContext, avformat_close_input>;
using CodecPtr = AvPtr<AVCodecContext, avcodec_free_context>;
using PacketPtr = AvPtr<AVPacket, av_packet_free>;
using FramePtr = AvPtr<AVFrame, av_frame_free>;

// `pictureFps` is the pace of an image sequence, which has no times of its own.
FormatPtr openMedia(const std::string& path, double pictureFps);

// The best video stream that is not the cover picture of a music file, and its decoder; thrown as
// ToolError when there is none.
AVStream* videoStream(AVFormatContext& format, const std::string& path, const AVCodec** codec);

// Quarter turns clockwise that make the pictures upright.
int quarterTurns(const AVStream& stream);

// FFmpeg's words for one of its error numbers.
std::string reasonOf(int error);

// The same beside what is wrong with a file and what to do about it.
std::string troubleOf(int error);

}  // namespace maker
