// Lights: broken rings that turn against one another, and beams from the edges of the stage.

#include <algorithm>
#include <array>

#include "art/loops/canvas.h"
#include "art/loops/families.h"
#include "art/loops/field.h"
#include "art/loops/motion.h"

namespace demo {

namespace {

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
        const std::array<Point, 3> beam{
            {seen(from.x, from.y), aim(heading - kBeam), aim(heading + kBeam)}};
        canvas.polygon(beam, tone, Blend::ADD);
    }
}

}  // namespace

void drawRings(int frame, int frames, Canvas& canvas) {
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
    const float t = timeOf(frame, frames);
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
    canvas.turnTopHalf();
}

void drawLasers(int frame, int frames, Canvas& canvas) {
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
    canvas.clear(kBlack);
    const float t = timeOf(frame, frames);
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
    canvas.mirrorLeftRight();
    canvas.mirrorTopBottom();
}

}  // namespace demo
