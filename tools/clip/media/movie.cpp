#include "tools/clip/media/movie.h"

#include <unistd.h>

#include <cerrno>
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
    {".apng", "apng", "apng", "format=rgb24", "format=rgba", "", nullptr, true},
    {".gif", "gif", "gif",
     "split[a][b];[a]palettegen=stats_mode=single:reserve_transparent=0[p];[b][p]paletteuse=new=1",
     "split[a][b];[a]palettegen=stats_mode=single[p];[b][p]paletteuse=new=1:alpha_threshold=128",
     "", nullptr, true},
    {".mkv", "matroska", "ffv1", "format=bgr0", "format=bgra", "level=3:slicecrc=1", "flac", true},
    {".mp4", "mp4", "libx264",
     "scale=out_color_matrix=bt709:out_range=limited:flags=accurate_rnd,format=yuv420p", "",
     "crf=16:colorspace=bt709:color_primaries=bt709:color_trc=bt709:color_range=tv", "aac", false},
};
// clang-format on

// With the pixels copied; without any it is not filled.
FramePtr frameOf(const MovieShape& shape, const void* pixels) {
    FramePtr frame = newFrame();
    frame->width = shape.width;
    frame->height = shape.height;
    frame->format = shape.form;
    if (av_frame_get_buffer(frame.get(), 0) < 0) {
        throw std::bad_alloc();
    }
    if (pixels != nullptr) {
        const int pitch = av_image_get_linesize(shape.form, shape.width, 0);
        av_image_copy_plane(frame->data[0], frame->linesize[0], static_cast<const uint8_t*>(pixels),
                            pitch, pitch, shape.height);
    }
    return frame;
}

// FFmpeg's writing and seeking, on a file that is the caller's.
int writeTo(void* shape, uint8_t* bytes, int count) {
    const int file = static_cast<MovieShape*>(shape)->file;
    for (int done = 0; done < count;) {
        const ssize_t written = write(file, bytes + done, static_cast<size_t>(count - done));
        if (written < 0 && errno != EINTR) {
            return AVERROR(errno);
        }
        done += written > 0 ? static_cast<int>(written) : 0;
    }
    return count;
}

int64_t seekIn(void* shape, int64_t offset, int whence) {
    const bool known = whence == SEEK_SET || whence == SEEK_CUR || whence == SEEK_END;
    const off_t at = known ? lseek(static_cast<MovieShape*>(shape)->file, offset, whence) : -1;
    return at >= 0 ? at : AVERROR(known ? errno : ENOSYS);
}

std::string sentenceOf(const MovieKind& kind) {
    return std::string("cannot make a ") + kind.ending + " file";
}

}  // namespace

const MovieKind kPng{".png", "image2pipe", "png", "format=rgb24", "format=rgba", "", nullptr, true};
// The quality is 3 of 2 (best) to 31, in FFmpeg's units of 118.
const MovieKind kJpeg{
    ".jpg",  "image2pipe", "mjpeg", "format=yuvj444p", "", "flags=qscale:global_quality=354",
    nullptr, false};

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
    if (format->pb != nullptr && (format->flags & AVFMT_FLAG_CUSTOM_IO) != 0) {
        av_freep(&format->pb->buffer);
        avio_context_free(&format->pb);
    } else if (format->pb != nullptr) {
        uint8_t* bytes = nullptr;
        avio_close_dyn_buf(format->pb, &bytes);
        av_free(bytes);
    }
    avformat_free_context(format);
}

MovieWriter::MovieWriter(const MovieKind& kind, int width, int height, bool alpha, double fps)
    : MovieWriter(kind, {.width = width, .height = height, .alpha = alpha, .fps = fps}) {}

MovieWriter::MovieWriter(const MovieKind& kind, const MovieShape& shape)
    : kind_(kind),
      shape_(shape),
      frameTime_(av_inv_q(av_d2q(shape.fps, kLargestTerm))),
      packet_(needed(av_packet_alloc())) {
    const char* const own = shape.alpha && kind.keepsAlpha ? kind.alphaFilters : kind.filters;
    const std::string filters = shape.filters.empty() ? own : shape.filters + "," + own;
    graph_.emplace(*frameOf(shape, nullptr), frameTime_, filters, sentenceOf(kind));
    openEncoder();
    openFile();
}

void MovieWriter::require(int result, const char* step) const {
    if (result < 0) {
        throw ToolError(sentenceOf(kind_) + ": " + step + ": " + reasonOf(result));
    }
}

void MovieWriter::openEncoder() {
    const AVCodec* codec = avcodec_find_encoder_by_name(kind_.encoder);
    require(codec != nullptr ? 0 : AVERROR_ENCODER_NOT_FOUND, kind_.encoder);
    codec_.reset(needed(avcodec_alloc_context3(codec)));
    codec_->width = av_buffersink_get_w(graph_->sink());
    codec_->height = av_buffersink_get_h(graph_->sink());
    codec_->pix_fmt = static_cast<AVPixelFormat>(av_buffersink_get_format(graph_->sink()));
    codec_->time_base = frameTime_;
    codec_->framerate = av_inv_q(frameTime_);
    codec_->sample_aspect_ratio = {1, 1};
    require(av_set_options_string(codec_.get(), kind_.options, "=", ":"), "options");
}

void MovieWriter::openOutput() {
    constexpr int kBuffer = 1 << 16;
    if (shape_.file < 0) {
        require(avio_open_dyn_buf(&muxer_->pb), "memory");
        return;
    }
    muxer_->flags |= AVFMT_FLAG_CUSTOM_IO;
    auto* const buffer = static_cast<uint8_t*>(needed(av_malloc(kBuffer)));
    muxer_->pb = avio_alloc_context(buffer, kBuffer, 1, &shape_, nullptr, writeTo, seekIn);
    if (muxer_->pb == nullptr) {
        av_free(buffer);
        throw std::bad_alloc();
    }
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
    openSound();
    openOutput();
    // Repeats for ever, where the kind of file can say so.
    av_opt_set(format, "plays", "0", AV_OPT_SEARCH_CHILDREN);
    require(avformat_write_header(format, nullptr), kind_.muxer);
}

void MovieWriter::openSound() {
    if (!shape_.sound) {
        return;
    }
    require(kind_.sound != nullptr ? 0 : AVERROR_ENCODER_NOT_FOUND, "sound");
    const bool header = (muxer_->oformat->flags & AVFMT_GLOBALHEADER) != 0;
    sound_.emplace(*shape_.sound, kind_.sound, header);
    soundStream_ = needed(avformat_new_stream(muxer_.get(), nullptr));
    require(avcodec_parameters_from_context(soundStream_->codecpar, sound_->encoder()),
            kind_.muxer);
    soundStream_->time_base = sound_->encoder()->time_base;
}

// Up to the time of the picture that was added last.
void MovieWriter::writeSound(bool last) {
    if (!sound_) {
        return;
    }
    const auto write = [this](AVPacket& packet) {
        av_packet_rescale_ts(&packet, sound_->encoder()->time_base, soundStream_->time_base);
        packet.stream_index = soundStream_->index;
        require(av_interleaved_write_frame(muxer_.get(), &packet), kind_.muxer);
    };
    const double unit = av_q2d(frameTime_);
    if (last) {
        sound_->finish(static_cast<double>(added_) * unit, write);
    } else {
        sound_->writeUntil(static_cast<double>(added_ - 1) * unit, write);
    }
}

void MovieWriter::add(const Picture& picture) {
    add(picture.rgba.data());
}

void MovieWriter::add(const void* pixels) {
    stopIfInterrupted();
    const FramePtr frame = frameOf(shape_, pixels);
    frame->pts = added_++;
    graph_->push(frame.get());
    drainFilters();
    writeSound(false);
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
    writeSound(true);
    require(av_write_trailer(muxer_.get()), kind_.muxer);
    if (shape_.file >= 0) {
        avio_flush(muxer_->pb);
        require(muxer_->pb->error, "writing");
        return {};
    }
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
