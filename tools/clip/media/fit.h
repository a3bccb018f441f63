#pragma once
// How a source picture of any size and pixel shape fills the 640 x 360 frame.
//
// Sizes are those of the picture as displayed, after turning it upright. The plan first cuts the
// source, then scales what is left and places it.

namespace maker {

enum class Fit {
    COVER,    // fill the frame, cut what is too much, equally on both sides
    CONTAIN,  // show the whole source, bars on two sides
    STRETCH,  // fill the frame, ignore the source's proportions
    WHOLE,    // the largest whole multiple of the source that fits, or a whole part of it, centred
};

struct FitPlan {
    int cutX;  // source pixels cut from the left, and as many from the right
    int cutY;
    int width;  // of the scaled picture
    int height;
    int left;  // its place in the frame
    int top;
};

// pixelAspect is the width of a source pixel divided by its height; WHOLE takes pixels as square.
FitPlan planFit(int width, int height, double pixelAspect, Fit fit);

}  // namespace maker
