#pragma once
// Clips that last a whole number of beats.
//
// The stage knows no clock: a loop stays with the music only when its length is right. The frames
// nearest to that length are what the clip gets, and the part of the input that makes them is
// played so much faster or slower that it fills them exactly.

#include <string>

#include "tools/clip/jobs/encode_job.h"

namespace maker {

// A moment or a length, as given.
struct BeatTime {
    double seconds = 0;
    double beats = 0;  // added to them
};

struct BeatWishes {
    BeatTime start;
    BeatTime duration;
    double bpm = 0;    // of the input; 0: not given
    double toBpm = 0;  // on stage; 0: the input's
    double beats = 0;  // that the clip lasts; 0: as long as it is
};

// "16b", "62.5", "1:02.5" or a sum of the two, "0.4+16b"; false for anything else.
bool readBeatTime(const std::string& text, BeatTime& time);

// Turns beats into the settings' start, duration and pace. Returns what does not go together, as
// one sentence that names the options, or "".
std::string fitBeats(const BeatWishes& wishes, EncodeSettings& settings);

// "8 beats, 120.5 BPM on stage": of a clip that fitBeats set the length of.
std::string beatsText(const EncodeSettings& settings);

// "in.mkv has 5.2 of the 8 beats", of so many frames that are there.
std::string tooFewBeats(const EncodeSettings& settings, const std::string& input, int frames);

}  // namespace maker
