// Pictures on the 8-pixel grid of the clip's tiles: nearly all of their tiles are flat, or few.

#include <algorithm>
#include <array>

#include "tools/clip/demo_canvas.h"
#include "tools/clip/demo_families.h"
#include "tools/clip/demo_field.h"
#include "tools/clip/demo_motion.h"

namespace demo {

namespace {

constexpr int kTile = 8;
constexpr int kAcross = kWidth / kTile;
constexpr int kDown = kHeight / kTile;

Color pick(std::span<const Color> colors, int index) {
    return colors[static_cast<size_t>(index)];
}

// The loudness of a frequency band at a time, 0 to 1: a beat of its own over a swell.
float loudness(int band, float time) {
    constexpr std::array<int, 4> kBeats{4, 2, 4, 8};  // beats in a loop
    const int kind = noisePick(band, 1, 4);
    const float beat =
        fraction(time * real(kBeats[static_cast<size_t>(kind)]) + noiseUnit(band, 2) * 0.35F);
    const float decay = (1.0F - beat) * (1.0F - beat) * (0.55F + 0.45F * noiseUnit(band, 4));
    const float swell = 0.5F + 0.5F * sinTurn(time * real(1 + band % 3) + noiseUnit(band, 3));
    const float flutter = 0.1F * sinTurn(time * real(7 + band % 4) + noiseUnit(band, 5));
    // The low bands, towards the middle of the picture, are the loud ones.
    const float weight = 1.0F - 0.045F * real(band);
    return std::clamp((0.06F + std::max(decay, 0.7F * swell * swell) + flutter) * weight, 0.0F,
                      1.0F);
}

constexpr int kCell = 80;  // of the woven arcs; whole tiles

// A cell with a band about each of two opposite corners, turned about its middle.
void drawArcCell(Canvas& canvas, int left, int top, float turn) {
    static constexpr std::array<Color, 4> kPaints{kBlue, kWhite, kNavy, kPink};
    constexpr float kHalf = kCell / 2.0F;
    const float c = cosTurn(turn);
    const float s = sinTurn(turn);
    const auto paint = [c, s](float x, float y) {
        // Half a turn maps the two corners on each other: measure from the nearer one.
        const float u = (x - kHalf) * c - (y - kHalf) * s;
        const float v = (x - kHalf) * s + (y - kHalf) * c;
        const float side = u + v < 0.0F ? -1.0F : 1.0F;
        const float rx = kHalf - u * side;
        const float ry = kHalf - v * side;
        const float off = std::fabs(std::sqrt(rx * rx + ry * ry) - kHalf);
        return off < 4.0F ? 3 : off < 13.0F ? 1 : off < 18.0F ? 2 : 0;
    };
    for (int y = 0; y < kCell; y++) {
        for (int x = 0; x < kCell; x++) {
            const float px = real(x);
            const float py = real(y);
            const std::array<int, 4> samples{
                paint(px + 0.25F, py + 0.25F), paint(px + 0.75F, py + 0.25F),
                paint(px + 0.25F, py + 0.75F), paint(px + 0.75F, py + 0.75F)};
            canvas.set(left + x, top + y, meanOf(samples, kPaints));
        }
    }
}

}  // namespace

void drawPlasma(int frame, int frames, uint8_t* rgba) {
    constexpr int kColors = 60;
    static constexpr auto kRamp = ramp<kColors + 1>(
        {kInk, kPlum, kWine, kPink, kBlush, kPink, kViolet, kNavy, kSea, kBlue, kSea, kNavy, kInk});
    Canvas canvas(rgba);
    const float t = timeOf(frame, frames);
    for (int row = 0; row < kDown; row++) {
        for (int col = 0; col < kAcross; col++) {
            const float x = (real(col) - 39.5F) / 80.0F;
            const float y = (real(row) - 22.0F) / 80.0F;
            const float dx = x - 0.32F * sinTurn(t);
            const float dy = y - 0.22F * cosTurn(t);
            const float v = sinTurn(x * 1.3F + t) + sinTurn(y * 1.9F - t) +
                            sinTurn((x + y) * 1.1F + 0.3F) +
                            1.2F * sinTurn(std::sqrt(dx * dx + dy * dy + 0.01F) * 2.2F - t);
            const int index = floored(fraction(v * 0.14F + t) * kColors);
            canvas.rect(col * kTile, row * kTile, kTile, kTile, pick(kRamp, index));
        }
    }
}

void drawHalftone(int frame, int frames, uint8_t* rgba) {
    constexpr int kPitch = 16;  // a dot fills four tiles that mirror one another
    static constexpr std::array<Color, 4> kInks{kSea, kBlue, kPink, kWhite};
    Canvas canvas(rgba);
    canvas.clear(kBlack);
    const float t = timeOf(frame, frames);
    for (int row = 0; row * kPitch < kHeight + kPitch; row++) {
        for (int col = 0; col * kPitch < kWidth; col++) {
            const float cx = real(col * kPitch + kPitch / 2);
            // The rows sit so that one of them runs along the middle of the picture.
            const float cy = real(row * kPitch + 4);
            const float x = (cx - kCentreX) / 320.0F;
            const float y = (cy - kCentreY) / 320.0F;
            const float ax = x - 0.7F * cosTurn(t);
            const float ay = y - 0.4F * sinTurn(t);
            const float bx = x + 0.6F * sinTurn(t * 2.0F);
            const float by = y + 0.35F * cosTurn(t);
            const float v = 0.5F + 0.25F * (sinTurn(std::sqrt(ax * ax + ay * ay) * 1.5F - t * 2) +
                                            sinTurn(std::sqrt(bx * bx + by * by) * 1.9F - t));
            const int halves = std::clamp(nearest(v * v * 20.0F), 0, 15);
            if (halves >= 2) {
                const int tone = std::clamp((halves - 1) / 4, 0, 3);
                canvas.disc(cx, cy, real(halves) / 2.0F, pick(kInks, tone));
            }
        }
    }
}

void drawBars(int frame, int frames, uint8_t* rgba) {
    constexpr int kBar = 32;   // a column with its gap
    constexpr int kMost = 22;  // lights above the middle row
    static constexpr auto kTones =
        ramp<kMost + 1>({kSea, kBlue, kBlue, kPink, kPink, kOrange, kOrange});
    Canvas canvas(rgba);
    canvas.clear(kBlack);
    const float t = timeOf(frame, frames);
    for (int bar = 0; bar < kWidth / 2 / kBar; bar++) {
        const int level = nearest(loudness(bar, t) * kMost);
        float held = 0.0F;  // what the falling mark of the loudest moment still shows
        for (int back = 0; back < 12; back++) {
            const float then = loudness(bar, t - real(back) / real(frames));
            held = std::max(held, then - 0.005F * real(back * back));
        }
        const int peak = std::min(kMost, nearest(held * kMost) + 1);
        const int x = (9 - bar) * kBar + 4;
        for (int light = 0; light <= level; light++) {
            canvas.rect(x, 177 - light * kTile, kBar - 8, 6, pick(kTones, light));
        }
        canvas.rect(x, 177 - peak * kTile, kBar - 8, 6, kWhite);
    }
    canvas.mirrorLeftRight();
    canvas.mirrorTopBottom();
}

void drawRain(int frame, int frames, uint8_t* rgba) {
    constexpr int kTail = 14;
    constexpr int kDrops = 190;
    static constexpr auto kTones = ramp<kTail>({kBlue, kBlue, kSea, kNavy, kInk});
    static constexpr auto kWarm = ramp<kTail>({kPink, kPink, kWine, kPlum, kInk});
    Canvas canvas(rgba);
    canvas.clear(kBlack);
    for (int drop = 0; drop < kDrops; drop++) {
        const int speed = 1 + drop * 3 / kDrops;  // tiles a frame; the fast drops are in front
        const int round = frames * (speed == 3 ? 3 : 1);
        const int col = noisePick(drop, 1, kAcross);
        const int head = wrapped(frame % frames * speed + noisePick(drop, 2, round), round);
        const int tail = kTail - 4 + 2 * (speed - 1);
        for (int i = std::min(tail, kTail) - 1; i >= 0; i--) {
            const int row = wrapped(head - i, round);
            const auto& tones = noisePick(drop, 3, 7) == 0 ? kWarm : kTones;
            canvas.rect(col * kTile + 1, row * kTile + 1, kTile - 2, kTile - 2,
                        i == 0 ? kWhite : pick(tones, i));
        }
    }
}

void drawTruchet(int frame, int frames, uint8_t* rgba) {
    constexpr int kColumns = kWidth / kCell;
    constexpr int kRows = kHeight / kCell + 1;
    Canvas canvas(rgba);
    const float t = timeOf(frame, frames);
    for (int row = 0; row < kRows; row++) {
        for (int col = 0; col < kColumns; col++) {
            // Each cell makes a quarter turn twice in a loop, and half a turn leaves a cell as it
            // was. The turns run over the picture as a wave.
            const int far = std::abs(2 * col - kColumns + 1) + std::abs(2 * row - kRows + 1);
            const float wave = fraction(t - real(far) / 40.0F) * 2.0F;
            const float step = std::min(fraction(wave) * 3.2F, 1.0F);
            const int shown = noisePick(row * kColumns + col, 9, 2);
            const float turn = (eased(step) + std::floor(wave) + real(shown)) / 4.0F;
            // The rows lie about the middle of the picture, so the outer ones are cut.
            drawArcCell(canvas, col * kCell, row * kCell - (kRows * kCell - kHeight) / 2, turn);
        }
    }
}

}  // namespace demo
