// The help pages: the keys and the pad's buttons of the mix screen, to be read from a distance.

#include <array>
#include <string_view>

#include "art/loops/canvas.h"
#include "art/loops/families.h"
#include "art/loops/lettering.h"
#include "art/loops/motion.h"

namespace demo {

namespace {

constexpr Colour kGround = rgb(0x101018);  // of the home screen
constexpr Colour kFace = rgb(0x282838);    // of a key
constexpr Colour kDim = rgb(0xA0A0B0);
constexpr int kLarge = 2;  // text scales
constexpr int kTitle = 3;
constexpr int kLeft = 32;  // the safe area: a twentieth of the picture on every side
constexpr int kRight = kWidth - kLeft;
constexpr int kTop = 18;

void drawTitle(Canvas& canvas, std::string_view title, std::string_view place, Colour tone) {
    canvas.rect(kLeft, kTop, textWidth(title, kTitle) + 20, 33, tone);
    drawText(canvas, title, kLeft + 10, kTop + 6, kTitle, kBlack);
    const int width = textWidth(place, kLarge);
    drawText(canvas, place, kRight - width, kTop + 10, kLarge, kDim);
}

struct Key {
    std::string_view cap, text, more;  // `more` is a second line
};

// A row of equal keys from margin to margin; a light passes along them once in a loop.
template <size_t Count>
void drawKeyRow(Canvas& canvas, const std::array<Key, Count>& keys, int top, Colour tone,
                float time) {
    constexpr int kCount = static_cast<int>(Count);
    constexpr int kGap = 5;
    constexpr int kTall = 64;
    constexpr int kRoom = kRight - kLeft + kGap;
    for (int i = 0; i < kCount; ++i) {
        const Key& key = keys[static_cast<size_t>(i)];
        const int x = kLeft + kRoom * i / kCount;
        const int wide = kLeft + kRoom * (i + 1) / kCount - kGap - x;
        const bool lit = floored(time * kCount) == i;
        canvas.rect(x, top, wide, kTall, lit ? tone : kFace);
        canvas.rect(x, top + kTall - 4, wide, 4, tone);
        const int middle = x + wide / 2;
        const int down = key.more.empty() ? 5 : 0;
        const Colour ink = lit ? kBlack : kWhite;
        drawTextCentred(canvas, key.cap, middle, top + 4 + down, kLarge, lit ? kBlack : tone);
        drawTextCentred(canvas, key.text, middle, top + 22 + 2 * down, kLarge, ink);
        drawTextCentred(canvas, key.more, middle, top + 41, kLarge, ink);
    }
}

// A key cap of its own width, and what the key does.
void drawEntry(Canvas& canvas, const Key& key, int left, int top, int indent, Colour tone) {
    const int width = textWidth(key.cap, kLarge) + 12;
    canvas.rect(left + indent - 10 - width, top, width, 23, tone);
    drawText(canvas, key.cap, left + indent - 4 - width, top + 3, kLarge, kBlack);
    drawText(canvas, key.text, left + indent, top + 3, kLarge, kWhite);
}

void drawBox(Canvas& canvas, int x, int y, int width, int height, Colour edge, Colour face) {
    canvas.rect(x, y, width, height, edge);
    canvas.rect(x + 3, y + 3, width - 6, height - 6, face);
}

// The pad as on the controller page, in boxes: shoulders, body, grips, wells.
void drawPadBody(Canvas& canvas) {
    constexpr Colour kEdge = rgb(0x606878);
    constexpr Colour kBody = rgb(0x303640);
    constexpr Colour kWell = rgb(0x1A1E25);
    drawBox(canvas, 376, 68, 56, 24, kEdge, kFace);
    drawBox(canvas, 176, 84, 288, 96, kEdge, kBody);
    drawBox(canvas, 176, 164, 56, 56, kEdge, kBody);
    drawBox(canvas, 408, 164, 56, 56, kEdge, kBody);
    canvas.rect(179, 158, 50, 30, kBody);
    canvas.rect(411, 158, 50, 30, kBody);
    canvas.rect(188, 94, 80, 76, kWell);
    canvas.rect(372, 94, 80, 76, kWell);
    canvas.rect(402, 100, 20, 20, kFace);  // two buttons without a function
    canvas.rect(376, 122, 20, 20, kFace);
}

// A part of the pad, and what it does beside the picture, joined by a line that leaves the part
// sideways. A part that another one explains has no words.
struct Button {
    int x, y, width, height;
    Colour tone;
    bool right;  // side of the words
    int top;     // of the words
    std::string_view name, text;
};

constexpr std::array<Button, 9> kButtons{{
    {208, 68, 56, 24, kOrange, false, 62, "left shoulder held", "no reverse"},
    {219, 100, 18, 20, kPink, false, 124, "up, down", "layer"},
    {219, 144, 18, 20, kPink, false, 0, "", ""},
    {194, 123, 22, 18, kBlue, false, 176, "left, right", "clip"},
    {240, 123, 22, 18, kBlue, false, 0, "", ""},
    {402, 144, 20, 20, kOrange, true, 176, "confirm", "reverse"},
    {428, 122, 20, 20, kWhite, true, 124, "back", "in the list"},
    {276, 126, 32, 14, kWhite, true, 0, "", ""},
    {332, 126, 32, 14, kWhite, true, 0, "", ""},
}};

void drawButton(Canvas& canvas, const Button& button, bool lit) {
    const int wide = textWidth(button.name, kLarge);
    const int left = button.right ? kRight - wide : kLeft;
    drawText(canvas, button.name, left, button.top, kLarge, button.tone);
    const int below = button.right ? kRight - textWidth(button.text, kLarge) : kLeft;
    drawText(canvas, button.text, below, button.top + 20, kLarge, kWhite);
    const Colour light = button.tone == kWhite ? kPink : kWhite;
    canvas.rect(button.x, button.y, button.width, button.height, lit ? light : button.tone);
}

}  // namespace

void drawKeys(int frame, int frames, Canvas& canvas) {
    static constexpr std::array<Key, 6> kModes{{{"1", "top", "alone"},
                                                {"2", "blend", ""},
                                                {"3", "add", ""},
                                                {"4", "multiply", ""},
                                                {"5", "alpha or", "chroma"},
                                                {"6", "half", "half"}}};
    static constexpr std::array<Key, 9> kFilters{{{"Q", "mirror", ""},
                                                  {"W", "scroll", ""},
                                                  {"E", "invert", ""},
                                                  {"R", "burned", ""},
                                                  {"T", "zoom", ""},
                                                  {"Y", "hue", ""},
                                                  {"U", "game", "boy"},
                                                  {"I", "glitch", ""},
                                                  {"O", "snow", ""}}};
    static constexpr std::array<std::array<Key, 4>, 3> kOthers{{{{{"Up Down", "layer", ""},
                                                                  {"Left Right", "clip", ""},
                                                                  {"Z", "reverse", ""},
                                                                  {"Space", "hold", ""}}},
                                                                {{{"S", "flash (in 1)", ""},
                                                                  {"A", "fade (in 1)", ""},
                                                                  {"W held", "no Z S A", ""},
                                                                  {"drag", "scrub", ""}}},
                                                                {{{"Tab", "panel", ""},
                                                                  {"Return", "playlists", ""},
                                                                  {"F", "full screen", ""},
                                                                  {"", "", ""}}}}};
    static constexpr std::array<int, 3> kIndents{106, 272, 470};  // right of the caps
    canvas.clear(kGround);
    const float t = timeOf(frame, frames);
    drawTitle(canvas, "KEYS", "on the mix screen", kPink);
    drawKeyRow(canvas, kModes, 58, kPink, t);
    drawKeyRow(canvas, kFilters, 127, kBlue, t);
    drawText(canvas, "held, with Backspace: on, off.  With arrows: direction.", kLeft, 199, kLarge,
             kBlue);
    for (size_t column = 0; column < kOthers.size(); ++column) {
        for (int row = 0; row < 4; ++row) {
            const Key& key = kOthers[column][static_cast<size_t>(row)];
            if (!key.cap.empty()) {
                drawEntry(canvas, key, kLeft, 228 + row * 29, kIndents[column], kOrange);
            }
        }
    }
}

void drawPad(int frame, int frames, Canvas& canvas) {
    static constexpr std::array<Key, 6> kWords{{{"start", "hold", ""},
                                                {"select", "panel", ""},
                                                {"start + select", "playlists", ""},
                                                {"up, down", "choose", ""},
                                                {"confirm", "load", ""},
                                                {"back", "home", ""}}};
    canvas.clear(kGround);
    const int lit = frame % frames * static_cast<int>(kButtons.size()) / frames;
    drawTitle(canvas, "PAD", "on the mix screen", kBlue);
    drawPadBody(canvas);
    for (size_t i = 0; i < kButtons.size(); ++i) {
        drawButton(canvas, kButtons[i], lit == static_cast<int>(i));
    }
    drawTextCentred(canvas, "select", 292, 146, 1, kDim);
    drawTextCentred(canvas, "start", 348, 146, 1, kDim);
    for (int i = 0; i < 3; ++i) {
        drawEntry(canvas, kWords[static_cast<size_t>(i)], kLeft, 254 + i * 28, 170, kWhite);
    }
    drawText(canvas, "in the list of playlists", kLeft + 330, 232, kLarge, kDim);
    for (int i = 3; i < 6; ++i) {
        drawEntry(canvas, kWords[static_cast<size_t>(i)], kLeft + 330, 254 + (i - 3) * 28, 110,
                  kPink);
    }
}

}  // namespace demo
