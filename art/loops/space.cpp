// Points and lines in space: the flight through stars and the neon floor.

#include <algorithm>
#include <array>

#include "art/loops/canvas.h"
#include "art/loops/families.h"
#include "art/loops/motion.h"

namespace demo {

namespace {

constexpr int kHorizon = 208;

// The standing part of the neon floor: the sky, the striped sun and the hills.
void drawSunset(Canvas& canvas, float time) {
    constexpr int kRadius = 132;
    constexpr int kSunY = 176;
    static constexpr auto kSun = ramp<8>({kCream, kOrange, kOrange, kPink});
    canvas.clear(kBlack);
    for (int i = 0; i < 70; ++i) {
        const int x = noisePick(i, 1, kWidth);
        const int y = noisePick(i, 2, kHorizon - 40);
        canvas.rect(x, y, 1 + i % 2, 1 + i % 2, i % 3 == 0 ? kSky : kBlue);
    }
    for (int band = 0; band < 8; ++band) {
        const int y = kSunY - kRadius + band * 21;
        for (int row = y; row < std::min(y + 21, kHorizon); ++row) {
            const float dy = real(row - kSunY) + 0.5F;
            const float half = std::sqrt(std::max(0.0F, real(kRadius * kRadius) - dy * dy));
            canvas.rect(nearest(kCentreX - half), row, 2 * nearest(half), 1,
                        kSun[static_cast<size_t>(band)]);
        }
    }
    // Gaps that sink through the sun and widen on their way.
    for (int gap = 0; gap < 6; ++gap) {
        const float way = (real(gap) + fraction(time)) / 6.0F;
        const int y = kHorizon - 100 + nearest(way * 100.0F);
        canvas.rect(180, y, 280, 1 + nearest(way * 9.0F), kBlack);
    }
}

void drawHills(Canvas& canvas) {
    static constexpr std::array<Point, 9> kHill{{{-8, 212},
                                                 {-8, 150},
                                                 {36, 176},
                                                 {84, 128},
                                                 {120, 168},
                                                 {158, 148},
                                                 {196, 186},
                                                 {226, 178},
                                                 {262, 212}}};
    canvas.polygon(kHill, kPlum);
    for (size_t i = 1; i + 1 < kHill.size(); ++i) {
        canvas.line(kHill[i], kHill[i + 1], 2.0F, kViolet);
        canvas.line(kHill[i], {kHill[i].x + 14.0F, real(kHorizon)}, 1.0F, kViolet);
    }
}

}  // namespace

void drawStars(int frame, int frames, Canvas& canvas) {
    constexpr int kStars = 84;  // in a quarter of the sky; the others mirror it
    static constexpr std::array<Colour, 8> kTones{kWhite, kBlue,   kPink, kWhite,
                                                  kBlue,  kOrange, kPink, kSky};
    constexpr float kFar = 3.0F;
    canvas.clear(kBlack);
    const float t = timeOf(frame, frames);
    for (int i = 0; i < kStars; ++i) {
        // Stars come out of the distance once or twice in a loop, each on its own line.
        const float depth = 1.0F - fraction(real(i) * 0.618034F + t * real(1 + i % 2));
        const float z = 0.16F + depth * kFar;
        const float angle = 0.5F + 0.25F * fraction(real(i) * 0.7548777F);
        const float out = 50.0F + 420.0F * std::sqrt(noiseUnit(i, 3));
        const Point ray{cosTurn(angle) * out, sinTurn(angle) * out};
        const float trail = z * 1.2F + 0.16F;
        const Point head{kCentreX + ray.x / z, kCentreY + ray.y / z};
        const Point tail{kCentreX + ray.x / trail, kCentreY + ray.y / trail};
        const float half = std::clamp(6.0F / z, 2.0F, 18.0F) * 0.5F;
        const Point side{-sinTurn(angle) * half, cosTurn(angle) * half};
        const Colour tone = kTones[static_cast<size_t>(noisePick(i, 4, 8))];
        const int dim = std::clamp(nearest(depth * 4.0F) - 2, 0, 2);
        const std::array<Point, 3> dart{
            {{head.x + side.x, head.y + side.y}, tail, {head.x - side.x, head.y - side.y}}};
        canvas.polygon(dart, mixed(tone, kNavy, dim, 3));
    }
    canvas.mirrorLeftRight();
    canvas.mirrorTopBottom();
}

void drawGrid(int frame, int frames, Canvas& canvas) {
    constexpr int kLanes = 18;
    constexpr int kRungs = 36;
    constexpr float kDrop = 190.0F;  // of the floor below the eye, at distance 1
    const float t = timeOf(frame, frames);
    drawSunset(canvas, t);
    drawHills(canvas);
    canvas.rect(0, kHorizon, kWidth / 2, kHeight - kHorizon, kInk);
    for (int lane = 0; lane <= kLanes; ++lane) {
        const float x = kCentreX - real(lane) * 22.0F;
        const Point foot{kCentreX + (x - kCentreX) * 8.0F, kHorizon + 168.0F};
        canvas.line({x, real(kHorizon)}, foot, lane < 3 ? 2.6F : 2.0F, kPink);
    }
    for (int rung = 0; rung < kRungs; ++rung) {
        const float z = 1.0F + (real(rung) - fraction(t * 2.0F)) * 0.42F;
        const float y = kHorizon + kDrop / std::max(z, 0.5F);
        const float width = std::clamp(3.6F / z, 1.0F, 4.0F);
        for (int x = 0; x < kWidth / 2; ++x) {
            canvas.column(x, y - width / 2.0F, y + width / 2.0F, rung < 8 ? kPink : kWine);
        }
    }
    canvas.rect(0, kHorizon - 2, kWidth / 2, 3, kBlush);
    canvas.mirrorLeftRight();
}

}  // namespace demo
