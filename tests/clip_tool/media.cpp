#include "clip_tool/media.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/display.h>
}

namespace media {

namespace {

void require(bool good, const char* what) {
    if (!good) {
        std::fprintf(stderr, "the test media could not be made: %s\n", what);
        std::abort();
    }
}

void setTurns(AVStream& stream, int turns) {
    const size_t bytes = 9 * sizeof(int32_t);
#if LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(60, 31, 102)
    uint8_t* data = av_packet_side_data_new(&stream.codecpar->coded_side_data,
                                            &stream.codecpar->nb_coded_side_data,
                                            AV_PKT_DATA_DISPLAYMATRIX, bytes, 0)
                        ->data;
#else
    uint8_t* data = av_stream_new_side_data(&stream, AV_PKT_DATA_DISPLAYMATRIX, bytes);
#endif
    require(data != nullptr, "side data");
    // FFmpeg's call takes the angle clockwise here, and reads it counter-clockwise.
    av_display_rotation_set(reinterpret_cast<int32_t*>(data), 90.0 * turns);
}

class Writer {
public:
    explicit Writer(const Recipe& recipe);
    ~Writer();
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void encode(const AVFrame* picture);
    AVFrame* picture() { return picture_; }
    void finish() { require(av_write_trailer(format_) >= 0, "trailer"); }

private:
    AVFormatContext* format_ = nullptr;
    AVCodecContext* codec_ = nullptr;
    AVStream* stream_ = nullptr;
    AVFrame* picture_ = av_frame_alloc();
    AVPacket* packet_ = av_packet_alloc();
};

Writer::Writer(const Recipe& recipe) {
    av_log_set_level(AV_LOG_QUIET);
    require(avformat_alloc_output_context2(&format_, nullptr, nullptr, recipe.path.c_str()) >= 0,
            "container");
    const AVCodec* codec = avcodec_find_encoder(recipe.codec);
    require(codec != nullptr, "encoder");
    codec_ = avcodec_alloc_context3(codec);
    codec_->width = recipe.width;
    codec_->height = recipe.height;
    codec_->pix_fmt = recipe.pixels;
    codec_->time_base = av_inv_q(recipe.fps);
    codec_->framerate = recipe.fps;
    codec_->sample_aspect_ratio = recipe.pixelAspect;
    codec_->color_trc = recipe.transfer;
    codec_->field_order = recipe.interlaced ? AV_FIELD_TT : AV_FIELD_UNKNOWN;
    codec_->thread_count = 1;
    if ((format_->oformat->flags & AVFMT_GLOBALHEADER) != 0) {
        codec_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    }
    require(avcodec_open2(codec_, codec, nullptr) >= 0, "codec");
    stream_ = avformat_new_stream(format_, nullptr);
    avcodec_parameters_from_context(stream_->codecpar, codec_);
    stream_->time_base = codec_->time_base;
    stream_->avg_frame_rate = recipe.fps;
    stream_->sample_aspect_ratio = recipe.pixelAspect;
    if (recipe.turns != 0) {
        setTurns(*stream_, recipe.turns);
    }
    if ((format_->oformat->flags & AVFMT_NOFILE) == 0) {
        require(avio_open(&format_->pb, recipe.path.c_str(), AVIO_FLAG_WRITE) >= 0, "file");
    }
    require(avformat_write_header(format_, nullptr) >= 0, "header");
    picture_->width = recipe.width;
    picture_->height = recipe.height;
    picture_->format = recipe.pixels;
    picture_->sample_aspect_ratio = recipe.pixelAspect;
    require(av_frame_get_buffer(picture_, 0) >= 0, "picture");
    for (const AVBufferRef* buffer : picture_->buf) {
        if (buffer != nullptr) {
            memset(buffer->data, 0, buffer->size);
        }
    }
}

Writer::~Writer() {
    if ((format_->oformat->flags & AVFMT_NOFILE) == 0) {
        avio_closep(&format_->pb);
    }
    avcodec_free_context(&codec_);
    avformat_free_context(format_);
    av_frame_free(&picture_);
    av_packet_free(&packet_);
}

void Writer::encode(const AVFrame* picture) {
    require(avcodec_send_frame(codec_, picture) >= 0, "frame");
    while (avcodec_receive_packet(codec_, packet_) >= 0) {
        if (packet_->duration == 0) {
            packet_->duration = 1;
        }
        av_packet_rescale_ts(packet_, codec_->time_base, stream_->time_base);
        packet_->stream_index = stream_->index;
        require(av_interleaved_write_frame(format_, packet_) >= 0, "packet");
    }
}

}  // namespace

void write(const Recipe& recipe) {
    Writer writer(recipe);
    for (int frame = 0; frame < recipe.frames; ++frame) {
        require(av_frame_make_writable(writer.picture()) >= 0, "picture");
        recipe.fill(frame, *writer.picture());
        writer.picture()->pts = recipe.time ? recipe.time(frame) : frame;
        writer.encode(writer.picture());
    }
    writer.encode(nullptr);
    writer.finish();
}

uint8_t* pixelAt(AVFrame& picture, int x, int y, int bytes) {
    return picture.data[0] + y * picture.linesize[0] + x * bytes;
}

void fillNoise(AVFrame& picture, uint32_t seed) {
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < 4 * picture.width; ++x) {
            seed = seed * 1664525 + 1013904223;
            *pixelAt(picture, x, y, 1) = static_cast<uint8_t>(seed >> 24);
        }
    }
}

void fillBytes(AVFrame& picture, uint8_t a, uint8_t b, uint8_t c, uint8_t d) {
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            uint8_t* pixel = pixelAt(picture, x, y);
            pixel[0] = a;
            pixel[1] = b;
            pixel[2] = c;
            pixel[3] = d;
        }
    }
}

}  // namespace media
