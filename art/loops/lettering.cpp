#include "art/loops/lettering.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "art/loops/motion.h"
#include "tools/base/texts.h"
#include "tools/clip/media/pixel_font.h"

namespace demo {

namespace {

constexpr int kRise = 1;  // rows of a line above its capitals

maker::PixelFont fontOf(int scale) {
    return maker::PixelFont(scale * maker::kSmallText);
}

// A corner of an outline in units; a radius rounds it.
struct Corner {
    float x, y, radius;
};

struct Glyph {
    char letter;
    float width;
    std::span<const Corner> outline;
    std::span<const Corner> counter;  // the hole, empty for letters without one
};

// clang-format off
constexpr Corner kA[] = {{3, 0, 0}, {6, 0, 0}, {9, 10, 0}, {5.8F, 10, 0}, {5.3F, 8.2F, 0},
                         {3.7F, 8.2F, 0}, {3.2F, 10, 0}, {0, 10, 0}};
constexpr Corner kAHole[] = {{4.5F, 3.1F, 0}, {5.1F, 5.8F, 0}, {3.9F, 5.8F, 0}};
constexpr Corner kC[] = {{8.5F, 0, 0}, {8.5F, 2.6F, 0}, {3, 2.6F, 1.2F}, {3, 7.4F, 1.2F},
                         {8.5F, 7.4F, 0}, {8.5F, 10, 0}, {0, 10, 4}, {0, 0, 4}};
constexpr Corner kD[] = {{0, 0, 0}, {9, 0, 4}, {9, 10, 4}, {0, 10, 0}};
constexpr Corner kDHole[] = {{3, 2.6F, 0}, {6, 2.6F, 1.2F}, {6, 7.4F, 1.2F}, {3, 7.4F, 0}};
constexpr Corner kE[] = {{0, 0, 0}, {7, 0, 0}, {7, 2.6F, 0}, {3, 2.6F, 0}, {3, 3.8F, 0},
                         {6.4F, 3.8F, 0}, {6.4F, 6.2F, 0}, {3, 6.2F, 0}, {3, 7.4F, 0},
                         {7, 7.4F, 0}, {7, 10, 0}, {0, 10, 0}};
constexpr Corner kI[] = {{0, 0, 0}, {3, 0, 0}, {3, 10, 0}, {0, 10, 0}};
constexpr Corner kL[] = {{0, 0, 0}, {3, 0, 0}, {3, 7.4F, 0}, {7, 7.4F, 0}, {7, 10, 0}, {0, 10, 0}};
constexpr Corner kM[] = {{0, 0, 0}, {3.3F, 0, 0}, {5.5F, 4.4F, 0}, {7.7F, 0, 0}, {11, 0, 0},
                         {11, 10, 0}, {8, 10, 0}, {8, 5.2F, 0}, {6.4F, 8.4F, 0}, {4.6F, 8.4F, 0},
                         {3, 5.2F, 0}, {3, 10, 0}, {0, 10, 0}};
constexpr Corner kN[] = {{0, 0, 0}, {3.2F, 0, 0}, {6, 4.8F, 0}, {6, 0, 0}, {9, 0, 0}, {9, 10, 0},
                         {5.8F, 10, 0}, {3, 5.2F, 0}, {3, 10, 0}, {0, 10, 0}};
constexpr Corner kO[] = {{0, 0, 4}, {9, 0, 4}, {9, 10, 4}, {0, 10, 4}};
constexpr Corner kOHole[] = {{3, 2.6F, 1.2F}, {6, 2.6F, 1.2F}, {6, 7.4F, 1.2F}, {3, 7.4F, 1.2F}};
constexpr Corner kP[] = {{0, 0, 0}, {8.4F, 0, 3.4F}, {8.4F, 7, 3.4F}, {3, 7, 0}, {3, 10, 0},
                         {0, 10, 0}};
constexpr Corner kPHole[] = {{3, 2.5F, 0}, {5.4F, 2.5F, 0.9F}, {5.4F, 4.6F, 0.9F}, {3, 4.6F, 0}};
constexpr Corner kR[] = {{0, 0, 0}, {8.5F, 0, 3.3F}, {8.5F, 6.6F, 2}, {6.5F, 6.6F, 0},
                         {9, 10, 0}, {5.6F, 10, 0}, {3.9F, 7, 0}, {3, 7, 0}, {3, 10, 0},
                         {0, 10, 0}};
constexpr Corner kT[] = {{0, 0, 0}, {8.4F, 0, 0}, {8.4F, 2.6F, 0}, {5.7F, 2.6F, 0}, {5.7F, 10, 0},
                         {2.7F, 10, 0}, {2.7F, 2.6F, 0}, {0, 2.6F, 0}};
constexpr Corner kU[] = {{0, 0, 0}, {3, 0, 0}, {3, 7.4F, 1.2F}, {6, 7.4F, 1.2F}, {6, 0, 0},
                         {9, 0, 0}, {9, 10, 4}, {0, 10, 4}};
constexpr Corner kV[] = {{0, 0, 0}, {3.2F, 0, 0}, {4.6F, 5.6F, 0}, {6, 0, 0}, {9.2F, 0, 0},
                         {6.2F, 10, 0}, {3, 10, 0}};
constexpr Corner kX[] = {{0, 0, 0}, {3.5F, 0, 0}, {4.6F, 2.4F, 0}, {5.7F, 0, 0}, {9.2F, 0, 0},
                         {6.5F, 5, 0}, {9.2F, 10, 0}, {5.7F, 10, 0}, {4.6F, 7.6F, 0},
                         {3.5F, 10, 0}, {0, 10, 0}, {2.7F, 5, 0}};
constexpr Corner kY[] = {{0, 0, 0}, {3.4F, 0, 0}, {4.6F, 3, 0}, {5.8F, 0, 0}, {9.2F, 0, 0},
                         {6.1F, 6.2F, 0}, {6.1F, 10, 0}, {3.1F, 10, 0}, {3.1F, 6.2F, 0}};

constexpr Glyph kGlyphs[] = {
    {'A', 9, kA, kAHole}, {'C', 8.5F, kC, {}}, {'D', 9, kD, kDHole},    {'E', 7, kE, {}},
    {'I', 3, kI, {}},     {'L', 7, kL, {}},    {'M', 11, kM, {}},       {'N', 9, kN, {}},
    {'O', 9, kO, kOHole}, {'P', 8.4F, kP, kPHole}, {'R', 9, kR, kPHole}, {'T', 8.4F, kT, {}},
    {'U', 9, kU, {}},     {'V', 9.2F, kV, {}}, {'X', 9.2F, kX, {}},     {'Y', 9.2F, kY, {}},
};
// clang-format on

constexpr float kBlankWidth = 4.0F;
constexpr int kCornerSteps = 16;  // chords of a rounded corner

const Glyph* glyphOf(char letter) {
    for (const Glyph& glyph : kGlyphs) {
        if (glyph.letter == letter) {
            return &glyph;
        }
    }
    return nullptr;
}

Point onPicture(const Placement& place, float x, float y) {
    return {place.origin.x + x * place.across.x + y * place.down.x,
            place.origin.y + x * place.across.y + y * place.down.y};
}

// The unit vector from one corner to another.
Point headingOf(const Corner& from, const Corner& to) {
    const float dx = to.x - from.x;
    const float dy = to.y - from.y;
    const float length = std::sqrt(dx * dx + dy * dy);
    return {dx / length, dy / length};
}

// A corner between two straight edges; the rounded ones are right angles in this alphabet, so the
// arc lies about the point that is one radius along both edges.
void addCorner(Path& path, const Corner& before, const Corner& at, const Corner& after,
               const Placement& place) {
    if (at.radius <= 0.0F) {
        return path.line(onPicture(place, at.x, at.y));
    }
    const Point back = headingOf(at, before);
    const Point ahead = headingOf(at, after);
    for (int i = 0; i <= kCornerSteps; ++i) {
        const float angle = 0.25F * real(i) / kCornerSteps;
        const float b = at.radius * (1.0F - sinTurn(angle));
        const float a = at.radius * (1.0F - cosTurn(angle));
        path.line(
            onPicture(place, at.x + back.x * b + ahead.x * a, at.y + back.y * b + ahead.y * a));
    }
}

void addOutline(Path& path, std::span<const Corner> corners, const Placement& place) {
    if (corners.empty()) {
        return;
    }
    // A contour begins at the start of its first corner's arc: begun and drawn again, the double
    // point has no area.
    const Corner& first = corners.front();
    const Point back = headingOf(first, corners.back());
    path.move(onPicture(place, first.x + back.x * first.radius, first.y + back.y * first.radius));
    for (size_t i = 0; i < corners.size(); ++i) {
        addCorner(path, corners[(i + corners.size() - 1) % corners.size()], corners[i],
                  corners[(i + 1) % corners.size()], place);
    }
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

float letterWidth(char letter) {
    const Glyph* glyph = glyphOf(letter);
    return glyph != nullptr ? glyph->width : kBlankWidth;
}

float wordWidth(std::string_view word) {
    float width = 0.0F;
    for (const char letter : word) {
        width += letterWidth(letter) + kLetterGap;
    }
    return std::max(0.0F, width - kLetterGap);
}

void addLetter(Path& path, char letter, const Placement& place) {
    if (const Glyph* glyph = glyphOf(letter); glyph != nullptr) {
        addOutline(path, glyph->outline, place);
        addOutline(path, glyph->counter, place);
    }
}

void drawWord(Canvas& canvas, std::string_view word, Placement place, Colour colour) {
    for (const char letter : word) {
        Path path;
        addLetter(path, letter, place);
        canvas.fill(path, colour);
        const float step = letterWidth(letter) + kLetterGap;
        place.origin.x += place.across.x * step;
        place.origin.y += place.across.y * step;
    }
}

}  // namespace demo
