#pragma once
// How alike two pictures are: squared error for PSNR, and SSIM.
//
// Pictures are 640 x height RGBA, 8 bits a channel. SSIM is a plain function of ours: FFmpeg's
// lives in a filter that wants two synchronous streams and hands back texts, for thirty lines of
// arithmetic. Windows and steps are the same (8 x 8 pixels every 4), so the values compare.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "tools/clip/media/source.h"

namespace maker {

using Rgba = std::span<const uint8_t>;

// Mean over red, green and blue of every pixel; mean over alpha.
double colourError(Rgba a, Rgba b);
double alphaError(Rgba a, Rgba b);

// Of the luma, 0 (nothing in common; may be a little less) to 1 (alike).
double ssim(Rgba a, Rgba b, int width);

// Decibels of a mean squared error on the scale 0 to 255; infinite for none.
double psnrOf(double meanSquaredError);

struct FrameScore {
    double colourError;
    double alphaError;
    double ssim;
};

struct Comparison {
    std::vector<FrameScore> frames;
    bool alpha = false;                // it counts
    std::optional<Sampling> sampling;  // of a source that is no clip

    double psnr() const;  // of the mean error over all frames
    double alphaPsnr() const;
    double meanSsim() const;
    int worstFrame() const;  // by colour error; the first of equals
};

}  // namespace maker
