#pragma once
// The pictures of an input as they are to be scaled: decoded, deinterlaced, brought from high to
// ordinary dynamic range, filtered and slowed down as a look asks for.
//
// Where nothing is to be done the decoder's pictures come through untouched. Errors are thrown as
// ToolError, those of a filter graph before the first picture.

#include <deque>
#include <optional>
#include <string>

#include "tools/clip/media/decoder.h"
#include "tools/clip/media/filter_graph.h"
#include "tools/clip/media/look.h"

namespace maker {

// What is wrong with a graph of filters, "" for nothing. Whether it fits the pictures shows later.
std::string faultOf(const std::string& filters);

class Film {
public:
    Film(const DecoderOptions& options, const Look& look);

    // The next picture, which names the shape of its pixels; false at the end.
    bool next(TimedFrame& frame);

    int turns() const;         // as the decoder's, but a graph of the look gets pictures upright
    std::string note() const;  // what was done without being asked for; "" for nothing

    const Decoder& decoder() const { return decoder_; }

private:
    void feed();
    void prepare(AVFrame& picture);
    std::string filtersFor(const AVFrame& picture) const;
    void change(const AVFrame& picture, const std::string& filters);
    void collect();

    Decoder decoder_;
    Look look_;
    std::string path_;
    double start_;
    bool interlaced_ = false;  // some picture was
    bool hdr_ = false;         // likewise
    bool rgb_ = false;         // the pictures that go into the graph are
    std::string filters_;      // of the graph
    std::optional<FilterGraph> graph_;
    std::deque<TimedFrame> ready_;
    double inTime_ = 0;  // of the last picture that went into the graph
    double inDuration_ = 0;
    double outTime_ = 0;  // of the last one that came out
    bool ended_ = false;
};

}  // namespace maker
