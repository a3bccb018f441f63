#pragma once
// The frames of a clip from any video, animated image or image sequence that FFmpeg reads.
//
// Walks over 640 x 360 RGBA pictures at the clip's own rate, the source's timing kept; a
// frame that is only stepped over is decoded but not scaled. A source of one single picture gives
// one frame, or the asked duration of it; an image sequence gives one frame a picture. Errors are
// thrown as ToolError.

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "tools/clip/media/film.h"
#include "tools/clip/media/scaler.h"

namespace maker {

inline constexpr double kStageFps = 25.6;  // the pace at which the program shows a clip
inline constexpr int kNoLimit = std::numeric_limits<int>::max();

struct SourceOptions {
    std::string path;
    double start = 0;     // seconds
    double duration = 0;  // seconds; 0 for all there is
    double fps = kStageFps;
    double pictureFps = 0;  // of an image sequence; 0 for fps, so that every picture is one frame
    int limit = kNoLimit;   // frames
    int hold = 0;           // frames for which the last picture stays where the duration lacks them
    Fit fit = Fit::COVER;
    bool nearest = false;  // scale without mixing pixels; always so for Fit::WHOLE
    bool alpha = false;    // keep transparency; else everything lies over black
    int threads = 1;       // of the decoder
    Look look = {};
    double length = 0;  // seconds of all frames, where the look fades out
};

// From the source's timing to the clip's: which source frame stands for each clip frame.
//
// Clip frame n is shown at n / fps seconds and takes the source frame on show at that moment, so
// motion keeps its true speed at any pair of rates. Times are in seconds from the clip's start.
class Pacer {
public:
    // At most `limit` clip frames in all.
    Pacer(double fps, int limit) : fps_(fps), limit_(limit) {}

    // How many clip frames, not counted before, begin earlier than `until`: they show the source
    // frame that is on show up to that moment.
    int due(double until);

    bool finished() const { return given_ >= limit_; }

private:
    double fps_;
    int limit_;
    int given_ = 0;
};

// Clip frames that fill `seconds`; at most `limit`.
int framesFor(double seconds, double fps, int limit);

// How the source's pictures came through the pacing.
struct Sampling {
    int pictures = 0;
    int leftOut = 0;
    int repeated = 0;  // shown by more than one clip frame
};

class VideoSource {
public:
    explicit VideoSource(const SourceOptions& options);

    // Moves to the next frame, at first to the first one; false at the end.
    bool step();

    // After a step: the frame, 640 x 360 x 4 bytes, until the next step.
    const std::vector<uint8_t>& picture();

    // After a step and before picture(): whether anything in the frame is not opaque.
    bool seesThrough();

    // Whether the pictures are of a kind that can be transparent. The first one tells; but those of
    // a sequence may be of different kinds.
    bool canSeeThrough() const { return canSeeThrough_; }

    int expectedFrames() const;                // as the file announces; 0 when it does not
    double seconds() const { return until_; }  // of the part stepped over so far
    const Sampling& sampling() const { return sampling_; }  // of that part
    bool goesOn() const;                                    // past the limit or the duration
    int damaged() const { return film_.decoder().damaged(); }
    std::string cutOff() const { return more_ ? "" : film_.decoder().cutOff(); }
    std::string note() const { return film_.note(); }

private:
    bool advance();
    bool holdOn();
    void count();
    const std::vector<uint8_t>& blended();
    void finishFrame(const std::vector<uint8_t>& frame);

    SourceOptions options_;
    Film film_;
    Scaler scaler_;
    Pacer pacer_;
    TimedFrame current_;
    TimedFrame upcoming_;
    Sampling sampling_;
    double until_ = 0;  // the end of current_, from the start on
    bool canSeeThrough_ = false;
    bool more_ = false;   // upcoming_ holds a picture
    bool alone_ = true;   // current_ is the first picture
    int pending_ = 0;     // frames that show current_ and are not given yet
    bool drawn_ = false;  // scaled_ shows current_
    int index_ = -1;      // of the frame
    int held_ = 0;        // frames by which the last picture stayed
    int finished_ = -1;   // the frame that picture_ is
    std::vector<uint8_t> scaled_;
    std::vector<uint8_t> next_;  // upcoming_, once it was needed
    bool seenThrough_ = false;   // what was drawn before its turn
    std::vector<uint8_t> blended_;
    std::string frameFilters_;
    std::optional<FilterGraph> filters_;  // from there on
    std::vector<uint8_t> picture_;
};

}  // namespace maker
