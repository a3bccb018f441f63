#pragma once
// The frames of a clip, in the order in which it shows them, from the input that it is made of.
//
// Cut, retimed, keyed and looped as the plan and the settings say; of a split input clip after
// clip. Whoever asks for them gets the same ones: the encoder, or what compares a clip with its
// source. Errors are thrown as ToolError.

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

#include "tools/clip/jobs/encode_job.h"

namespace maker {

class LoopedSource {
public:
    LoopedSource(const EncodePlan& plan, const EncodeSettings& settings);

    // Goes on to the first clip, or when all frames of one were asked for to the next; false when
    // nothing is left for one.
    bool nextClip();

    // The clip's next frame, 640 x 360 RGBA; false at its end.
    bool next(std::vector<uint8_t>& rgba);

    int expectedFrames() const;  // of all clips; 0 when nobody knows
    int taken() const { return taken_; }
    bool atEnd() const { return !waiting_; }
    const VideoSource& source() const { return source_; }

private:
    int clipFrames() const;
    bool ready();
    std::vector<uint8_t> pictureOf(VideoSource& source) const;
    std::vector<uint8_t> take();
    void pass();
    void fetchEnd();
    bool nextForwards(std::vector<uint8_t>& rgba);
    bool nextStraight(std::vector<uint8_t>& rgba);
    bool nextPingpong(std::vector<uint8_t>& rgba);
    bool nextCrossfade(std::vector<uint8_t>& rgba);

    const EncodePlan plan_;
    const EncodeSettings settings_;
    VideoSource source_;
    std::optional<VideoSource> ahead_;  // CROSSFADE: fetches a clip's end before its beginning
    bool begun_ = false;
    bool waiting_ = false;  // source_ stands on a frame that was not taken yet
    bool ended_ = false;    // it has no more
    int taken_ = 0;         // frames of the source, of all clips

    // Of the clip under way:
    int most_ = 0;                             // frames that it takes of the source
    int at_ = 0;                               // those that it has taken
    std::vector<std::vector<uint8_t>> kept_;   // backwards: those that are still to come
    std::vector<std::vector<uint8_t>> shown_;  // PINGPONG
    std::optional<size_t> back_;               // likewise, on the way back: the frame shown last
    std::deque<std::vector<uint8_t>> last_;    // CROSSFADE: what is blended into the first ones
};

}  // namespace maker
