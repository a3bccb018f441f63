#include "tools/clip/media/picture.h"

#include <algorithm>
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

}  // namespace maker
