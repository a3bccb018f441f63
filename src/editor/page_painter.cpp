#include "editor/page_painter.h"

#include "common/rgb565.h"
#include "core/display.h"
#include "core/globals.h"
#include "draw/ttf.h"
#include "layout/textfit.h"

namespace {

constexpr int kSmallFont = 0;
constexpr int kLargeFont = 1;
constexpr int kDimX = 128;  // of the atlas
constexpr int kButtonTextX = 6;
constexpr int kButtonTextY = 8;
constexpr int kLineX = 4;
constexpr int kLineRoom = 632;
constexpr int kDimFaceRgb = 0x404040;

constexpr const char* kLabels[] = {"create", "edit", "preview", "delete", "back", "confirm", "ok",
                                   "cancel", "yes",  "no",      "rename", "copy", "move",    "add"};
constexpr int kFocusWidth = 2;  // around the button

SDL_Rect rectOf(int x, int y, int w, int h) {
    return {static_cast<int16_t>(x), static_cast<int16_t>(y), static_cast<uint16_t>(w),
            static_cast<uint16_t>(h)};
}

}  // namespace

void PagePainter::fill(int x, int y, int w, int h, int rgb) {
    SDL_Rect area = rectOf(x, y, w, h);
    SDL_FillRect(surface_, &area, surfaceColour(surface_, px::fromRgb(rgb)));
}

void PagePainter::frame(int x, int y, int w, int h, int rgb) {
    constexpr int kThick = 2;
    fill(x, y, w, kThick, rgb);
    fill(x, y + h - kThick, w, kThick, rgb);
    fill(x, y, kThick, h, rgb);
    fill(x + w - kThick, y, kThick, h, rgb);
}

int PagePainter::widthOf(const std::string& words, int font) const {
    return ttf->widthOf(words.c_str(), font);
}

int PagePainter::text(const std::string& words, int x, int y, int room, int rgb) {
    const auto width = [this](const std::string& part) { return widthOf(part, kSmallFont); };
    const std::string fitting = fitText(words, room, width);
    ttf->drawTextH(surface_, fitting.c_str(), static_cast<short>(x), static_cast<short>(y), rgb,
                   kSmallFont);
    return width(fitting);
}

int PagePainter::textRight(const std::string& words, int right, int y, int room, int rgb) {
    const auto width = [this](const std::string& part) { return widthOf(part, kSmallFont); };
    const std::string fitting = fitText(words, room, width);
    const int x = right - width(fitting);
    ttf->drawTextH(surface_, fitting.c_str(), static_cast<short>(x), static_cast<short>(y), rgb,
                   kSmallFont);
    return x;
}

void PagePainter::line(const std::string& words, int y, int rgb) {
    text(words, kLineX, y, kLineRoom, rgb);
}

void PagePainter::help(int shown, const char* words, const char* keysHelp) {
    line(words, page::helpY(shown), page::kWhiteRgb);
    line(keysHelp, page::helpY(shown) + page::kHelpLine, page::kGreyRgb);
}

void PagePainter::largeText(const std::string& words, int x, int y, int rgb) {
    ttf->drawTextH(surface_, words.c_str(), static_cast<short>(x), static_cast<short>(y), rgb,
                   kLargeFont);
}

int PagePainter::row(int list, int visibleRow, int look) {
    const int y = page::kFirstRowY + page::kRowHeight * visibleRow;
    const int x = page::kListX[list];
    const int width = page::kListWidth[list];
    switch (look) {
        case page::ROW_SELECTED:
            fill(x, y, width, page::kRowHeight, page::kWhiteRgb);
            return 0;
        case page::ROW_SELECTED_ELSEWHERE:
            fill(x, y, width, page::kRowHeight, page::kGreyRgb);
            return 0;
        case page::ROW_LIT:
            fill(x, y, width, page::kRowHeight, page::kLitRgb);
            return page::kWhiteRgb;
        case page::ROW_CARRIED:
            fill(x, y, width, page::kRowHeight, static_cast<int>(_colorO));
            return 0;
        default:
            return page::kWhiteRgb;
    }
}

// The pointer's frame lies inside the button, the keys' one around it.
void PagePainter::button(const page::ButtonPlace& place, bool usable, bool under, bool focused) {
    if (atlas_ != nullptr) {
        SDL_Rect piece = rectOf(usable ? 0 : kDimX, place.button * page::kButtonHeight, place.width,
                                page::kButtonHeight);
        SDL_Rect at = rectOf(place.x, place.y, 0, 0);
        SDL_BlitSurface(atlas_, &piece, surface_, &at);
    } else {
        fill(place.x, place.y, place.width, page::kButtonHeight,
             usable ? static_cast<int>(_colorO) : kDimFaceRgb);
        text(kLabels[place.button], place.x + kButtonTextX, place.y + kButtonTextY,
             place.width - kButtonTextX, usable ? static_cast<int>(_colorN) : page::kGreyRgb);
    }
    if (usable && under) {
        frame(place.x, place.y, place.width, page::kButtonHeight, page::kWhiteRgb);
    }
    if (focused) {
        frame(place.x - kFocusWidth, place.y - kFocusWidth, place.width + 2 * kFocusWidth,
              page::kButtonHeight + 2 * kFocusWidth, page::kWhiteRgb);
    }
}
