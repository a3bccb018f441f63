#include "art/loops/lettering.h"

#include "tools/clip/base/names.h"
#include "tools/clip/media/pixel_font.h"

namespace demo {

namespace {

constexpr int kRise = 1;  // rows of a line above its capitals

maker::PixelFont fontOf(int scale) {
    return maker::PixelFont(scale * maker::kSmallText);
}

}  // namespace

int textWidth(std::string_view text, int scale) {
    return text.empty() ? 0 : fontOf(scale).widthOf(maker::fromLatin1(text)) - scale;
}

void drawText(Canvas& canvas, std::string_view text, int left, int top, int scale, Colour colour) {
    fontOf(scale).draw(canvas, left, top - kRise * scale, maker::fromLatin1(text), colour);
}

void drawTextCentred(Canvas& canvas, std::string_view text, int middle, int top, int scale,
                     Colour colour) {
    drawText(canvas, text, middle - textWidth(text, scale) / 2, top, scale, colour);
}

}  // namespace demo
