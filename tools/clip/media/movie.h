#pragma once
// Pictures to a moving or still picture file, by FFmpeg: pictures in, the whole file's bytes out.
//
// All pictures have one size. What the kind cannot hold is the caller's to lay over something:
// without `keepsAlpha` the alpha channel is dropped. Failures are thrown as ToolError.

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/clip/media/decoder.h"
#include "tools/clip/media/filter_graph.h"
#include "tools/clip/media/picture.h"
#include "tools/clip/media/sound_track.h"

namespace maker {

struct MovieKind {
    const char* ending;   // of file names
    const char* muxer;    // FFmpeg's names
    const char* encoder;  //
    const char* filters;  // from RGBA to what the encoder takes
    const char* alphaFilters;
    const char* options;  // of the encoder, "key=value:key=value"
    const char* sound;    // its encoder; null: the kind has no sound
    bool keepsAlpha;      // wholly or as on and off
};

// APNG, GIF, MKV (FFV1) and MP4 (H.264) by the ending of a file name; null for any other.
const MovieKind* movieKindOf(const std::string& path);
std::string movieEndings();  // ".apng, .gif, ..."

extern const MovieKind kPng;   // a single picture
extern const MovieKind kJpeg;  // likewise

// What a film is made of and where it goes.
struct MovieShape {
    int width = 0;  // of the pictures that come
    int height = 0;
    bool alpha = false;
    double fps = 0;
    AVPixelFormat form = AV_PIX_FMT_RGBA;  // of their pixels, which lie without gaps
    std::string filters = {};              // of FFmpeg, before those of the kind
    std::optional<SoundSettings> sound = std::nullopt;
    int file = -1;  // a descriptor that the film is written to, the caller's; -1: into memory
};

class MovieWriter {
public:
    MovieWriter(const MovieKind& kind, int width, int height, bool alpha, double fps);
    MovieWriter(const MovieKind& kind, const MovieShape& shape);

    void add(const Picture& picture);
    void add(const void* pixels);
    std::vector<uint8_t> finish();  // empty where a file has got them

private:
    struct FreeMuxer {
        void operator()(AVFormatContext* format) const;
    };

    void openOutput();
    void openSound();
    void writeSound(bool last);

    void openEncoder();
    void openFile();
    void drainFilters();
    void encode(const AVFrame* frame);
    void require(int result, const char* step) const;

    const MovieKind& kind_;
    MovieShape shape_;
    AVRational frameTime_;
    std::optional<FilterGraph> graph_;
    CodecPtr codec_;
    std::unique_ptr<AVFormatContext, FreeMuxer> muxer_;
    AVStream* stream_ = nullptr;
    std::optional<SoundTrack> sound_;
    AVStream* soundStream_ = nullptr;
    PacketPtr packet_;
    int64_t added_ = 0;
};

// One picture as a file of kPng or kJpeg; alpha is kept where the kind can and `alpha` asks for it.
std::vector<uint8_t> pictureFile(const MovieKind& kind, const Picture& picture, bool alpha);

}  // namespace maker
