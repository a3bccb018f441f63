#pragma once
// Pictures, or sound, through a chain of FFmpeg's filters.
//
// All pictures that go in have the size, format and colours of the one that the graph was made
// for, and all sound its rate, format and channels. What comes out, and when, is the filters'
// business: one may hold pictures back or make more of them. What cannot be done is thrown as
// ToolError: the sentence given, then FFmpeg's reason.

#include <string>

#include "tools/clip/media/media_file.h"

extern "C" {
#include <libavfilter/avfilter.h>
}

namespace maker {

class FilterGraph {
public:
    FilterGraph(const AVFrame& like, AVRational unit, const std::string& filters,
                const std::string& sentence);

    // Whether this picture can go in.
    bool takes(const AVFrame& picture) const;

    void push(AVFrame* picture);  // null: there are no more
    bool pull(AVFrame& picture);  // false while there is none

    const AVFilterContext* sink() const { return sink_; }
    AVRational unit() const;  // of the times of what comes out, in seconds

private:
    void require(int result) const;

    std::string sentence_;
    int width_;
    int height_;
    int format_;
    AvPtr<AVFilterGraph, avfilter_graph_free> graph_;
    AVFilterContext* source_ = nullptr;
    AVFilterContext* sink_ = nullptr;
};

}  // namespace maker
