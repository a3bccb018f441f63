#pragma once
// One input to one clip, or to several: decode, cut or retime, key, loop, encode, write.
//
// The clips get their names when all of them are whole, and beside each stands where it came from;
// before that, and when anything goes wrong, every file keeps what it held and nothing new is
// there. Errors and interrupts are thrown (errors.h). Jobs may run side by side.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/base/progress.h"
#include "tools/clip/encoder/encoder.h"
#include "tools/clip/jobs/loop.h"
#include "tools/clip/media/picture.h"
#include "tools/clip/media/scaler.h"
#include "tools/clip/media/source.h"

namespace maker {

enum class LongInput {
    CUT,    // its first part
    SPLIT,  // several clips, numbered from 1
    FIT,    // played faster, so that all of it fits
};

enum class AlphaFrom {
    SOURCE,      // where the source has some
    NONE,        // an opaque clip
    BRIGHTNESS,  // keying.h
    COLOUR,
};

// Options of the command line that were given, such as "--quality" and "70".
using OptionTexts = std::vector<std::pair<std::string, std::string>>;

struct EncodeSettings {
    double start = 0;     // seconds
    double duration = 0;  // seconds; 0 for all there is
    double fps = kStageFps;
    double beats = 0;  // that the clip lasts (beats.h); 0: not said
    int frames = 0;    // that are so many beats
    Fit fit = Fit::COVER;
    bool nearest = false;  // scale without mixing pixels
    LongInput longInput = LongInput::CUT;
    LoopSettings loop;
    bool reverse = false;  // the clip runs backwards
    AlphaFrom alpha = AlphaFrom::SOURCE;
    Colour key;  // AlphaFrom::COLOUR
    Look look = {};
    Content content = Content::MIXED;
    int quality = kDefaultQuality;
    bool dither = false;
    std::optional<double> denoise;  // this much noise (noise.h); not given: what is measured
    int64_t records = 0;            // budgets for each clip; 0: none
    int64_t bytes = 0;              // likewise
    bool partial = false;           // take what is there of an input that breaks off
    int workers = 1;
    OptionTexts given = {};  // what the rest comes from, to be kept beside the clip
};

struct ClipReport {
    std::filesystem::path path;
    int frames = 0;
    size_t bytes = 0;
    double psnr = 0;  // decibels; infinite when nothing is lost
    int records = 0;
    size_t memory = 0;   // bytes when loaded
    double seconds = 0;  // until it is ready on stage
    std::string note;    // how it was cut and looped; empty when there is nothing to tell
};

struct EncodeReport {
    std::vector<ClipReport> clips;
    int damaged = 0;     // packets left out
    std::string cutOff;  // how an input that breaks off shows; empty when it does not
};

struct EncodeEvents {
    std::function<void(const ProgressStep&)> progress = {};

    // Each picture as it goes into a clip, in its order.
    std::function<void(const std::vector<uint8_t>& rgba)> picture = {};

    // The clips are whole; as soon as this returns they get their names.
    std::function<void(const EncodeReport&)> beforeCommit = {};
};

// What has to be known of an input before its first frame is encoded.
//
// Whether the clip has alpha, how many frames there are, at which pace they fit, where the loop is
// cut. The input is decoded beforehand only when one of these needs it, and scaled only for the
// search of a loop.
struct EncodePlan {
    SourceOptions source;      // as the clips are made from it
    int frames = kNoLimit;     // that the source gives, its limit included, when they were counted
    double speed = 1;          // times as fast as the source's own pace
    std::optional<Seam> seam;  // LoopKind::BEST
    int passes = 0;            // that it took to know this
};

// What the encoder is told of the settings.
ClipSettings clipSettings(const EncodeSettings& settings, bool alpha);

// What encoding takes beside one pass over the input that only looks: more where a budget is
// searched.
double encodingPasses(const EncodeSettings& settings);

// `progress` may be empty.
EncodePlan planEncode(const std::string& input, const EncodeSettings& settings,
                      const std::function<void(const ProgressStep&)>& progress = {});

// Makes the alpha that the settings ask for out of the colours.
void applyKey(const EncodeSettings& settings, std::vector<uint8_t>& rgba);

// The clips that an earlier run made: the output, or of a split input its parts.
std::vector<std::filesystem::path> clipsThere(const std::filesystem::path& output,
                                              LongInput longInput);

// Clips of a split input are named like output-1.m19. The output's folder is made when missing.
EncodeReport encodeFile(const std::string& input, const std::filesystem::path& output,
                        const EncodeSettings& settings, const EncodeEvents& events = {});

}  // namespace maker
