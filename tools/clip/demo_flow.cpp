// Things that drift and wave: seas of colour, twisting ribbons, falling paper.

#include <algorithm>
#include <array>

#include "tools/clip/demo_canvas.h"
#include "tools/clip/demo_families.h"
#include "tools/clip/demo_motion.h"

namespace demo {

void drawWaves(int frame, int frames, uint8_t* rgba) {
    constexpr int kLayers = 7;
    static constexpr std::array<Color, kLayers + 1> kSeas{kCream,  kOrange, kPink, kBlush,
                                                          kViolet, kBlue,   kSea,  kNavy};
    // Pixels a frame. A layer's shape only slides, so it meets the tile grid again and again.
    constexpr std::array<int, kLayers> kSpeeds{2, -2, 4, -4, 4, -8, 8};
    constexpr std::array<int, kLayers> kCrests{1, 1, 2, 2, 2, 4, 3};  // in one round
    Canvas canvas(rgba);
    canvas.clear(kSeas[0]);
    canvas.disc(kCentreX, 120.0F, 92.0F, kWhite);
    for (int layer = 0; layer < kLayers; layer++) {
        const auto l = static_cast<size_t>(layer);
        const int round = std::abs(kSpeeds[l]) * frames;  // pixels
        const int shift = kSpeeds[l] * (frame % frames);
        const float tall = 16.0F + 2.0F * real(layer);
        for (int x = 0; x < kWidth; x++) {
            const float way = real(wrapped(x + shift, round)) / real(round);
            const float place = way * real(kCrests[l]) + noiseUnit(layer, 5);
            const float crest = sinTurn(place) + 0.35F * sinTurn(place * 2.0F + 0.2F);
            const float y = 112.0F + 38.0F * real(layer) - tall * crest;
            canvas.column(x, y, y + 5.0F, kWhite);
            canvas.column(x, y + 5.0F, real(kHeight), kSeas[l + 1]);
        }
    }
}

void drawRibbons(int frame, int frames, uint8_t* rgba) {
    struct Ribbon {
        float y, sway, width;
        int bends, twists, drift, roll;  // over the picture's width, and in a loop
        std::array<Color, 3> front, back;
    };
    static constexpr std::array<Ribbon, 4> kRibbons{{
        {92, 34, 44, 1, 2, 1, -2, {kWine, kPink, kBlush}, {kInk, kPlum, kPlum}},
        {170, 46, 38, 1, 3, -1, 2, {kSea, kBlue, kSky}, {kInk, kNavy, kNavy}},
        {212, 40, 42, 2, 2, 1, 2, {kEmber, kOrange, kCream}, {kInk, kWine, kWine}},
        {276, 36, 36, 1, 3, -1, -2, {kViolet, kBlush, kWhite}, {kInk, kPlum, kViolet}},
    }};
    Canvas canvas(rgba);
    canvas.clear(kBlack);
    const float t = timeOf(frame, frames);
    for (const Ribbon& ribbon : kRibbons) {
        for (int x = 0; x < kWidth; x++) {
            const float way = (real(x) + 0.5F) / kWidth;
            const float y =
                ribbon.y + ribbon.sway * sinTurn(way * real(ribbon.bends) + t * real(ribbon.drift) +
                                                 ribbon.width / 10.0F);
            const float face = cosTurn((way * real(ribbon.twists) + t * real(ribbon.roll)) * 0.5F);
            const float half = std::max(2.0F, std::fabs(face) * ribbon.width);
            const int shade = std::clamp(floored(std::fabs(face) * 3.0F), 0, 2);
            const auto& tones = face > 0.0F ? ribbon.front : ribbon.back;
            canvas.column(x, y - half - 3.0F, y + half + 3.0F, kBlack);
            canvas.column(x, y - half, y + half, tones[static_cast<size_t>(shade)]);
        }
    }
}

void drawConfetti(int frame, int frames, uint8_t* rgba) {
    constexpr int kPieces = 96;
    constexpr float kFall = 460.0F;  // pixels from start to start, more than the picture's height
    static constexpr std::array<Color, 5> kFronts{kPink, kBlue, kOrange, kWhite, kViolet};
    static constexpr std::array<Color, 5> kBacks{kWine, kSea, kEmber, kSky, kPlum};
    Canvas canvas(rgba);
    canvas.clear(kClear);
    const float t = timeOf(frame, frames);
    for (int i = 0; i < kPieces; i++) {
        const float size = 8.0F + 13.0F * real(i) / kPieces;  // the near ones last
        const int rounds = 1 + i * 3 / kPieces;
        const float y = fraction(noiseUnit(i, 1) + t * real(rounds)) * kFall - 50.0F;
        const float x =
            fraction(real(i) * 0.618034F) * kWidth + 22.0F * sinTurn(t * 2.0F + noiseUnit(i, 3));
        const float flip = cosTurn(t * real(2 + noisePick(i, 4, 3)) + noiseUnit(i, 5));
        const float turn = noiseUnit(i, 6) + t * real(noisePick(i, 7, 2) * 2 - 1);
        const float c = cosTurn(turn) * size;
        const float s = sinTurn(turn) * size;
        const float k = 0.62F * flip;
        const std::array<Point, 4> sheet{{{x - c + s * k, y - s - c * k},
                                          {x + c + s * k, y + s - c * k},
                                          {x + c - s * k, y + s + c * k},
                                          {x - c - s * k, y - s + c * k}}};
        const auto tone = static_cast<size_t>(i % 5);
        canvas.polygon(sheet, flip > 0.0F ? kFronts[tone] : kBacks[tone]);
    }
}

}  // namespace demo
