#include "tools/clip/fit.h"

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

FitPlan planContain(int width, int height, double pixelAspect) {
    const double shown = width * pixelAspect;
    const double scale = std::min(kFrameWidth / shown, static_cast<double>(kFrameHeight) / height);
    FitPlan plan{};
    plan.width = std::clamp(rounded(shown * scale), 1, kFrameWidth);
    plan.height = std::clamp(rounded(height * scale), 1, kFrameHeight);
    plan.left = (kFrameWidth - plan.width) / 2;
    plan.top = (kFrameHeight - plan.height) / 2;
    return plan;
}

}  // namespace

FitPlan planFit(int width, int height, double pixelAspect, Fit fit) {
    switch (fit) {
        case Fit::COVER:
            return planCover(width, height, pixelAspect);
        case Fit::CONTAIN:
            return planContain(width, height, pixelAspect);
        default:
            return {0, 0, kFrameWidth, kFrameHeight, 0, 0};
    }
}

}  // namespace maker
