#include "tools/clip/reports/sheet.h"

#include <algorithm>
#include <cstdio>
#include <new>
#include <string>

extern "C" {
#include <libavutil/avstring.h>
#include <libavutil/base64.h>
#include <libavutil/mem.h>
}

#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/media/movie.h"
#include "tools/clip/media/pixel_font.h"
#include "tools/clip/media/source.h"
#include "tools/clip/reports/captioned.h"
#include "tools/clip/reports/clip_frames.h"

namespace maker {

namespace {

constexpr int kMargin = 24;
constexpr int kThumbWidth = kFrameWidth / kSheetShrink;
constexpr int kThumbHeight = kFrameHeight / kSheetShrink;
constexpr int kSheetWidth =
    2 * kMargin + kSheetMoments * kThumbWidth + (kSheetMoments - 1) * kPictureGap;
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
        x += kThumbWidth + kPictureGap;
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

// The sheet as a web page: pictures and font are part of the file.
constexpr int kFrameW = kFrameWidth / kPageShrink;

constexpr const char* kHead = R"(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
)";

constexpr const char* kStyle = R"(
:root { --white: #fff; --black: #000; --pink: #fe00c3; --blue: #59b1ff; --orange: #ffb000; }
* { box-sizing: border-box; }
body { margin: 0; padding: 32px; background: #141414; color: var(--white);
       font: 18px/26px velmora, monospace; }
header { display: flex; flex-wrap: wrap; gap: 4px 32px; align-items: baseline; margin: 0 0 28px;
         padding: 0 0 14px; border-bottom: 2px solid var(--pink); }
h1 { margin: 0; font-size: 36px; line-height: 44px; font-weight: normal; overflow-wrap: anywhere; }
header p { margin: 0; color: var(--blue); }
main { display: grid; grid-template-columns: repeat(auto-fill, 320px); gap: 28px 24px; }
article { width: 320px; }
h2 { margin: 8px 0 0; font-size: 18px; font-weight: normal; overflow-wrap: anywhere; }
article p { margin: 0; color: var(--blue); }
.film { width: 320px; height: 180px; overflow: hidden; display: flex; align-items: center;
        background: var(--black); outline: 2px solid transparent; outline-offset: 2px; }
article:hover .film { outline-color: var(--pink); }
.film i { display: block; width: 320px; flex: none; background: 0 0 no-repeat;
          animation: film var(--time) steps(var(--moments)) infinite; }
@keyframes film { to { background-position-x: calc(var(--moments) * -320px); } }
@media (prefers-reduced-motion: reduce) { .film i { animation: none; } }
.alpha { color: var(--pink); }
.bad { color: var(--orange); }
article p.bad { font-size: 18px; overflow-wrap: anywhere; }
)";

std::string escaped(const std::string& name) {
    char* text = nullptr;
    if (av_escape(&text, readable(name).c_str(), nullptr, AV_ESCAPE_MODE_XML,
                  AV_ESCAPE_FLAG_XML_DOUBLE_QUOTES) < 0) {
        throw std::bad_alloc();
    }
    std::string escaped = text;
    av_free(text);
    return escaped;
}

std::string dataUri(const std::string& type, std::span<const uint8_t> bytes) {
    std::string text(AV_BASE64_SIZE(bytes.size()), '\0');
    av_base64_encode(text.data(), static_cast<int>(text.size()), bytes.data(),
                     static_cast<int>(bytes.size()));
    text.pop_back();  // the end mark
    return "data:" + type + ";base64," + text;
}

// All moments side by side, as the smaller of an exact and a lossy picture.
std::string stripUri(const std::vector<Moment>& moments) {
    Picture strip(kFrameW * static_cast<int>(moments.size()), moments[0].picture.height);
    for (size_t i = 0; i < moments.size(); ++i) {
        strip.copy(moments[i].picture, kFrameW * static_cast<int>(i), 0);
    }
    const std::vector<uint8_t> exact = pictureFile(kPng, strip, false);
    const std::vector<uint8_t> lossy = pictureFile(kJpeg, strip, false);
    return exact.size() <= lossy.size() ? dataUri("image/png", exact)
                                        : dataUri("image/jpeg", lossy);
}

std::string filmOf(const SheetClip& clip) {
    if (clip.moments.empty()) {
        return "<div class=\"film\"></div>\n";
    }
    char style[160];
    std::snprintf(style, sizeof(style), "height: %dpx; --moments: %zu; --time: %.2fs;",
                  clip.moments[0].picture.height, clip.moments.size(),
                  clip.facts.header.frameCount / kStageFps);
    return "<div class=\"film\"><i style=\"" + std::string(style) + " background-image: url(" +
           stripUri(clip.moments) + ")\"></i></div>\n";
}

std::string articleOf(const SheetClip& clip) {
    std::string text = "<article>\n" + filmOf(clip) + "<h2>" + escaped(clip.name) + "</h2>\n";
    const std::string size = wholeKilobytes(clip.facts.fileBytes);
    if (!clip.facts.plays()) {
        return text + "<p>" + size + "</p>\n<p class=\"bad\">" + escaped(verdictText(clip.facts)) +
               "</p>\n</article>\n";
    }
    text += "<p>" + lengthText(clip.facts) + ", " + size + "</p>\n<p>";
    text += clip.facts.slow() ? "<span class=\"bad\">" + loadText(clip.facts) + "</span>"
                              : loadText(clip.facts);
    text += clip.facts.header.alpha != 0 ? " <span class=\"alpha\">alpha</span>" : "";
    return text + "</p>\n</article>\n";
}

std::string summaryOf(size_t clips, int frames, size_t bytes) {
    return counted(clips, "clip") + ", " + decimals(frames / kStageFps, 0) + " s, " +
           wholeKilobytes(bytes);
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
    for (int i = 0; i < shown; ++i) {
        const int index = i * frames.count() / shown;
        clip.moments.push_back({index, shrunk(overCheckerboard(frames.picture(index)), shrink)});
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
    Picture sheet =
        groundOf(kSheetWidth, kTitleHeight + kClipHeight * static_cast<int>(clips.size()));
    Canvas canvas(sheet);
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

void SheetPage::add(const SheetClip& clip) {
    articles_ += articleOf(clip);
    ++clips_;
    bytes_ += clip.facts.fileBytes;
    frames_ += clip.facts.plays() ? clip.facts.header.frameCount : 0;
}

std::string SheetPage::finish(const std::string& title) const {
    const std::string name = escaped(title);
    std::string page = kHead;
    page += "<title>" + name + "</title>\n<style>\n@font-face { font-family: velmora; src: url(" +
            dataUri("font/ttf", kFontFile) + "); }" + kStyle + "</style>\n</head>\n<body>\n";
    page += "<header><h1>" + name + "</h1><p>" + summaryOf(clips_, frames_, bytes_) +
            "</p></header>\n<main>\n";
    return page + articles_ + "</main>\n</body>\n</html>\n";
}

}  // namespace maker
