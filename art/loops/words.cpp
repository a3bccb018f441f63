// Letters: running rows, words on the beat over nothing, and the name in waves.

#include <algorithm>
#include <array>
#include <string_view>

#include "art/loops/canvas.h"
#include "art/loops/families.h"
#include "art/loops/lettering.h"
#include "art/loops/motion.h"

namespace demo {

void drawMarquee(Canvas& canvas, const Moment& t) {
    struct Row {
        std::string_view text;
        int speed;  // pixels a frame, to the left
        Colour paper, ink;
    };
    constexpr int kRow = 72;
    static constexpr std::array<Row, 5> kRows{{
        {"VELMORA", 8, kInk, kPink},
        {"LOOP LOOP", -8, kBlue, kInk},
        {"MIX MIX MIX", 8, kPink, kWhite},
        {"PLAY LOUD", -8, kOrange, kInk},
        {"VELMORA", 8, kWhite, kInk},
    }};
    for (int i = 0; i < 5; ++i) {
        const Row& row = kRows[static_cast<size_t>(i)];
        canvas.rect(0, i * kRow, kWidth, kRow, row.paper);
        // The text with a blank behind it fills one round of its motion.
        const int round = std::abs(row.speed) * t.frames;
        const float unit = real(round) / (wordWidth(row.text) + 4.0F + 2.0F * kLetterGap);
        const int shift = wrapped(row.speed * (t.frame), round);
        for (int x = -shift; x < kWidth; x += round) {
            const Placement place{{real(x), real(i * kRow + 8)}, {unit, 0.0F}, {0.0F, 5.6F}};
            drawWord(canvas, row.text, place, row.ink);
        }
    }
}

void drawWords(Canvas& canvas, const Moment& t) {
    static constexpr std::array<std::string_view, 6> kWords{"LOOP", "MIX",  "CUT",
                                                            "LIVE", "PLAY", "LOUD"};
    const int length = t.frames / static_cast<int>(kWords.size());  // t.frames of a word
    const int beat = t.frame / length % static_cast<int>(kWords.size());
    const int step = t.frame % length;
    const std::string_view word = kWords[static_cast<size_t>(beat)];
    // In: down to size in five frames, its colours coming together; out: flat within three.
    const float in = std::clamp(1.0F - real(step) / 5.0F, 0.0F, 1.0F);
    const float out = std::clamp(real(step - (length - 4)) / 4.0F, 0.0F, 1.0F);
    const float width = 560.0F * (1.0F + 0.5F * in * in);
    const float height = 232.0F * (1.0F + 0.5F * in * in) * (1.0F - out * out);
    const Point unit{width / wordWidth(word), height / kLetterHeight};
    const float slip = 10.0F + 60.0F * in;
    const std::array<Colour, 3> tones{kPink, kBlue, kWhite};
    for (int i = 0; i < 3; ++i) {
        const float off = i == 0 ? -slip : i == 1 ? slip : 0.0F;
        const Placement place{
            {kCentreX - width / 2.0F + off, kCentreY - height / 2.0F + off * 0.6F},
            {unit.x, 0.0F},
            {0.0F, unit.y}};
        drawWord(canvas, word, place, tones[static_cast<size_t>(i)]);
    }
}

void drawVelmora(Canvas& canvas, const Moment& t) {
    constexpr std::string_view kName = "VELMORA";
    constexpr int kEchoes = 6;
    constexpr float kUnit = 8.0F;  // pixels: the stems stand on the tile grid
    constexpr float kTall = 20.0F;
    static constexpr auto kTones = ramp<kEchoes>({kNavy, kSea, kViolet, kPink});
    for (int echo = 0; echo <= kEchoes; ++echo) {
        Colour tone = echo == kEchoes ? kWhite : kTones[static_cast<size_t>(echo)];
        tone.alpha = static_cast<uint8_t>(echo == kEchoes ? 255 : 68 + 34 * echo);
        int x = 48;
        for (size_t i = 0; i < kName.size(); ++i) {
            const float late = real(kEchoes - echo) * 0.022F;
            const float wave = t - real(static_cast<int>(i)) / 7.0F - late;
            // Letters keep their shape and stand on whole pixels: they meet the tile grid again.
            const int y = 80 + 2 * nearest(38.0F * sinTurn(wave));
            const Placement place{{real(x), real(y)}, {kUnit, 0.0F}, {0.0F, kTall}};
            Path path;
            addLetter(path, kName[i], place);
            canvas.fill(path, tone);
            x += nearest(letterWidth(kName[i]) + kLetterGap) * static_cast<int>(kUnit);
        }
    }
}

}  // namespace demo
