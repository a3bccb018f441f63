#include "tools/clip/media/keying.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace maker {

namespace {

constexpr size_t kChannels = 4;
constexpr float kOpaque = 255;

// Brightness as HD video weighs it, out of 256.
constexpr int kRedWeight = 54;
constexpr int kGreenWeight = 183;
constexpr int kBlueWeight = 19;
static_assert(kRedWeight + kGreenWeight + kBlueWeight == 256);

// Up to kInnerPart of the reach a pixel is transparent, from the reach on opaque. The reach ends
// before grey does, so that a key of strong colour never takes greys away.
constexpr float kReachOfChroma = 0.9F;
constexpr float kLeastReach = 48;
constexpr float kMostReach = 96;
constexpr float kInnerPart = 0.4F;
constexpr float kSpillReach = 2;         // times the reach: so far the key's tint is taken out
constexpr float kBrightnessPart = 0.5F;  // of the distance; screens are rarely lit evenly

using Rgb = std::array<float, 3>;

struct Ycc {
    float y;
    float cb;
    float cr;
};

Ycc yccOf(const Rgb& rgb) {
    const float y = 0.299F * rgb[0] + 0.587F * rgb[1] + 0.114F * rgb[2];
    return {y, 0.564F * (rgb[2] - y), 0.713F * (rgb[0] - y)};
}

float distance(const Ycc& a, const Ycc& b) {
    const float y = kBrightnessPart * (a.y - b.y);
    return std::sqrt(y * y + (a.cb - b.cb) * (a.cb - b.cb) + (a.cr - b.cr) * (a.cr - b.cr));
}

// Takes `part` of the key colour out of a pixel.
void unmix(Rgb& rgb, const Rgb& key, float part) {
    for (size_t c = 0; c < 3; ++c) {
        rgb[c] = std::clamp((rgb[c] - part * key[c]) / (1 - part), 0.0F, kOpaque);
    }
}

// How far a channel stands above the others.
float tintOf(const Rgb& rgb, size_t channel) {
    return rgb[channel] - std::max(rgb[(channel + 1) % 3], rgb[(channel + 2) % 3]);
}

}  // namespace

void keyByBrightness(std::vector<uint8_t>& rgba) {
    for (size_t i = 0; i < rgba.size(); i += kChannels) {
        const int brightness =
            (kRedWeight * rgba[i] + kGreenWeight * rgba[i + 1] + kBlueWeight * rgba[i + 2]) / 256;
        rgba[i + 3] = static_cast<uint8_t>(brightness * rgba[i + 3] / 255);
    }
}

void keyByColour(const Colour& key, std::vector<uint8_t>& rgba) {
    const Rgb keyRgb{static_cast<float>(key.red), static_cast<float>(key.green),
                     static_cast<float>(key.blue)};
    const Ycc keyYcc = yccOf(keyRgb);
    const float chroma = std::hypot(keyYcc.cb, keyYcc.cr);
    const float reach = std::clamp(kReachOfChroma * chroma, kLeastReach, kMostReach);
    const float inner = kInnerPart * reach;
    const auto strongest = std::max_element(keyRgb.begin(), keyRgb.end());
    const size_t channel = static_cast<size_t>(strongest - keyRgb.begin());
    const float keyTint = tintOf(keyRgb, channel);
    const bool tinted = keyTint > 0;
    for (size_t i = 0; i < rgba.size(); i += kChannels) {
        Rgb rgb{static_cast<float>(rgba[i]), static_cast<float>(rgba[i + 1]),
                static_cast<float>(rgba[i + 2])};
        const float away = distance(yccOf(rgb), keyYcc);
        if (away >= kSpillReach * reach) {
            continue;
        }
        const float opacity = std::clamp((away - inner) / (reach - inner), 0.0F, 1.0F);
        if (opacity <= 0) {
            std::fill_n(rgba.begin() + static_cast<std::ptrdiff_t>(i), kChannels, uint8_t{0});
            continue;
        }
        // A key with a tint is taken out until the tint is gone, never past it.
        const float tint = std::max(tintOf(rgb, channel), 0.0F);
        const float part = 1 - opacity;
        unmix(rgb, keyRgb, tinted ? std::min(part, tint / keyTint) : part);
        if (tinted) {
            const float near = std::min(kSpillReach - away / reach, 1.0F);
            rgb[channel] -= near * std::max(tintOf(rgb, channel), 0.0F);
        }
        for (size_t c = 0; c < 3; ++c) {
            rgba[i + c] = static_cast<uint8_t>(std::lround(rgb[c]));
        }
        rgba[i + 3] = static_cast<uint8_t>(std::lround(opacity * static_cast<float>(rgba[i + 3])));
    }
}

}  // namespace maker
