#include "tools/clip/reports/sheet.h"

#include <algorithm>
#include <numeric>

#include "tools/clip/base/atomic_file.h"
#include "tools/clip/base/interrupt.h"
#include "tools/clip/base/names.h"
#include "tools/clip/base/texts.h"
#include "tools/clip/media/pixel_font.h"
#include "tools/clip/media/source.h"
#include "tools/clip/reports/clip_frames.h"

namespace maker {

namespace {

// The interface's colours, and two greys.
constexpr Colour kWhite{0xFF, 0xFF, 0xFF};
constexpr Colour kPink{0xFE, 0x00, 0xC3};
constexpr Colour kBlue{0x59, 0xB1, 0xFF};
constexpr Colour kOrange{0xFF, 0xB0, 0x00};
constexpr Colour kBlack{0x00, 0x00, 0x00};
constexpr Colour kGround{0x14, 0x14, 0x14};
constexpr Colour kGrey{0x80, 0x80, 0x80};

constexpr int kMargin = 24;
constexpr int kGap = 4;
constexpr int kThumbWidth = kFrameWidth / kSheetShrink;
constexpr int kThumbHeight = kFrameHeight / kSheetShrink;
constexpr int kSheetWidth = 2 * kMargin + kSheetMoments * kThumbWidth + (kSheetMoments - 1) * kGap;
constexpr int kTitleText = 36;
constexpr int kTitleHeight = 84;
constexpr int kLineHeight = 24;
constexpr int kClipHeight = 2 * kLineHeight + kThumbHeight + 40;
constexpr int kWordGap = 24;  // between two facts

void drawMoments(Picture& sheet, const PixelFont& small, const SheetClip& clip, int y) {
    Canvas canvas(sheet);
    int x = kMargin;
    for (const Moment& moment : clip.moments) {
        canvas.rect(x, y, kThumbWidth, kThumbHeight, kBlack);
        sheet.copy(moment.picture, x, y + (kThumbHeight - moment.picture.height) / 2);
        small.draw(canvas, x, y + kThumbHeight + 4, codePoints(std::to_string(moment.frame)),
                   kGrey);
        x += kThumbWidth + kGap;
    }
}

void drawFacts(Canvas& canvas, const PixelFont& font, const SheetClip& clip, int y) {
    int x = kMargin;
    const auto word = [&](const std::string& text, Colour colour) {
        font.draw(canvas, x, y, codePoints(text), colour);
        x += font.widthOf(codePoints(text)) + kWordGap;
    };
    word(wholeKilobytes(clip.facts.fileBytes), kBlue);
    if (!clip.facts.plays()) {
        word(verdictText(clip.facts), kOrange);
        return;
    }
    word(lengthText(clip.facts), kBlue);
    word(loadText(clip.facts), clip.facts.slow() ? kOrange : kBlue);
    if (clip.facts.header.alpha != 0) {
        word("alpha", kPink);
    }
}

}  // namespace

SheetClip readSheetClip(const std::string& name, const std::string& path, int moments, int shrink) {
    stopIfInterrupted();
    SheetClip clip{name, {}, {}};
    const std::vector<uint8_t> bytes = readWholeFile(path);
    describe(bytes, clip.facts);
    if (!clip.facts.plays()) {
        return clip;
    }
    const ClipFrames frames(bytes);
    const int shown = std::min(moments, frames.count());
    Frame frame;
    for (int i = 0; i < shown; ++i) {
        const int index = i * frames.count() / shown;
        frames.draw(index, frame);
        Picture picture(kFrameWidth, frames.height());
        toRgba(frame, picture.rgba);
        clip.moments.push_back({index, shrunk(overCheckerboard(picture), shrink)});
    }
    return clip;
}

std::string lengthText(const Description& facts) {
    const int frames = facts.header.frameCount;
    return counted(static_cast<size_t>(frames), "frame") + ", " + decimals(frames / kStageFps, 1) +
           " s";
}

std::string loadText(const Description& facts) {
    return "ready after " + decimals(facts.cost.seconds, 1) + " s";
}

Picture drawSheet(const std::string& title, const std::vector<SheetClip>& clips) {
    const PixelFont small(kSmallText);
    const PixelFont large(kLargeText);
    const PixelFont heading(kTitleText);
    Picture sheet(kSheetWidth, kTitleHeight + kClipHeight * static_cast<int>(clips.size()));
    Canvas canvas(sheet);
    canvas.rect(0, 0, sheet.width, sheet.height, kGround);
    heading.draw(canvas, kMargin, kMargin, codePoints(title), kWhite);
    canvas.rect(kMargin, kTitleHeight - 14, sheet.width - 2 * kMargin, 2, kPink);
    int y = kTitleHeight;
    for (const SheetClip& clip : clips) {
        large.draw(canvas, kMargin, y, codePoints(clip.name), kWhite);
        drawFacts(canvas, large, clip, y + kLineHeight);
        drawMoments(sheet, small, clip, y + 2 * kLineHeight);
        y += kClipHeight;
    }
    return sheet;
}

}  // namespace maker
