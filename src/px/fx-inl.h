// The effects on vectors: the rules of fx.cpp. Included once for every vector width, see
// pixel_ops-inl.h.
#if defined(VELMORA_FX_INL_H) == defined(HWY_TARGET_TOGGLE)
#ifdef VELMORA_FX_INL_H
#undef VELMORA_FX_INL_H
#else
#define VELMORA_FX_INL_H
#endif

#include <algorithm>
#include <array>
#include <cstring>

#include "common/limits.h"
#include "px/division.h"
#include "px/fx.h"
#include "px/fx_numbers.h"
#include "px/operations.h"
#include "px/pixel_ops-inl.h"

#if !VELMORA_PLAIN_TARGET
HWY_BEFORE_NAMESPACE();
namespace px::HWY_NAMESPACE {

template <typename Operation>
HWY_INLINE void mapFrame(uint16_t* frame, Operation operation) {
#if VELMORA_PAIRS_TARGET
#pragma GCC unroll 8
#endif
    for (int i = 0; i < kFramePixels; i += lanes()) {
        store(operation(load(frame + i)), frame + i);
    }
}

void invertFrame(uint16_t* frame, const Setting&) {
    mapFrame(frame, [](Vector p) HWY_ATTR { return hn::Not(p); });
}

#if VELMORA_PAIRS_TARGET

// What the vectors below do would take more instructions on pairs.
HWY_INLINE Vector weightOf(const hn::Fields& fields, Vector p) {
    return {fields.green(p).bits + ((fields.red(p).bits + fields.blue(p).bits) << 1)};
}

HWY_INLINE Vector intensityOf(const hn::Fields& fields, Vector p) {
    return hn::Add(hn::Add(fields.red(p), fields.halfGreen(p)), fields.blue(p));
}

// What depends on a small number alone takes fewer instructions to look up than to choose.
template <size_t count>
Vector lookUp(const std::array<uint16_t, count>& table, Vector at) {
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
HWY_INLINE Vector snowed(const hn::Fields& fields, Vector p, Vector change) {
    const uint32_t red = __usat16(__sadd16(fields.red(p).bits, change.bits), 5);
    const uint32_t once = __sadd16(fields.green(p).bits, change.bits);
    const uint32_t green = __usat16(__sadd16(once, change.bits), 6);
    const uint32_t blue = __usat16(__sadd16(fields.blue(p).bits, change.bits), 5);
    return {blue | green << 5 | red << 11};
}

void burnFrame(uint16_t* frame, const Setting& setting) {
    const hn::Fields fields;
    const Vector light = {hn::held(hn::both(burnColour(setting.direction)))};
    const Vector threshold = {hn::held(hn::both(kBurnThreshold))};
    mapFrame(frame, [=](Vector p) {
        return hn::IfAtLeast(weightOf(fields, p), threshold, light, Vector{0});
    });
}

void gameBoyFrame(uint16_t* frame, const Setting&) {
    static constexpr auto kShades = gameBoyShades();
    const hn::Fields fields;
    mapFrame(frame, [=](Vector p) { return lookUp(kShades, weightOf(fields, p)); });
}

void hueFrame(uint16_t* frame, const Setting& setting) {
    const int direction = setting.direction;
    static constexpr std::array kTints = {tints(0), tints(1), tints(2), tints(3)};
    const auto& tint = kTints[direction >= 0 && direction < 3 ? static_cast<size_t>(direction) : 3];
    const hn::Fields fields;
    mapFrame(frame, [=, &tint](Vector p) { return lookUp(tint, intensityOf(fields, p)); });
}

void snowFrame(uint16_t* frame, const Setting& setting) {
    SnowRun run;
    spreadSnow(setting.noise, snowEntries(setting.direction), run);
    const hn::Fields fields;
    for (int start = 0; start < kFramePixels; start += run.length) {
        uint16_t* const out = frame + start;
        const int length = std::min(run.length, kFramePixels - start);
#pragma GCC unroll 8
        for (int i = 0; i < length; i += 2) {
            store(snowed(fields, load(out + i), load(run.changes + i)), out + i);
        }
    }
}

#else

HWY_INLINE Vector weightOf(Vector p) {
    const Vector red = hn::And(hn::ShiftRight<10>(p), all(31 << 1));
    const Vector blue = hn::And(hn::ShiftLeft<1>(p), all(31 << 1));
    return hn::Add(hn::Add(red, greenOf(p)), blue);
}

HWY_INLINE Vector intensityOf(Vector p) {
    const Vector halfGreen = hn::And(hn::ShiftRight<6>(p), all(31));
    return hn::Add(hn::Add(redOf(p), halfGreen), blueOf(p));
}

// Compares without a sign, which the narrow targets have no instruction for.
HWY_INLINE hn::Mask<Pixels> atLeast(Vector value, int limit) {
    return hn::Eq(hn::SaturatedSub(all(limit), value), hn::Zero(kPixels));
}

void burnFrame(uint16_t* frame, const Setting& setting) {
    const Vector light = all(burnColour(setting.direction));
    mapFrame(frame, [light](Vector p) HWY_ATTR {
        return hn::IfThenElseZero(atLeast(weightOf(p), kBurnThreshold), light);
    });
}

void gameBoyFrame(uint16_t* frame, const Setting&) {
    mapFrame(frame, [](Vector p) HWY_ATTR {
        const Vector weight = weightOf(p);
        Vector shade = all(kGameBoyShades[0]);
        for (int step = 0; step < 3; ++step) {
            shade = hn::IfThenElse(atLeast(weight, kGameBoySteps[step] + 1),
                                   all(kGameBoyShades[step + 1]), shade);
        }
        return shade;
    });
}

// The part of the intensity that the first field cannot hold.
HWY_INLINE Vector above31(Vector value) {
    return hn::SaturatedSub(value, all(31));
}

void hueFrame(uint16_t* frame, const Setting& setting) {
    const int direction = setting.direction;
    switch (direction) {
        case 0:
            mapFrame(frame, [](Vector p) HWY_ATTR {
                const Vector grey = hn::MulHigh(intensityOf(p), all(kOver3.multiplier));
                return pack(grey, hn::ShiftLeft<1>(grey), grey);
            });
            break;
        case 1:
        case 2:
            mapFrame(frame, [direction](Vector p) HWY_ATTR {
                const Vector intensity = intensityOf(p);
                const Vector excess = above31(intensity);
                const Vector full = hn::Sub(intensity, excess);
                const Vector rest = hn::ShiftRight<1>(excess);
                return direction == 1 ? pack(full, hn::ShiftLeft<1>(rest), rest)
                                      : pack(rest, hn::ShiftLeft<1>(full), rest);
            });
            break;
        default:
            mapFrame(frame, [](Vector p) HWY_ATTR {
                const Vector intensity = intensityOf(p);
                const Vector whole = hn::ShiftRight<1>(intensity);
                const Vector half = hn::Sub(whole, above31(whole));
                const Vector both = hn::ShiftLeft<1>(half);
                return pack(half, both, hn::Sub(intensity, both));
            });
            break;
    }
}

// The changes of a run of pixels at the top of a lane, where the fields saturate: one of the two is
// 0. They are written as far as a vector that starts inside `length` reaches.
struct SnowRun {
    int length;  // a multiple of the table's entries, so the run follows itself
    uint16_t more[kSnowRun];
    uint16_t less[kSnowRun];
};

// Green changes by twice as much in one bit more, so all fields share the numbers.
void spreadSnow(const uint8_t* table, int entries, SnowRun& run) {
    run.length = kSnowRun / 2 / entries * entries;
    int entry = 0;
    for (int i = 0; i < kSnowRun; ++i) {
        entry = entry + 1 < entries ? entry + 1 : 0;
        const int change = table[entry] - kSnowCentre;
        run.more[i] = static_cast<uint16_t>(change > 0 ? change << 11 : 0);
        run.less[i] = static_cast<uint16_t>(change < 0 ? -change << 11 : 0);
    }
}

void snowFrame(uint16_t* frame, const Setting& setting) {
    SnowRun run;
    spreadSnow(setting.noise, snowEntries(setting.direction), run);
    int at = 0;
    for (int i = 0; i < kFramePixels; i += lanes()) {
        const Vector more = load(run.more + at);
        const Vector less = load(run.less + at);
        const auto changed = [=](Vector top) HWY_ATTR {
            return hn::SaturatedSub(hn::SaturatedAdd(top, more), less);
        };
        const Vector p = load(frame + i);
        const Vector red = hn::And(changed(p), all(31 << 11));
        const Vector green = hn::And(hn::ShiftRight<5>(changed(hn::ShiftLeft<5>(p))), all(63 << 5));
        const Vector blue = hn::ShiftRight<11>(changed(hn::ShiftLeft<11>(p)));
        store(hn::Or(hn::Or(red, green), blue), frame + i);
        at += lanes();
        at -= at >= run.length ? run.length : 0;
    }
}

#endif

void zoomFrame(uint16_t* frame, const Setting& setting) {
    if (setting.direction == 0) {
        plain().effects[FILTER_ZOOM](frame, setting);  // as fast as it gets already
        return;
    }
    uint16_t middle[kZoomWidth * kZoomHeight];
    for (int y = 0; y < kZoomHeight; ++y) {
        memcpy(middle + y * kZoomWidth, frame + (kZoomY + y) * kFrameWidth + kZoomX,
               kZoomWidth * sizeof *middle);
    }
    for (int y = 0; y < kZoomHeight; ++y) {
        uint16_t* const out = frame + 2 * y * kFrameWidth;
        for (int x = 0; x < kZoomWidth; x += lanes()) {
            Vector even, odd;
            hn::LoadInterleaved2(kPixels, out + 2 * x, even, odd);
            hn::StoreInterleaved2(load(middle + y * kZoomWidth + x), odd, kPixels, out + 2 * x);
        }
    }
}

void mirrorFrame(uint16_t* frame, const Setting& setting) {
    const int direction = setting.direction;
    if (direction % 2 == 0) {
        plain().effects[FILTER_MIRROR](frame, setting);  // copies of whole rows
        return;
    }
    for (int y = 0; y < kFrameHeight; ++y) {
        uint16_t* const row = frame + y * kFrameWidth;
        for (int x = 0; x < kFrameWidth / 2; x += lanes()) {
            uint16_t* const left = row + x;
            uint16_t* const right = row + kFrameWidth - lanes() - x;
            if (direction == 1) {
                store(hn::Reverse(kPixels, load(left)), right);
            } else {
                store(hn::Reverse(kPixels, load(right)), left);
            }
        }
    }
}

void addEffects(Operations& table) {
    table.effects[FILTER_INVERT] = invertFrame;
    table.effects[FILTER_BURNED] = burnFrame;
    table.effects[FILTER_SNOW] = snowFrame;
    table.effects[FILTER_GAME_BOY] = gameBoyFrame;
    table.effects[FILTER_HUE] = hueFrame;
    table.effects[FILTER_ZOOM] = zoomFrame;
    table.effects[FILTER_MIRROR] = mirrorFrame;
}

}  // namespace px::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();
#endif

#endif
