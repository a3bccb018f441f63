#include "px/fx_pairs.h"

#ifdef __ARM_FEATURE_SIMD32

#include <algorithm>
#include <array>

#include "common/limits.h"
#include "px/fx.h"
#include "px/fx_numbers.h"
#include "px/pairs.h"

namespace px::pairs {

namespace {

constexpr Pixels kPixels;

template <typename Operation>
void mapFrame(uint16_t* frame, Operation operation) {
#pragma GCC unroll 8
    for (int i = 0; i < kFramePixels; i += 2) {
        StoreU(operation(LoadU(kPixels, frame + i)), kPixels, frame + i);
    }
}

Pair weightOf(const Fields& fields, Pair p) {
    return {fields.green(p).bits + ((fields.red(p).bits + fields.blue(p).bits) << 1)};
}

Pair intensityOf(const Fields& fields, Pair p) {
    return Add(Add(fields.red(p), fields.halfGreen(p)), fields.blue(p));
}

// What depends on a small number alone takes fewer instructions to look up than to choose.
template <size_t count>
Pair lookUp(const std::array<uint16_t, count>& table, Pair at) {
    return {table[at.bits & 0xFFFF] | uint32_t{table[at.bits >> 16]} << 16};
}

constexpr auto gameBoyShades() {
    std::array<uint16_t, kMostWeight + 1> shades{};
    for (int weight = 0; weight <= kMostWeight; ++weight) {
        shades[static_cast<size_t>(weight)] = gameBoyShade(weight);
    }
    return shades;
}

// The changes of a run of pixels; its length is even and a multiple of the table's entries, so it
// follows itself.
struct SnowRun {
    int length;
    uint16_t changes[kSnowRun];
};

void spreadSnow(const uint8_t* table, int entries, SnowRun& run) {
    run.length = 2 * entries * std::max(kSnowRun / 4 / entries, 1);
    int entry = 0;
    for (int i = 0; i < run.length; ++i) {
        entry = entry + 1 < entries ? entry + 1 : 0;
        run.changes[i] = static_cast<uint16_t>(table[entry] - kSnowCentre);
    }
}

// The halves saturate as signed numbers to fields.
Pair snowed(const Fields& fields, Pair p, Pair change) {
    const uint32_t red = __usat16(__sadd16(fields.red(p).bits, change.bits), 5);
    const uint32_t once = __sadd16(fields.green(p).bits, change.bits);
    const uint32_t green = __usat16(__sadd16(once, change.bits), 6);
    const uint32_t blue = __usat16(__sadd16(fields.blue(p).bits, change.bits), 5);
    return {blue | green << 5 | red << 11};
}

void invertFrame(uint16_t* frame, const Setting&) {
    mapFrame(frame, [](Pair p) { return Not(p); });
}

void burnFrame(uint16_t* frame, const Setting& setting) {
    const Fields fields;
    const Pair light = {held(both(burnColour(setting.direction)))};
    const Pair threshold = {held(both(kBurnThreshold))};
    mapFrame(frame,
             [=](Pair p) { return IfAtLeast(weightOf(fields, p), threshold, light, Pair{0}); });
}

void gameBoyFrame(uint16_t* frame, const Setting&) {
    static constexpr auto kShades = gameBoyShades();
    const Fields fields;
    mapFrame(frame, [=](Pair p) { return lookUp(kShades, weightOf(fields, p)); });
}

void hueFrame(uint16_t* frame, const Setting& setting) {
    const int direction = setting.direction;
    static constexpr std::array kTints = {tints(0), tints(1), tints(2), tints(3)};
    const auto& tint = kTints[direction >= 0 && direction < 3 ? static_cast<size_t>(direction) : 3];
    const Fields fields;
    mapFrame(frame, [=, &tint](Pair p) { return lookUp(tint, intensityOf(fields, p)); });
}

void snowFrame(uint16_t* frame, const Setting& setting) {
    SnowRun run;
    spreadSnow(setting.noise, snowEntries(setting.direction), run);
    const Fields fields;
    for (int start = 0; start < kFramePixels; start += run.length) {
        uint16_t* const out = frame + start;
        const int length = std::min(run.length, kFramePixels - start);
#pragma GCC unroll 8
        for (int i = 0; i < length; i += 2) {
            const Pair change = LoadU(kPixels, run.changes + i);
            StoreU(snowed(fields, LoadU(kPixels, out + i), change), kPixels, out + i);
        }
    }
}

}  // namespace

void addEffects(Operations& table) {
    table.effects[FILTER_INVERT] = invertFrame;
    table.effects[FILTER_BURNED] = burnFrame;
    table.effects[FILTER_SNOW] = snowFrame;
    table.effects[FILTER_GAME_BOY] = gameBoyFrame;
    table.effects[FILTER_HUE] = hueFrame;
}

}  // namespace px::pairs

#endif
