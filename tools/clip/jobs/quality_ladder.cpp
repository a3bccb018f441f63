#include <string>

#include "common/limits.h"
#include "tools/base/texts.h"
#include "tools/clip/jobs/probe.h"
#include "tools/clip/reports/captioned.h"
#include "tools/clip/reports/describe.h"

namespace maker {

Picture drawLadder(const std::string& input, const Probe& probe) {
    constexpr int kColumns = 2;
    constexpr int kRows = (static_cast<int>(kLadder.size()) + kColumns) / kColumns;
    constexpr int kAcross = kFrameWidth + kPictureGap;
    const int down = kCaptionHeight + probe.source.height + kPictureGap;
    Picture sheet = groundOf(kColumns * kAcross - kPictureGap, kRows * down - kPictureGap);
    int place = 0;
    const auto show = [&](const Picture& picture, const std::string& caption, Colour colour) {
        drawCaptioned(sheet, place % kColumns * kAcross, place / kColumns * down,
                      overCheckerboard(picture), caption, colour);
        ++place;
    };
    show(probe.source, input, kWhite);
    for (const ProbedQuality& each : probe.qualities) {
        show(each.picture,
             "quality " + std::to_string(each.quality) + ": " + sizeText(each.bytes) + ", " +
                 decibels(each.psnr, 1) + ", ready in " + decimals(each.seconds, 1) + " s",
             each.seconds > kSlowSeconds ? kOrange : kWhite);
    }
    return sheet;
}

}  // namespace maker
