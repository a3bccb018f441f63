#pragma once
// What encode would make of an input, told from a few of its blocks.
//
// The input is decoded as far as one clip goes; of its blocks of 16 frames up to three are coded,
// at the quality asked for and, while the clip loads slowly, at lower ones. Sizes and times of the
// whole are in proportion to theirs. Loops and further parts of a long input are left out. Errors
// and interrupts are thrown (errors.h).

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "tools/clip/jobs/encode_job.h"
#include "tools/clip/media/picture.h"

namespace maker {

enum class Kind {
    GRAPHICS,   // at most 256 colours in each block looked at
    PIXEL_ART,  // the same, of small pictures without detail of a single pixel once enlarged
    FILM,       // filmed or shaded
    NOISY_FILM,
};

struct ProbedQuality {
    int quality = 0;
    size_t bytes = 0;
    size_t memory = 0;   // bytes when loaded
    double seconds = 0;  // until it is ready on stage
    double psnr = 0;     // of the blocks coded; infinite when nothing is lost
    Picture picture{};   // how it looks, in the middle of what was coded
};

struct Probe {
    int frames = 0;       // that the clip would have
    int sampled = 0;      // of them, those in the blocks coded
    int blocksCoded = 0;  // one for each quality
    bool alpha = false;
    bool longer = false;  // the input goes on after the clip
    Kind kind = Kind::FILM;
    std::vector<ProbedQuality> qualities;  // the best one first
    Picture source{};                      // likewise, before
};

// Of a quality ladder: what is coded, whatever the settings ask for.
inline constexpr std::array kLadder = {100, 90, 80, 70, 60, 50, 40};

Probe probeInput(const std::string& input, const EncodeSettings& settings, bool ladder = false);

// The source and each quality of the ladder with its size and load seconds.
Picture drawLadder(const std::string& input, const Probe& probe);

// Whether to encode it so, or what to do instead.
std::string verdictOf(const Probe& probe);

// What the input is, one line for each quality, and the verdict.
std::string probeText(const std::string& input, const Probe& probe);

// One JSON object, without a line end.
std::string probeJson(const std::string& input, const Probe& probe);

}  // namespace maker
