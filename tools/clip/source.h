#pragma once
// The frames of a clip from any video, animated image or image sequence that FFmpeg reads.
//
// Gives 640 x 360 RGBA pictures at the clip's own rate, at most 256, the source's timing kept
// (pacer.h). A source of one single picture gives one frame, or the asked duration of it. Errors
// are thrown as ToolError.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/clip/decoder.h"
#include "tools/clip/fit.h"
#include "tools/clip/pacer.h"
#include "tools/clip/scaler.h"

namespace maker {

inline constexpr double kStageFps = 25.6;  // the pace at which the program shows a clip

struct SourceOptions {
    std::string path;
    double start = 0;     // seconds
    double duration = 0;  // seconds; 0 for as much as a clip holds
    double fps = kStageFps;
    Fit fit = Fit::COVER;
    bool alpha = true;  // keep transparency where the source has some
};

class VideoSource {
public:
    explicit VideoSource(const SourceOptions& options);

    bool alpha() const { return alpha_; }
    int expectedFrames() const;  // as the file announces; 0 when it does not
    int damaged() const { return decoder_.damaged(); }

    // The next frame, 640 x 360 x 4 bytes; false at the end.
    bool next(std::vector<uint8_t>& rgba);

private:
    bool advance();

    SourceOptions options_;
    bool alpha_;
    Decoder decoder_;
    Scaler scaler_;
    Pacer pacer_;
    TimedFrame current_;
    TimedFrame upcoming_;
    bool more_ = false;   // upcoming_ holds a picture
    bool alone_ = true;   // current_ is the first picture
    int pending_ = 0;     // clip frames that show current_ and are not given yet
    bool drawn_ = false;  // picture_ shows current_
    std::vector<uint8_t> picture_;
};

}  // namespace maker
