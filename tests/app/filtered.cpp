#include "app/filtered.h"

#include <algorithm>
#include <functional>

namespace app {

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 360;

int redOf(uint16_t p) {
    return p >> 11 & 31;
}
int greenOf(uint16_t p) {
    return p >> 5 & 63;
}
int blueOf(uint16_t p) {
    return p & 31;
}
int weightOf(uint16_t p) {
    return 2 * redOf(p) + greenOf(p) + 2 * blueOf(p);
}
int intensityOf(uint16_t p) {
    return redOf(p) + greenOf(p) / 2 + blueOf(p);
}

uint16_t join(int red, int green, int blue) {
    return static_cast<uint16_t>(red * 2048 + green * 32 + blue);
}

Shot eachPixel(const Shot& picture, const std::function<uint16_t(uint16_t)>& rule) {
    Shot result = picture;
    std::transform(picture.pixels.begin(), picture.pixels.end(), result.pixels.begin(), rule);
    return result;
}

// The pixel at (x, y) comes from where `source` says.
Shot fromWhere(const Shot& picture, const std::function<uint16_t(int x, int y)>& source) {
    Shot result = picture;
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            result.at(x, y) = source(x, y);
        }
    }
    return result;
}

}  // namespace

Shot inverted(const Shot& picture) {
    return eachPixel(
        picture, [](uint16_t p) { return join(31 - redOf(p), 63 - greenOf(p), 31 - blueOf(p)); });
}

Shot burned(const Shot& picture, int direction) {
    const uint16_t colours[] = {0xF79E, 0xF800, 0x07E0, 0xFFE0};
    return eachPixel(picture, [light = colours[direction]](uint16_t p) {
        return weightOf(p) < 90 ? uint16_t{0} : light;
    });
}

Shot zoomed(const Shot& picture, int direction) {
    return fromWhere(picture, [&](int x, int y) {
        const bool enlarged = direction == 0 || (x % 2 == 0 && y % 2 == 0);
        return enlarged ? picture.at(160 + x / 2, 90 + y / 2) : picture.at(x, y);
    });
}

Shot gameBoyed(const Shot& picture) {
    return eachPixel(picture, [](uint16_t p) -> uint16_t {
        const int weight = weightOf(p);
        if (weight <= 45) {
            return 0x39E0;
        }
        return weight <= 90 ? 0x6304 : weight <= 135 ? 0xAD4D : 0xFFFD;
    });
}

Shot mirrored(const Shot& picture, int direction) {
    return fromWhere(picture, [&](int x, int y) {
        const int left = std::min(x, 639 - x);
        const int upper = std::min(y, 359 - y);
        switch (direction) {
            case 0:
                return picture.at(x, 359 - upper);
            case 1:
                return picture.at(left, y);
            case 2:
                return picture.at(x, upper);
            default:
                return picture.at(639 - left, y);
        }
    });
}

Shot hued(const Shot& picture, int direction) {
    return eachPixel(picture, [direction](uint16_t p) {
        const int s = intensityOf(p);
        const int m = std::min(s, 31);
        const int h = (s - m) / 2;
        const int third = std::min(s / 3, 31);
        const int half = std::min(s / 2, 31);
        switch (direction) {
            case 0:
                return join(third, 2 * third, third);
            case 1:
                return join(m, 2 * h, h);
            case 2:
                return join(h, 2 * m, h);
            default:
                return join(half, 2 * half, s - 2 * half);
        }
    });
}

Shot scrolled(const Shot& picture, int direction, int offset) {
    const bool across = direction % 2 == 1;
    return fromWhere(picture, [&](int x, int y) {
        return across ? picture.at((x + kWidth - offset) % kWidth, y)
                      : picture.at(x, (y + kHeight - offset) % kHeight);
    });
}

int scrollOffsetOf(const Shot& picture, const Shot& seen, int direction) {
    const int turn = direction % 2 == 1 ? kWidth : kHeight;
    for (int offset = 0; offset < turn; offset += 2) {
        // One row tells most of them apart before the whole picture is compared.
        const bool plausible = direction % 2 == 1
                                   ? picture.at(3, 7) == seen.at((3 + offset) % kWidth, 7)
                                   : picture.at(3, 7) == seen.at(3, (7 + offset) % kHeight);
        if (plausible && scrolled(picture, direction, offset) == seen) {
            return offset;
        }
    }
    return -1;
}

Shot flatByNumber() {
    Shot result = blackShot(kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) {
        for (int x = 0; x < kWidth; ++x) {
            result.at(x, y) = static_cast<uint16_t>(y / 8 * 80 + x / 8);
        }
    }
    return result;
}

}  // namespace app
