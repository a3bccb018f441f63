#include "tools/clip/media/picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace maker {

namespace {

constexpr int kOpaque = 255;
constexpr int kCheckSize = 16;  // pixels a side
constexpr int kDarkGrey = 0x40;
constexpr int kLightGrey = 0x60;

// Lays every pixel over the grey that `under` tells for its place.
template <class Under>
Picture laidOver(const Picture& from, Under under) {
    Picture over(from.width, from.height);
    for (int y = 0; y < from.height; ++y) {
        for (int x = 0; x < from.width; ++x) {
            const uint8_t* in = from.at(x, y);
            uint8_t* out = over.at(x, y);
            const int alpha = in[3];
            for (int channel = 0; channel < 3; ++channel) {
                const int sum = in[channel] * alpha + under(x, y) * (kOpaque - alpha);
                out[channel] = static_cast<uint8_t>((sum + kOpaque / 2) / kOpaque);
            }
        }
    }
    return over;
}

constexpr size_t kChannels = 4;

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
        rgb[c] = std::clamp((rgb[c] - part * key[c]) / (1 - part), 0.0F, float{kOpaque});
    }
}

// How far a channel stands above the others.
float tintOf(const Rgb& rgb, size_t channel) {
    return rgb[channel] - std::max(rgb[(channel + 1) % 3], rgb[(channel + 2) % 3]);
}

}  // namespace

Picture::Picture(int pictureWidth, int pictureHeight)
    : width(pictureWidth),
      height(pictureHeight),
      rgba(static_cast<size_t>(pictureWidth) * static_cast<size_t>(pictureHeight) * 4) {
    for (size_t i = 3; i < rgba.size(); i += 4) {
        rgba[i] = kOpaque;
    }
}

void Picture::copy(const Picture& from, int x, int y) {
    const int left = std::max(x, 0);
    const int right = std::min(x + from.width, width);
    for (int row = std::max(y, 0); row < std::min(y + from.height, height) && left < right; ++row) {
        std::copy_n(from.at(left - x, row - y), static_cast<size_t>(right - left) * 4,
                    at(left, row));
    }
}

void Canvas::rect(int x, int y, int width, int height, Colour colour) {
    const int left = std::max(x, 0);
    const int right = std::min(x + width, width_);
    for (int row = std::max(y, 0); row < std::min(y + height, height_); ++row) {
        for (int column = left; column < right; ++column) {
            std::memcpy(at(column, row), &colour, sizeof colour);
        }
    }
}

Picture shrunk(const Picture& from, int factor) {
    Picture small(from.width / factor, from.height / factor);
    const int samples = factor * factor;
    for (int y = 0; y < small.height; ++y) {
        for (int x = 0; x < small.width; ++x) {
            int sum[4] = {};
            for (int i = 0; i < samples; ++i) {
                const uint8_t* in = from.at(x * factor + i % factor, y * factor + i / factor);
                for (int channel = 0; channel < 4; ++channel) {
                    sum[channel] += in[channel];
                }
            }
            for (int channel = 0; channel < 4; ++channel) {
                small.at(x, y)[channel] =
                    static_cast<uint8_t>((sum[channel] + samples / 2) / samples);
            }
        }
    }
    return small;
}

Picture overCheckerboard(const Picture& from) {
    return laidOver(from, [](int x, int y) {
        return (x / kCheckSize + y / kCheckSize) % 2 == 0 ? kDarkGrey : kLightGrey;
    });
}

Picture overBlack(const Picture& from) {
    return laidOver(from, [](int, int) { return 0; });
}

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

void mixInto(std::vector<uint8_t>& rgba, const std::vector<uint8_t>& other, int part, int all) {
    for (size_t i = 0; i < rgba.size(); i += 4) {
        const int ofThis = (all - part) * rgba[i + 3];
        const int ofOther = part * other[i + 3];
        const int sum = ofThis + ofOther;
        for (size_t c = 0; c < 3 && sum > 0; ++c) {
            const int mixed = ofThis * rgba[i + c] + ofOther * other[i + c];
            rgba[i + c] = static_cast<uint8_t>((mixed + sum / 2) / sum);
        }
        rgba[i + 3] = static_cast<uint8_t>((sum + all / 2) / all);
    }
}

}  // namespace maker
