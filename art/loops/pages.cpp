// Pages to be read: the test card, and the keys and the pad's buttons of the mix screen.

#include <algorithm>
#include <array>
#include <iterator>
#include <string>
#include <string_view>

#include "art/loops/canvas.h"
#include "art/loops/families.h"
#include "art/loops/lettering.h"
#include "art/loops/motion.h"
#include "px/filters.h"
#include "px/modes.h"
#include "tools/base/texts.h"

namespace demo {

namespace {

constexpr int kSquare = 40;  // of the grid: 16 x 9 squares fill the picture
constexpr int kBand = 400;   // width of the bands of colours and patterns
constexpr int kBandLeft = (kWidth - kBand) / 2;

void outline(Canvas& canvas, int x, int y, int width, int height, Colour colour) {
    canvas.rect(x, y, width, 1, colour);
    canvas.rect(x, y + height - 1, width, 1, colour);
    canvas.rect(x, y, 1, height, colour);
    canvas.rect(x + width - 1, y, 1, height, colour);
}

// The grid, the outermost pixels and the safe areas at a twentieth and a tenth.
void drawFrames(Canvas& canvas) {
    constexpr Colour kLine = rgb(0x505068);
    for (int x = kSquare; x < kWidth; x += kSquare) {
        canvas.rect(x, 0, 1, kHeight, kLine);
    }
    for (int y = kSquare; y < kHeight; y += kSquare) {
        canvas.rect(0, y, kWidth, 1, kLine);
    }
    outline(canvas, 0, 0, kWidth, kHeight, kWhite);
    outline(canvas, 32, 18, kWidth - 64, kHeight - 36, kOrange);
    outline(canvas, 64, 36, kWidth - 128, kHeight - 72, kBlue);
    drawText(canvas, "5 %", 132, 24, 1, kOrange);
    drawText(canvas, "10 %", 132, 42, 1, kBlue);
}

// Circles stay round where the picture keeps its shape.
void drawCircles(Canvas& canvas) {
    canvas.ring({kCentreX, kCentreY}, 161.0F, 159.0F, kWhite);
    for (const Point at : {Point{80, 80}, Point{560, 80}, Point{80, 280}, Point{560, 280}}) {
        canvas.ring(at, 40.5F, 39.0F, kWhite);
    }
}

void drawColours(Canvas& canvas) {
    static constexpr std::array<Colour, 8> kBars{rgb(0xFFFFFF), rgb(0xFFFF00), rgb(0x00FFFF),
                                                 rgb(0x00FF00), rgb(0xFF00FF), rgb(0xFF0000),
                                                 rgb(0x0000FF), rgb(0x000000)};
    static constexpr std::array<Colour, 5> kOwn{kWhite, kOrange, kBlue, kPink, kBlack};
    constexpr int kGreys = 32;  // every level of red and blue
    for (int i = 0; i < 8; ++i) {
        canvas.rect(kBandLeft + i * 50, 80, 50, 40, kBars[static_cast<size_t>(i)]);
    }
    for (int i = 0; i < 5; ++i) {
        canvas.rect(kBandLeft + i * 80, 120, 80, 24, kOwn[static_cast<size_t>(i)]);
    }
    for (int i = 0; i < kGreys; ++i) {
        const uint32_t level = static_cast<uint32_t>(i) * 255U / (kGreys - 1);
        const int left = kBand * i / kGreys;
        const int right = kBand * (i + 1) / kGreys;
        canvas.rect(kBandLeft + left, 216, right - left, 24, rgb(level << 16 | level << 8 | level));
    }
}

// Stripes and checks of one, two and four pixels.
void drawPitches(Canvas& canvas) {
    constexpr int kPatch = 50;
    constexpr std::array<int, 8> kPitch{1, 2, 4, 1, 2, 4, 1, 2};
    for (int y = 240; y < 280; ++y) {
        for (int x = 0; x < kBand; ++x) {
            const int patch = x / kPatch;
            const int pitch = kPitch[static_cast<size_t>(patch)];
            const int across = patch >= 3 && patch < 6 ? 0 : x / pitch;
            const int down = patch < 3 ? 0 : y / pitch;
            canvas.set(kBandLeft + x, y, (across + down) % 2 == 0 ? kWhite : kBlack);
        }
    }
}

void drawCounter(Canvas& canvas, const Moment& t) {
    canvas.rect(232, 284, 176, 34, kBlack);
    drawText(canvas, "frame", 244, 294, 2, kWhite);
    const char digits[] = {static_cast<char>('0' + t.frame / 10),
                           static_cast<char>('0' + t.frame % 10)};
    drawText(canvas, {digits, 2}, 306, 290, 3, kOrange);
    drawText(canvas, "of", 350, 294, 2, kWhite);
    drawText(canvas, std::to_string(t.frames), 376, 294, 2, kWhite);
    // A block that steps along the lower edge, once a loop.
    const int step = kWidth / t.frames;
    canvas.rect(t.frame * step, kHeight - 12, step, 10, kPink);
}

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
    std::string_view cap, text;
};

// A row of equal keys from margin to margin; a light passes along them once in a loop.
struct KeyRow {
    int count, top;
    Colour tone;
    float time;
};

// The last of several words stands on a second line.
void drawKey(Canvas& canvas, const KeyRow& row, int i, const Key& key) {
    constexpr int kGap = 5;
    constexpr int kTall = 64;
    constexpr int kRoom = kRight - kLeft + kGap;
    const int x = kLeft + kRoom * i / row.count;
    const int wide = kLeft + kRoom * (i + 1) / row.count - kGap - x;
    const bool lit = floored(row.time * real(row.count)) == i;
    canvas.rect(x, row.top, wide, kTall, lit ? row.tone : kFace);
    canvas.rect(x, row.top + kTall - 4, wide, 4, row.tone);
    const size_t first = std::min(key.text.rfind(' '), key.text.size());
    const std::string_view more = key.text.substr(std::min(first + 1, key.text.size()));
    const int middle = x + wide / 2;
    const int down = more.empty() ? 5 : 0;
    const Colour ink = lit ? kBlack : kWhite;
    drawTextCentred(canvas, key.cap, middle, row.top + 4 + down, kLarge, lit ? kBlack : row.tone);
    drawTextCentred(canvas, key.text.substr(0, first), middle, row.top + 22 + 2 * down, kLarge,
                    ink);
    drawTextCentred(canvas, more, middle, row.top + 41, kLarge, ink);
}

// The panel's words for a mode, but where the page has room for plainer ones.
std::string_view wordsOf(const ModeControl& control) {
    switch (control.mode) {
        case MODE_TOP:
            return "top alone";
        case MODE_KEY:
            return "alpha or chroma";
        default:
            return control.label;
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

void drawTestCard(Canvas& canvas, const Moment& t) {
    canvas.clear(rgb(0x202030));
    drawFrames(canvas);
    drawCircles(canvas);
    drawColours(canvas);
    drawPitches(canvas);
    canvas.rect(kBandLeft, 144, kBand, 72, kBlack);
    drawTextCentred(canvas, "VELMORA TEST CARD", 320, 152, 3, kWhite);
    drawTextCentred(canvas, "640 x 360 pixels, 25.6 frames a second", 320, 181, 2, kSky);
    drawTextCentred(canvas, "circles round, white edge seen on four sides, 32 greys apart", 320,
                    203, 1, kSky);
    drawCounter(canvas, t);
}

void drawKeys(Canvas& canvas, const Moment& t) {
    constexpr std::string_view kFilterCaps = "QWERTYUIO";  // the keys of filters 1 to 9 at first
    static constexpr Key kOthers[3][4] = {
        {{"Up Down", "layer"}, {"Left Right", "clip"}, {"Z", "reverse"}, {"Space", "hold"}},
        {{"S", "flash (in 1)"}, {"A", "fade (in 1)"}, {"W held", "no Z S A"}, {"drag", "scrub"}},
        {{"Tab", "panel"}, {"Return", "playlists"}, {"F", "full screen"}}};
    static constexpr int kIndents[] = {106, 272, 470};  // right of the caps
    canvas.clear(kGround);
    drawTitle(canvas, "KEYS", "on the mix screen", kPink);
    for (int i = 0; i < static_cast<int>(std::size(kModes)); ++i) {
        drawKey(canvas, {std::size(kModes), 58, kPink, t}, i, {kModes[i].cap, wordsOf(kModes[i])});
    }
    for (int i = 0; i < static_cast<int>(kFilterCaps.size()); ++i) {
        const std::string name = maker::lowerCase(filterOf(i + 1).name);
        drawKey(canvas, {kFilterCaps.size(), 127, kBlue, t}, i,
                {kFilterCaps.substr(static_cast<size_t>(i), 1), name});
    }
    drawText(canvas, "held, with Backspace: on, off.  With arrows: direction.", kLeft, 199, kLarge,
             kBlue);
    for (int column = 0; column < 3; ++column) {
        for (int row = 0; row < 4; ++row) {
            if (const Key& key = kOthers[column][row]; !key.cap.empty()) {
                drawEntry(canvas, key, kLeft, 228 + row * 29, kIndents[column], kOrange);
            }
        }
    }
}

void drawPad(Canvas& canvas, const Moment& t) {
    static constexpr Key kOnStage[] = {
        {"start", "hold"}, {"select", "panel"}, {"start + select", "playlists"}};
    static constexpr Key kInList[] = {
        {"up, down", "choose"}, {"confirm", "load"}, {"back", "home"}};
    canvas.clear(kGround);
    const int lit = t.frame * static_cast<int>(kButtons.size()) / t.frames;
    drawTitle(canvas, "PAD", "on the mix screen", kBlue);
    drawPadBody(canvas);
    for (size_t i = 0; i < kButtons.size(); ++i) {
        drawButton(canvas, kButtons[i], lit == static_cast<int>(i));
    }
    drawTextCentred(canvas, "select", 292, 146, 1, kDim);
    drawTextCentred(canvas, "start", 348, 146, 1, kDim);
    drawText(canvas, "in the list of playlists", kLeft + 330, 232, kLarge, kDim);
    for (int i = 0; i < 3; ++i) {
        drawEntry(canvas, kOnStage[i], kLeft, 254 + i * 28, 170, kWhite);
        drawEntry(canvas, kInList[i], kLeft + 330, 254 + i * 28, 110, kPink);
    }
}

}  // namespace demo
