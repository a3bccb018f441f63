#include <string>

#include "common/limits.h"
#include "tools/clip/base/texts.h"
#include "tools/clip/jobs/probe.h"
#include "tools/clip/media/pixel_font.h"
#include "tools/clip/reports/describe.h"

namespace maker {

namespace {

constexpr int kColumns = 2;
constexpr int kGap = 4;
constexpr int kCaption = 26;
constexpr int kTextTop = 4;
constexpr Colour kGround{0x14, 0x14, 0x14};
constexpr Colour kWhite{0xFF, 0xFF, 0xFF};
constexpr Colour kOrange{0xFF, 0xB0, 0x00};

}  // namespace

Picture drawLadder(const std::string& input, const Probe& probe) {
    constexpr int kRows = (static_cast<int>(kLadder.size()) + kColumns) / kColumns;
    const int height = kCaption + probe.source.height + kGap;
    Picture sheet(kColumns * (kFrameWidth + kGap) - kGap, kRows * height - kGap);
    Canvas canvas(sheet);
    canvas.rect(0, 0, sheet.width, sheet.height, kGround);
    const PixelFont font(kLargeText);
    int place = 0;
    const auto show = [&](const Picture& picture, const std::string& caption, Colour colour) {
        const int x = place % kColumns * (kFrameWidth + kGap);
        const int y = place / kColumns * height;
        font.draw(canvas, x + kGap, y + kTextTop, codePoints(caption), colour);
        sheet.copy(overCheckerboard(picture), x, y + kCaption);
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
