#include "tools/clip/media/filter_graph.h"

extern "C" {
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
}

#include "tools/base/errors.h"

namespace maker {

namespace {

std::string ratio(AVRational value) {
    return std::to_string(value.num) + "/" + std::to_string(value.den);
}

bool isSound(const AVFrame& like) {
    return like.sample_rate > 0;
}

std::string soundArguments(const AVFrame& like, AVRational unit) {
    char channels[64];
    av_channel_layout_describe(&like.ch_layout, channels, sizeof channels);
    return "sample_rate=" + std::to_string(like.sample_rate) +
           ":sample_fmt=" + std::to_string(like.format) + ":channel_layout=" + channels +
           ":time_base=" + ratio(unit);
}

std::string sourceArguments(const AVFrame& like, AVRational unit) {
    if (isSound(like)) {
        return soundArguments(like, unit);
    }
    return "video_size=" + std::to_string(like.width) + "x" + std::to_string(like.height) +
           ":pix_fmt=" + std::to_string(like.format) + ":time_base=" + ratio(unit) +
           ":pixel_aspect=" + ratio(like.sample_aspect_ratio);
}

}  // namespace

FilterGraph::FilterGraph(const AVFrame& like, AVRational unit, const std::string& filters,
                         const std::string& sentence)
    : sentence_(sentence),
      width_(like.width),
      height_(like.height),
      format_(like.format),
      graph_(needed(avfilter_graph_alloc())) {
    av_log_set_level(AV_LOG_QUIET);
    const std::string arguments = sourceArguments(like, unit);
    const bool sound = isSound(like);
    const AVFilter* const source = avfilter_get_by_name(sound ? "abuffer" : "buffer");
    const AVFilter* const sink = avfilter_get_by_name(sound ? "abuffersink" : "buffersink");
    require(avfilter_graph_create_filter(&source_, source, "in", arguments.c_str(), nullptr,
                                         graph_.get()));
    require(avfilter_graph_create_filter(&sink_, sink, "out", nullptr, nullptr, graph_.get()));
    AVFilterInOut* begin = needed(avfilter_inout_alloc());
    AVFilterInOut* end = needed(avfilter_inout_alloc());
    *begin = {av_strdup("in"), source_, 0, nullptr};
    *end = {av_strdup("out"), sink_, 0, nullptr};
    const int result =
        avfilter_graph_parse_ptr(graph_.get(), filters.c_str(), &end, &begin, nullptr);
    avfilter_inout_free(&begin);
    avfilter_inout_free(&end);
    require(result);
    require(avfilter_graph_config(graph_.get(), nullptr));
}

void FilterGraph::require(int result) const {
    if (result < 0) {
        throw ToolError(sentence_ + ": " + reasonOf(result));
    }
}

bool FilterGraph::takes(const AVFrame& picture) const {
    return picture.width == width_ && picture.height == height_ && picture.format == format_;
}

void FilterGraph::push(AVFrame* picture) {
    require(av_buffersrc_add_frame(source_, picture));
}

bool FilterGraph::pull(AVFrame& picture) {
    const int result = av_buffersink_get_frame(sink_, &picture);
    if (result == AVERROR(EAGAIN) || result == AVERROR_EOF) {
        return false;
    }
    require(result);
    return true;
}

AVRational FilterGraph::unit() const {
    return av_buffersink_get_time_base(sink_);
}

}  // namespace maker
