#include "tools/clip/media/movie.h"

#include <filesystem>

extern "C" {
#include <libavfilter/buffersink.h>
#include <libavutil/imgutils.h>
#include <libavutil/opt.h>
}

#include "tools/base/errors.h"
#include "tools/clip/media/media_file.h"

namespace maker {

namespace {

constexpr int kLargestTerm = 100000;  // of the frame rate as a fraction

// The palette of a GIF is made anew for every frame, so that few colours stay exact.
// An MP4's colours are those of high-definition video, as players expect.
// clang-format off
constexpr MovieKind kMovies[] = {
    {".apng", "apng", "apng", "format=rgb24", "format=rgba", "", true},
    {".gif", "gif", "gif",
     "split[a][b];[a]palettegen=stats_mode=single:reserve_transparent=0[p];[b][p]paletteuse=new=1",
     "split[a][b];[a]palettegen=stats_mode=single[p];[b][p]paletteuse=new=1:alpha_threshold=128",
     "", true},
    {".mkv", "matroska", "ffv1", "format=bgr0", "format=bgra", "level=3:slicecrc=1", true},
    {".mp4", "mp4", "libx264",
     "scale=out_color_matrix=bt709:out_range=limited:flags=accurate_rnd,format=yuv420p", "",
     "crf=16:colorspace=bt709:color_primaries=bt709:color_trc=bt709:color_range=tv", false},
};
// clang-format on

FramePtr frameOf(const Picture& picture) {
    FramePtr frame = newFrame();
    frame->width = picture.width;
    frame->height = picture.height;
    frame->format = AV_PIX_FMT_RGBA;
    if (av_frame_get_buffer(frame.get(), 0) < 0) {
        throw std::bad_alloc();
    }
    const int pitch = picture.width * 4;
    av_image_copy_plane(frame->data[0], frame->linesize[0], picture.rgba.data(), pitch, pitch,
                        picture.height);
    return frame;
}

std::string sentenceOf(const MovieKind& kind) {
    return std::string("cannot make a ") + kind.ending + " file";
}

}  // namespace

const MovieKind kPng{".png", "image2pipe", "png", "format=rgb24", "format=rgba", "", true};
// The quality is 3 of 2 (best) to 31, in FFmpeg's units of 118.
const MovieKind kJpeg{
    ".jpg", "image2pipe", "mjpeg", "format=yuvj444p", "", "flags=qscale:global_quality=354", false};

const MovieKind* movieKindOf(const std::string& path) {
    for (const MovieKind& kind : kMovies) {
        if (std::filesystem::path(path).extension() == kind.ending) {
            return &kind;
        }
    }
    return nullptr;
}

std::string movieEndings() {
    std::string text;
    for (const MovieKind& kind : kMovies) {
        text += (text.empty() ? "" : ", ") + std::string(kind.ending);
    }
    return text;
}

void MovieWriter::FreeMuxer::operator()(AVFormatContext* format) const {
    if (format->pb != nullptr) {
        uint8_t* bytes = nullptr;
        avio_close_dyn_buf(format->pb, &bytes);
        av_free(bytes);
    }
    avformat_free_context(format);
}

MovieWriter::MovieWriter(const MovieKind& kind, int width, int height, bool alpha, double fps)
    : kind_(kind),
      frameTime_(av_inv_q(av_d2q(fps, kLargestTerm))),
      packet_(needed(av_packet_alloc())) {
    const char* filters = alpha && kind.keepsAlpha ? kind.alphaFilters : kind.filters;
    graph_.emplace(*frameOf(Picture(width, height)), frameTime_, filters, sentenceOf(kind));
    openEncoder(fps);
    openFile();
}

void MovieWriter::require(int result, const char* step) const {
    if (result < 0) {
        throw ToolError(sentenceOf(kind_) + ": " + step + ": " + reasonOf(result));
    }
}

void MovieWriter::openEncoder(double fps) {
    const AVCodec* codec = avcodec_find_encoder_by_name(kind_.encoder);
    require(codec != nullptr ? 0 : AVERROR_ENCODER_NOT_FOUND, kind_.encoder);
    codec_.reset(needed(avcodec_alloc_context3(codec)));
    codec_->width = av_buffersink_get_w(graph_->sink());
    codec_->height = av_buffersink_get_h(graph_->sink());
    codec_->pix_fmt = static_cast<AVPixelFormat>(av_buffersink_get_format(graph_->sink()));
    codec_->time_base = frameTime_;
    codec_->framerate = av_d2q(fps, kLargestTerm);
    codec_->sample_aspect_ratio = {1, 1};
    require(av_set_options_string(codec_.get(), kind_.options, "=", ":"), "options");
}

void MovieWriter::openFile() {
    AVFormatContext* format = nullptr;
    require(avformat_alloc_output_context2(&format, nullptr, kind_.muxer, nullptr), kind_.muxer);
    muxer_.reset(format);
    if ((format->oformat->flags & AVFMT_GLOBALHEADER) != 0) {
        codec_->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    }
    require(avcodec_open2(codec_.get(), nullptr, nullptr), kind_.encoder);
    format->flags |= AVFMT_FLAG_BITEXACT;  // the same pictures make the same file
    stream_ = needed(avformat_new_stream(format, nullptr));
    require(avcodec_parameters_from_context(stream_->codecpar, codec_.get()), kind_.muxer);
    stream_->time_base = frameTime_;
    stream_->avg_frame_rate = codec_->framerate;
    stream_->sample_aspect_ratio = {1, 1};
    require(avio_open_dyn_buf(&format->pb), "memory");
    // Repeats for ever, where the kind of file can say so.
    av_opt_set(format, "plays", "0", AV_OPT_SEARCH_CHILDREN);
    require(avformat_write_header(format, nullptr), kind_.muxer);
}

void MovieWriter::add(const Picture& picture) {
    stopIfInterrupted();
    const FramePtr frame = frameOf(picture);
    frame->pts = added_++;
    graph_->push(frame.get());
    drainFilters();
}

void MovieWriter::drainFilters() {
    for (;;) {
        const FramePtr frame = newFrame();
        if (!graph_->pull(*frame)) {
            return;
        }
        frame->pict_type = AV_PICTURE_TYPE_NONE;
        encode(frame.get());
    }
}

void MovieWriter::encode(const AVFrame* frame) {
    require(avcodec_send_frame(codec_.get(), frame), kind_.encoder);
    for (;;) {
        const int result = avcodec_receive_packet(codec_.get(), packet_.get());
        if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) {
            return;
        }
        require(result, kind_.encoder);
        AVPacket& packet = *packet_;
        // Times are rounded down: whoever samples the file at its own rate meets every frame once.
        const auto rounded = [this](int64_t time) {
            return av_rescale_q_rnd(time, codec_->time_base, stream_->time_base, AV_ROUND_DOWN);
        };
        packet.duration = rounded(packet.pts + 1) - rounded(packet.pts);
        packet.pts = rounded(packet.pts);
        packet.dts = rounded(packet.dts);
        packet.stream_index = stream_->index;
        require(av_interleaved_write_frame(muxer_.get(), &packet), kind_.muxer);
    }
}

std::vector<uint8_t> MovieWriter::finish() {
    graph_->push(nullptr);
    drainFilters();
    encode(nullptr);
    require(av_write_trailer(muxer_.get()), kind_.muxer);
    // Closing the memory would overwrite what follows the place that the trailer went back to.
    uint8_t* bytes = nullptr;
    const int size = avio_get_dyn_buf(muxer_->pb, &bytes);
    return {bytes, bytes + size};
}

std::vector<uint8_t> pictureFile(const MovieKind& kind, const Picture& picture, bool alpha) {
    MovieWriter writer(kind, picture.width, picture.height, alpha, 1);
    writer.add(picture);
    return writer.finish();
}

}  // namespace maker
