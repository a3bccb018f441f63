// Lights in the dark: the flight through stars, the neon floor, broken rings that turn against one
// another, and beams from the edges of the stage.

#include <algorithm>
#include <array>

#include "art/loops/canvas.h"
#include "art/loops/families.h"
#include "art/loops/field.h"
#include "art/loops/motion.h"

namespace demo {

namespace {

constexpr int kHorizon = 208;

// The standing part of the neon floor: the sky, the striped sun and the hills.
void drawSunset(Canvas& canvas, float time) {
    constexpr int kRadius = 132;
    constexpr int kSunY = 176;
    static constexpr auto kSun = ramp<8>({kCream, kOrange, kOrange, kPink});
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
    const std::vector<Point> hill{{-8, 212},  {-8, 150},  {36, 176},  {84, 128}, {120, 168},
                                  {158, 148}, {196, 186}, {226, 178}, {262, 212}};
    canvas.polygon(hill, kPlum);
    for (size_t i = 1; i + 1 < hill.size(); ++i) {
        canvas.line(hill[i], hill[i + 1], 2.0F, kViolet);
        canvas.line(hill[i], {hill[i].x + 14.0F, real(kHorizon)}, 1.0F, kViolet);
    }
}

// A beam of light and its mirror images, as far as they cross the upper left quarter.
void drawBeams(Canvas& canvas, Point from, float heading, Colour tone) {
    constexpr float kReach = 900.0F;  // pixels, beyond any corner
    constexpr float kBeam = 0.003F;   // half the opening, in turns
    for (int image = 0; image < 4; ++image) {
        const auto seen = [image](float x, float y) {
            return Point{(image & 1) != 0 ? kWidth - x : x, (image & 2) != 0 ? kHeight - y : y};
        };
        const auto aim = [=](float turn) {
            return seen(from.x + kReach * cosTurn(turn), from.y + kReach * sinTurn(turn));
        };
        canvas.polygon({seen(from.x, from.y), aim(heading - kBeam), aim(heading + kBeam)}, tone,
                       Blend::ADD);
    }
}

}  // namespace

void drawStars(Canvas& canvas, const Moment& t) {
    constexpr int kStars = 84;  // in a quarter of the sky; the others mirror it
    static constexpr std::array<Colour, 8> kTones{kWhite, kBlue,   kPink, kWhite,
                                                  kBlue,  kOrange, kPink, kSky};
    constexpr float kFar = 3.0F;
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
        canvas.polygon(
            {{head.x + side.x, head.y + side.y}, tail, {head.x - side.x, head.y - side.y}},
            mixed(tone, kNavy, dim, 3));
    }
}

void drawGrid(Canvas& canvas, const Moment& t) {
    constexpr int kLanes = 18;
    constexpr int kRungs = 36;
    constexpr float kDrop = 190.0F;  // of the floor below the eye, at distance 1
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
}

void drawRings(Canvas& canvas, const Moment& t) {
    struct Ring {
        float inner, outer;
        int parts, steps;  // arcs on the ring; arcs it moves on by in a loop
        float share;       // of an arc that is lit
        int tone;
    };
    static constexpr std::array<Ring, 9> kRings{{
        {36, 52, 2, 1, 0.62F, 1},
        {70, 77, 12, -4, 0.5F, 3},
        {90, 110, 4, -1, 0.7F, 2},
        {127, 132, 36, 9, 0.4F, 1},
        {146, 170, 6, 2, 0.5F, 3},
        {192, 200, 4, -1, 0.8F, 4},
        {218, 246, 8, 2, 0.55F, 2},
        {270, 274, 2, -1, 0.86F, 1},
        {298, 338, 12, -3, 0.5F, 5},
    }};
    static constexpr std::array<Colour, 6> kPaints{kBlack, kWhite, kPink, kBlue, kOrange, kSea};
    const float beat = 1.0F - fraction(t * 4.0F);
    const float core = 8.0F + 14.0F * beat * beat;
    sampleField(canvas, kWidth, kHeight / 2, kPaints, [=](float px, float py) {
        const float x = px - kCentreX;
        const float y = py - kCentreY;
        const float r = std::sqrt(x * x + y * y);
        if (r < core) {
            return 2;
        }
        for (const Ring& ring : kRings) {
            if (r >= ring.inner && r < ring.outer) {
                const float arc = turnOf(x, y) * real(ring.parts) - t * real(ring.steps);
                return fraction(arc) < ring.share ? ring.tone : 0;
            }
        }
        return 0;
    });
}

void drawLasers(Canvas& canvas, const Moment& t) {
    struct Fan {
        Point from;
        int beams;
        float heading, spread, sway;  // turns
        int blinks;                   // in a loop
        Colour tone;
    };
    static constexpr std::array<Fan, 3> kFans{{
        {{-24, -14}, 3, 0.085F, 0.11F, 0.03F, 2, kPink},
        {{-30, 180}, 3, -0.11F, 0.11F, 0.05F, 1, kBlue},
        {{320, -24}, 2, 0.30F, 0.08F, 0.04F, 2, kOrange},
    }};
    for (const Fan& fan : kFans) {
        for (int i = 0; i < fan.beams; ++i) {
            const float place = real(i) / real(fan.beams - 1) - 0.5F;
            const float open = 0.6F + 0.4F * cosTurn(t);
            const float turn =
                fan.heading + place * fan.spread * open + fan.sway * sinTurn(t + fan.spread);
            if (fraction(t * real(fan.blinks) + real(i) * 0.19F) < 0.7F) {
                drawBeams(canvas, fan.from, turn, fan.tone);
            }
        }
    }
}

}  // namespace demo
