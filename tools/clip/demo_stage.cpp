// Lights: broken rings that turn against one another, and beams from the edges of the stage.

#include <algorithm>
#include <array>

#include "tools/clip/demo_canvas.h"
#include "tools/clip/demo_families.h"
#include "tools/clip/demo_motion.h"

namespace demo {

namespace {

// A beam of light with a white core; `flip` is -1 for the mirror image of a heading.
void drawBeam(Canvas& canvas, Point from, float heading, float flip, Color tone) {
    constexpr float kReach = 900.0F;  // pixels, beyond any corner
    constexpr float kBeam = 0.005F;   // half the opening, in turns
    constexpr float kCore = 0.0012F;
    const auto aim = [=](float turn) {
        return Point{from.x + kReach * cosTurn(turn) * flip, from.y + kReach * sinTurn(turn)};
    };
    const std::array<Point, 3> beam{{from, aim(heading - kBeam), aim(heading + kBeam)}};
    const std::array<Point, 3> core{{from, aim(heading - kCore), aim(heading + kCore)}};
    canvas.polygon(beam, tone, Blend::kAdd);
    canvas.polygon(core, kWhite, Blend::kAdd);
}

}  // namespace

void drawRings(int frame, int frames, uint8_t* rgba) {
    struct Ring {
        float radius, thick;
        int parts, steps;  // arcs on the ring; arcs it moves on by in a loop
        float share;       // of an arc that is lit
        Color tone;
    };
    static constexpr std::array<Ring, 9> kRings{{
        {44, 16, 2, 1, 0.62F, kWhite},
        {74, 6, 12, -4, 0.5F, kBlue},
        {100, 20, 4, -1, 0.7F, kPink},
        {130, 4, 36, 9, 0.4F, kWhite},
        {158, 24, 6, 2, 0.5F, kBlue},
        {196, 8, 4, -1, 0.8F, kOrange},
        {232, 28, 8, 2, 0.55F, kPink},
        {272, 4, 2, -1, 0.86F, kWhite},
        {318, 40, 12, -3, 0.5F, kSea},
    }};
    Canvas canvas(rgba);
    canvas.clear(kBlack);
    const float t = timeOf(frame, frames);
    const float beat = 1.0F - fraction(t * 4.0F);
    canvas.disc(kCentreX, kCentreY, 8.0F + 14.0F * beat * beat, kPink);
    for (const Ring& ring : kRings) {
        const float half = ring.thick / 2.0F;
        for (int i = 0; i < ring.parts; i++) {
            const float from = (real(i) + t * real(ring.steps)) / real(ring.parts);
            const float to = from + ring.share / real(ring.parts);
            Path path;
            path.move(kCentreX + (ring.radius - half) * cosTurn(from),
                      kCentreY + (ring.radius - half) * sinTurn(from));
            path.arc(kCentreX, kCentreY, ring.radius + half, from, to);
            path.arc(kCentreX, kCentreY, ring.radius - half, to, from);
            canvas.fill(path, ring.tone);
        }
    }
    canvas.turnTopHalf();
}

void drawLasers(int frame, int frames, uint8_t* rgba) {
    struct Fan {
        Point from;
        int beams;
        float heading, spread, sway;  // turns
        int sweeps, blinks;           // in a loop
        Color tone;
    };
    static constexpr std::array<Fan, 3> kFans{{
        {{-20, -10}, 4, 0.10F, 0.16F, 0.05F, 1, 2, kPink},
        {{-20, 372}, 3, -0.11F, 0.13F, 0.05F, -1, 4, kBlue},
        {{320, 376}, 3, -0.33F, 0.12F, 0.05F, 2, 2, kOrange},
    }};
    Canvas canvas(rgba);
    canvas.clear(kBlack);
    const float t = timeOf(frame, frames);
    for (const Fan& fan : kFans) {
        for (int i = 0; i < fan.beams; i++) {
            const float place = real(i) / real(fan.beams - 1) - 0.5F;
            const float open = 0.55F + 0.45F * cosTurn(t * real(fan.sweeps));
            const float turn = fan.heading + place * fan.spread * open +
                               fan.sway * sinTurn(t * real(fan.sweeps) + 0.2F);
            const bool lit = fraction(t * real(fan.blinks) + real(i) * 0.19F) < 0.62F;
            if (lit) {
                drawBeam(canvas, fan.from, turn, 1.0F, fan.tone);
                drawBeam(canvas, {kWidth - fan.from.x, fan.from.y}, turn, -1.0F, fan.tone);
            }
        }
    }
    canvas.mirrorLeftRight();
}

}  // namespace demo
