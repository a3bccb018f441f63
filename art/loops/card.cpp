// The test card: edges, safe areas, colours, greys and pixel patterns, with a frame counter.

#include <array>
#include <string_view>

#include "art/loops/canvas.h"
#include "art/loops/families.h"
#include "art/loops/lettering.h"
#include "art/loops/motion.h"

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
    canvas.ring(kCentreX, kCentreY, 161.0F, 159.0F, kWhite);
    for (const Point at : {Point{80, 80}, Point{560, 80}, Point{80, 280}, Point{560, 280}}) {
        canvas.ring(at.x, at.y, 40.5F, 39.0F, kWhite);
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

// Two digits: the card has fewer than a hundred frames.
std::array<char, 2> digitsOf(int number) {
    return {static_cast<char>('0' + number / 10), static_cast<char>('0' + number % 10)};
}

void drawCounter(Canvas& canvas, int number, int count) {
    const std::array<char, 2> digits = digitsOf(number);
    canvas.rect(232, 284, 176, 34, kBlack);
    drawText(canvas, "frame", 244, 294, 2, kWhite);
    drawText(canvas, {digits.data(), digits.size()}, 306, 290, 3, kOrange);
    drawText(canvas, "of", 350, 294, 2, kWhite);
    const std::array<char, 2> all = digitsOf(count);
    drawText(canvas, {all.data(), all.size()}, 376, 294, 2, kWhite);
    // A block that steps along the lower edge, once a loop.
    const int step = kWidth / count;
    canvas.rect(number * step, kHeight - 12, step, 10, kPink);
}

}  // namespace

void drawTestCard(int frame, int frames, Canvas& canvas) {
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
    drawCounter(canvas, frame % frames, frames);
}

}  // namespace demo
