// Pictures on the 8-pixel grid of the clip's tiles: nearly all of their tiles are flat, or few.

#include <algorithm>
#include <array>

#include "art/loops/canvas.h"
#include "art/loops/families.h"
#include "art/loops/field.h"
#include "art/loops/motion.h"

namespace demo {

namespace {

constexpr int kTile = 8;
constexpr int kAcross = kWidth / kTile;
constexpr int kDown = kHeight / kTile;

Colour pick(std::span<const Colour> colours, int index) {
    return colours[static_cast<size_t>(index)];
}

// A square cell by a rule for each point, which is told how far right of and below the cell's
// middle it lies.
template <class IndexAt>
void drawCell(Canvas& canvas, int left, int top, int size, std::span<const Colour> palette,
              IndexAt indexAt) {
    const float half = real(size) / 2.0F;
    sampleRect(canvas, left, top, size, size, palette,
               [half, indexAt](float x, float y) { return indexAt(x - half, y - half); });
}

constexpr int kCell = 80;  // of the woven arcs; whole tiles

// A cell with a band about each of two opposite corners, turned about its middle.
void drawArcCell(Canvas& canvas, int left, int top, float turn) {
    static constexpr std::array<Colour, 4> kPaints{kBlue, kWhite, kNavy, kPink};
    constexpr float kHalf = kCell / 2.0F;
    const float c = cosTurn(turn);
    const float s = sinTurn(turn);
    const auto paint = [c, s](float x, float y) {
        // Half a turn maps the two corners on each other: measure from the nearer one.
        const float u = x * c - y * s;
        const float v = x * s + y * c;
        const float side = u + v < 0.0F ? -1.0F : 1.0F;
        const float rx = kHalf - u * side;
        const float ry = kHalf - v * side;
        const float off = std::fabs(std::sqrt(rx * rx + ry * ry) - kHalf);
        return off < 4.0F ? 3 : off < 13.0F ? 1 : off < 18.0F ? 2 : 0;
    };
    drawCell(canvas, left, top, kCell, kPaints, paint);
}

}  // namespace

void drawPlasma(Canvas& canvas, const Moment& t) {
    constexpr int kColours = 60;
    static constexpr auto kRamp = ramp<kColours + 1>(
        {kInk, kPlum, kWine, kPink, kBlush, kPink, kViolet, kNavy, kSea, kBlue, kSea, kNavy, kInk});
    for (int row = 0; row < kDown; ++row) {
        for (int col = 0; col < kAcross; ++col) {
            const float x = (real(col) - 39.5F) / 80.0F;
            const float y = (real(row) - 22.0F) / 80.0F;
            const float dx = x - 0.32F * sinTurn(t);
            const float dy = y - 0.22F * cosTurn(t);
            const float v = sinTurn(x * 1.3F + t) + sinTurn(y * 1.9F - t) +
                            sinTurn((x + y) * 1.1F + 0.3F) +
                            1.2F * sinTurn(std::sqrt(dx * dx + dy * dy + 0.01F) * 2.2F - t);
            const int index = floored(fraction(v * 0.14F + t) * kColours);
            canvas.rect(col * kTile, row * kTile, kTile, kTile, pick(kRamp, index));
        }
    }
}

void drawDots(Canvas& canvas, const Moment& t) {
    constexpr int kPitch = 16;  // a dot fills four tiles that mirror one another
    static constexpr std::array<Colour, 4> kInks{kSea, kBlue, kPink, kWhite};
    for (int row = 0; row * kPitch < kHeight + kPitch; ++row) {
        for (int col = 0; col * kPitch < kWidth; ++col) {
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
                canvas.disc({cx, cy}, real(halves) / 2.0F, pick(kInks, tone));
            }
        }
    }
}

void drawHoles(Canvas& canvas, const Moment& t) {
    constexpr int kPitch = 40;  // pixels: five tiles
    constexpr float kSmallest = 2.0F;
    constexpr float kWidest = 21.0F;  // a ring touches the next one
    static constexpr std::array<Colour, 3> kPaints{kClear, kPink, kWhite};
    for (int row = 0; row < kHeight / kPitch; ++row) {
        for (int col = 0; col < kWidth / kPitch; ++col) {
            const float x = real(2 * col + 1 - kWidth / kPitch);
            const float y = real(2 * row + 1 - kHeight / kPitch);
            const float swell = 0.5F - 0.5F * cosTurn(std::sqrt(x * x + y * y) / 14.0F - t);
            const float radius = real(nearest(kSmallest + swell * (kWidest - kSmallest)));
            const auto paint = [radius](float px, float py) {
                const float r = std::sqrt(px * px + py * py);
                return r < radius ? 0 : r < radius + 3.5F ? 1 : 2;
            };
            drawCell(canvas, col * kPitch, row * kPitch, kPitch, kPaints, paint);
        }
    }
}

void drawArcs(Canvas& canvas, const Moment& t) {
    constexpr int kColumns = kWidth / kCell;
    constexpr int kRows = kHeight / kCell + 1;
    for (int row = 0; row < kRows; ++row) {
        for (int col = 0; col < kColumns; ++col) {
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
