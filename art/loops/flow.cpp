// Things that drift and wave: seas of colour, twisting ribbons, falling paper.

#include <algorithm>
#include <array>

#include "art/loops/canvas.h"
#include "art/loops/families.h"
#include "art/loops/motion.h"

namespace demo {

void drawWaves(Canvas& canvas, const Moment& t) {
    constexpr int kLayers = 7;
    static constexpr std::array<Colour, kLayers + 1> kSeas{kCream,  kOrange, kPink, kBlush,
                                                           kViolet, kBlue,   kSea,  kNavy};
    // Pixels a frame. A layer's shape only slides, so it meets the tile grid again and again.
    constexpr std::array<int, kLayers> kSpeeds{2, -2, 4, -4, 4, -8, 8};
    constexpr std::array<int, kLayers> kCrests{1, 1, 2, 2, 2, 4, 3};  // in one round
    canvas.clear(kSeas[0]);
    canvas.disc({kCentreX, 120.0F}, 92.0F, kWhite);
    for (int layer = 0; layer < kLayers; ++layer) {
        const auto l = static_cast<size_t>(layer);
        const int round = std::abs(kSpeeds[l]) * t.frames;  // pixels
        const int shift = kSpeeds[l] * (t.frame);
        const float tall = 16.0F + 2.0F * real(layer);
        for (int x = 0; x < kWidth; ++x) {
            const float way = real(wrapped(x + shift, round)) / real(round);
            const float place = way * real(kCrests[l]) + noiseUnit(layer, 5);
            const float crest = sinTurn(place) + 0.35F * sinTurn(place * 2.0F + 0.2F);
            const float y = 112.0F + 38.0F * real(layer) - tall * crest;
            canvas.column(x, y, y + 5.0F, kWhite);
            canvas.column(x, y + 5.0F, real(kHeight), kSeas[l + 1]);
        }
    }
}

void drawRibbons(Canvas& canvas, const Moment& t) {
    struct Ribbon {
        float y, sway, width;
        int speed;   // pixels a frame; the ribbon only slides, one round of it in a loop
        int twists;  // half turns in a round, even
        std::array<Colour, 3> front, back;
    };
    static constexpr std::array<Ribbon, 4> kRibbons{{
        {84, 40, 46, 8, 2, {kWine, kPink, kPink}, {kPink, kBlush, kWhite}},
        {276, 44, 46, -8, 2, {kSea, kBlue, kBlue}, {kBlue, kSky, kWhite}},
        {150, 34, 30, -4, 2, {kEmber, kOrange, kOrange}, {kOrange, kCream, kCream}},
        {214, 38, 34, 4, 2, {kPlum, kViolet, kViolet}, {kViolet, kPink, kBlush}},
    }};
    for (const Ribbon& ribbon : kRibbons) {
        const int round = std::abs(ribbon.speed) * t.frames;  // pixels
        const int shift = ribbon.speed * (t.frame);
        for (int x = 0; x < kWidth; ++x) {
            const float way = (real(wrapped(x + shift, round)) + 0.5F) / real(round);
            const float bend = sinTurn(way + ribbon.y / 100.0F);
            const float y = ribbon.y + ribbon.sway * bend;
            const float face = cosTurn(way * real(ribbon.twists) * 0.5F + 0.1F);
            const float half = std::max(2.0F, std::fabs(face) * ribbon.width);
            const int shade = std::clamp(floored(std::fabs(face) * 3.0F), 0, 2);
            const auto& tones = face > 0.0F ? ribbon.front : ribbon.back;
            canvas.column(x, y - half - 3.0F, y + half + 3.0F, kBlack);
            canvas.column(x, y - half, y + half, tones[static_cast<size_t>(shade)]);
        }
    }
}

void drawConfetti(Canvas& canvas, const Moment& t) {
    struct Storm {
        int fall;    // pixels a frame; whole tiles, so a sheet looks the same all the way down
        int lanes;   // columns that sheets fall in, wide enough to pass one another
        int inLane;  // sheets in a lane that are on their way at a time
        float size;
        std::array<Colour, 3> fronts, backs;
    };
    static constexpr std::array<Storm, 2> kStorms{{
        {4, 16, 2, 17.0F, {kViolet, kWhite, kBlue}, {kPlum, kSky, kSea}},
        {8, 8, 3, 34.0F, {kPink, kOrange, kBlue}, {kBlush, kCream, kSky}},
    }};
    constexpr int kTumble = 32;  // frames of a full turn of a sheet
    for (const Storm& storm : kStorms) {
        const int round = storm.fall * t.frames;  // pixels, more than the picture's height in all
        const int lane = kWidth / storm.lanes;
        for (int i = 0; i < storm.lanes * storm.inLane; ++i) {
            const float x = real(i % storm.lanes * lane + lane / 2);
            const int start = (noisePick(i % storm.lanes, storm.lanes, round / 8) +
                               i / storm.lanes * round / 8 / storm.inLane) *
                              8;
            const int kind = noisePick(i, 2, 3);
            const float turn = real(t.frame % kTumble) / kTumble + real(noisePick(i, 3, 4)) * 0.25F;
            const float flip = cosTurn(turn + real(kind) * 0.3F);
            const float c = cosTurn(turn + real(kind) * 0.1F) * storm.size;
            const float s = sinTurn(turn + real(kind) * 0.1F) * storm.size;
            const float k = 0.62F * flip;
            const auto& tones = flip > 0.0F ? storm.fronts : storm.backs;
            const int first = wrapped(start + storm.fall * t.frame, round) - round;
            for (int top = first; top < kHeight + lane; top += round) {
                const float y = real(top);
                canvas.polygon({{x - c + s * k, y - s - c * k},
                                {x + c + s * k, y + s - c * k},
                                {x + c - s * k, y + s + c * k},
                                {x - c - s * k, y - s + c * k}},
                               tones[static_cast<size_t>(kind)]);
            }
        }
    }
}

}  // namespace demo
