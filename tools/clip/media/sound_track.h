#pragma once
// The sound of a file, coded anew for a film: two channels, 48,000 samples a second.
//
// What the file says of times is not looked at: its samples follow one another. What cannot be
// opened or coded, or holds no sound, is thrown as ToolError; an interrupt stops it.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "tools/clip/media/filter_graph.h"
#include "tools/clip/media/media_file.h"

namespace maker {

struct SoundSettings {
    std::string path;
    double start = 0;  // seconds: so much of it is left out, or so much silence comes before it
};

class SoundTrack {
public:
    using Write = std::function<void(AVPacket& packet)>;  // with times in samples

    // `header`: the film keeps what the decoder needs to know apart from the packets.
    SoundTrack(const SoundSettings& settings, const char* encoder, bool header);

    const AVCodecContext* encoder() const { return encoder_.get(); }
    // All of it that begins before this time, in seconds of the film.
    void writeUntil(double seconds, const Write& write);
    // The film ends there, and the sound with it.
    void finish(double seconds, const Write& write);

private:
    void openDecoder();
    void openEncoder(const char* name, bool header);
    void pushSilence();
    void push(AVFrame& frame);
    bool readOn();
    void encode(const AVFrame* frame, const Write& write);
    void require(int result, const char* step) const;

    SoundSettings settings_;
    FormatPtr format_;
    CodecPtr decoder_;
    CodecPtr encoder_;
    std::optional<FilterGraph> graph_;
    PacketPtr packet_;
    PacketPtr coded_;
    int stream_ = -1;
    int64_t silence_ = 0;       // samples of it that come first, in the file's rate
    int64_t pushed_ = 0;        // samples into the filters
    int64_t encoded_ = 0;       // samples out of them
    int64_t last_ = INT64_MAX;  // samples that there may be
    bool drained_ = false;
};

}  // namespace maker
