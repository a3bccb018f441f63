#include "tools/clip/reports/captioned.h"

#include "tools/base/texts.h"
#include "tools/clip/media/pixel_font.h"

namespace maker {

Picture groundOf(int width, int height) {
    Picture ground(width, height);
    Canvas(ground).rect(0, 0, width, height, kGround);
    return ground;
}

void drawCaptioned(Picture& sheet, int x, int y, const Picture& picture, const std::string& caption,
                   Colour colour) {
    constexpr int kIndent = 4;
    constexpr int kTextTop = 3;
    const PixelFont font(kLargeText);
    Canvas canvas(sheet);
    font.draw(canvas, x + kIndent, y + kTextTop, codePoints(caption), colour);
    sheet.copy(picture, x, y + kCaptionHeight);
}

}  // namespace maker
