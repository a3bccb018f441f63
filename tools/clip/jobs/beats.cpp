#include "tools/clip/jobs/beats.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "clip/format.h"
#include "tools/base/texts.h"

extern "C" {
#include <libavutil/parseutils.h>
}

namespace maker {

namespace {

constexpr double kMinute = 60;  // seconds
constexpr double kLongest = 1e6;

// Without needless digits: 8, 0.5, 119.7
std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value);
    return text;
}

std::string beatCount(double beats) {
    return number(beats) + (beats == 1 ? " beat" : " beats");
}

bool readSeconds(const std::string& text, double& seconds) {
    int64_t microseconds = 0;
    const bool read = av_parse_time(&microseconds, text.c_str(), 1) >= 0;
    seconds = static_cast<double>(microseconds) / 1e6;
    return read && text[0] != '-' && seconds <= kLongest;
}

bool readBeats(const std::string& text, double& beats) {
    char* end = nullptr;
    beats = std::strtod(text.c_str(), &end);
    return text.size() > 1 && text.find_first_not_of("0123456789.") == text.size() - 1 &&
           std::string(end) == "b" && beats <= kLongest;
}

double secondsOf(const BeatTime& time, double bpm) {
    return time.seconds + (time.beats > 0 ? time.beats * kMinute / bpm : 0);
}

std::string missing(const BeatWishes& wishes) {
    if (wishes.bpm <= 0 && (wishes.start.beats > 0 || wishes.duration.beats > 0)) {
        return "times in beats need the input's tempo, --bpm";
    }
    if (wishes.bpm <= 0 && wishes.toBpm <= 0 && wishes.beats > 0) {
        return "--beats needs a tempo: --bpm";
    }
    if (wishes.bpm <= 0 && wishes.toBpm > 0 && wishes.beats <= 0) {
        return "--to-bpm needs the input's tempo, --bpm";
    }
    return "";
}

// Of settings whose clip shall last so many beats.
std::string contradiction(const EncodeSettings& settings) {
    if (settings.longInput != LongInput::CUT) {
        return "--beats makes one clip of its own length: leave --long out";
    }
    if (settings.fps != kStageFps) {
        return "--beats decides the pace: --to-bpm, not --fps, changes it";
    }
    if (settings.look.slow > 1) {
        return "--beats decides the pace: --to-bpm, not --slow, changes it";
    }
    return "";
}

// The frames of the input that make a clip of so many; framesGiven() turned round.
int framesNeeded(const LoopSettings& loop, int frames) {
    return loop.kind == LoopKind::PINGPONG    ? frames / 2 + 1
           : loop.kind == LoopKind::CROSSFADE ? frames + loop.blend
                                              : frames;
}

std::string setLength(const BeatWishes& wishes, double tempo, EncodeSettings& settings) {
    const LoopSettings& loop = settings.loop;
    const double perBeat = kMinute * kStageFps / tempo;
    // Forwards and backwards are even together.
    const int step = loop.kind == LoopKind::PINGPONG ? 2 : 1;
    const double steps = std::round(wishes.beats * perBeat / step);
    if (steps < 1 || steps * step > clip::kMaxFrames) {
        return beatCount(wishes.beats) + " at " + number(tempo) + " BPM are " +
               decimals(steps * step, 0) + " frames; a clip has 1 to " +
               std::to_string(clip::kMaxFrames) + ", up to " +
               beatCount(std::floor(clip::kMaxFrames / perBeat));
    }
    settings.frames = static_cast<int>(steps) * step;
    settings.beats = wishes.beats;
    if (loop.kind == LoopKind::CROSSFADE && loop.blend > settings.frames) {
        return "--loop crossfade " + std::to_string(loop.blend) + " blends more than the " +
               std::to_string(settings.frames) + " frames of " + beatCount(wishes.beats);
    }
    const bool best = loop.kind == LoopKind::BEST;
    const bool stretched = settings.duration > 0 && !best;
    const double bpm = wishes.bpm > 0 ? wishes.bpm : tempo;
    const double seconds = stretched ? settings.duration : wishes.beats * kMinute / bpm;
    settings.fps = settings.frames / seconds;
    if (!best) {
        settings.duration = framesNeeded(loop, settings.frames) / settings.fps;
    }
    return "";
}

}  // namespace

bool readBeatTime(const std::string& text, BeatTime& time) {
    time = {};
    if (!text.ends_with('b')) {
        return readSeconds(text, time.seconds);
    }
    const size_t plus = text.find('+');
    if (plus == std::string::npos) {
        return readBeats(text, time.beats);
    }
    return readSeconds(text.substr(0, plus), time.seconds) &&
           readBeats(text.substr(plus + 1), time.beats);
}

std::string fitBeats(const BeatWishes& wishes, EncodeSettings& settings) {
    const std::string fault = missing(wishes);
    if (!fault.empty()) {
        return fault;
    }
    settings.start = secondsOf(wishes.start, wishes.bpm);
    settings.duration = secondsOf(wishes.duration, wishes.bpm);
    const double tempo = wishes.toBpm > 0 ? wishes.toBpm : wishes.bpm;
    if (wishes.beats <= 0) {
        settings.fps *= wishes.toBpm > 0 ? wishes.bpm / wishes.toBpm : 1;
        return "";
    }
    const std::string other = contradiction(settings);
    return other.empty() ? setLength(wishes, tempo, settings) : other;
}

std::string beatsText(const EncodeSettings& settings) {
    const double tempo = settings.beats * kMinute * kStageFps / settings.frames;
    return beatCount(settings.beats) + ", " + decimals(tempo, 1) + " BPM on stage";
}

std::string tooFewBeats(const EncodeSettings& settings, const std::string& input, int frames) {
    const double there = settings.beats * frames / settings.frames;
    return input + " has " + decimals(std::floor(10 * there) / 10, 1) + " of the " +
           beatCount(settings.beats) + " asked for; begin earlier or take fewer";
}

}  // namespace maker
