#include "tools/clip/media/fit.h"

#include <algorithm>
#include <cmath>

#include "common/limits.h"

namespace maker {

namespace {

int rounded(double value) {
    return static_cast<int>(std::lround(value));
}

FitPlan planCover(int width, int height, double pixelAspect) {
    FitPlan plan{0, 0, kFrameWidth, kFrameHeight, 0, 0};
    // The size that has the frame's proportions, in source pixels.
    const double wide = height * static_cast<double>(kFrameWidth) / kFrameHeight / pixelAspect;
    const double high = width * pixelAspect * kFrameHeight / kFrameWidth;
    if (wide < width) {
        plan.cutX = std::min(rounded((width - wide) / 2), (width - 1) / 2);
    } else {
        plan.cutY = std::clamp(rounded((height - high) / 2), 0, (height - 1) / 2);
    }
    return plan;
}

FitPlan centred(int width, int height) {
    return {0, 0, width, height, (kFrameWidth - width) / 2, (kFrameHeight - height) / 2};
}

FitPlan planContain(int width, int height, double pixelAspect) {
    const double shown = width * pixelAspect;
    const double scale = std::min(kFrameWidth / shown, static_cast<double>(kFrameHeight) / height);
    return centred(std::clamp(rounded(shown * scale), 1, kFrameWidth),
                   std::clamp(rounded(height * scale), 1, kFrameHeight));
}

FitPlan planWhole(int width, int height) {
    const int times = std::min(kFrameWidth / width, kFrameHeight / height);
    if (times > 0) {
        return centred(width * times, height * times);
    }
    const int part = std::max((width + kFrameWidth - 1) / kFrameWidth,
                              (height + kFrameHeight - 1) / kFrameHeight);
    return centred(std::max(width / part, 1), std::max(height / part, 1));
}

}  // namespace

FitPlan planFit(int width, int height, double pixelAspect, Fit fit) {
    switch (fit) {
        case Fit::COVER:
            return planCover(width, height, pixelAspect);
        case Fit::CONTAIN:
            return planContain(width, height, pixelAspect);
        case Fit::WHOLE:
            return planWhole(width, height);
        default:
            return {0, 0, kFrameWidth, kFrameHeight, 0, 0};
    }
}

}  // namespace maker
