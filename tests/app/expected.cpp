#include "app/expected.h"

#include <algorithm>
#include <functional>

namespace app {

namespace {

struct Fields {
    int r;
    int g;
    int b;
};

Fields split(uint16_t pixel) {
    return {(pixel >> 11) & 31, (pixel >> 5) & 63, pixel & 31};
}

uint16_t join(Fields f) {
    return static_cast<uint16_t>(f.r * 2048 + f.g * 32 + f.b);
}

Shot combined(const Shot& bottom, const Shot& top,
              const std::function<Fields(Fields, Fields)>& rule) {
    Shot result = bottom;
    for (size_t i = 0; i < result.pixels.size(); ++i) {
        result.pixels[i] = join(rule(split(bottom.pixels[i]), split(top.pixels[i])));
    }
    return result;
}

}  // namespace

Size appSize(Screen screen) {
    return screen.width < 800 ? Size{screen.width, screen.height} : Size{1280, 720};
}

Shot placed(const Shot& picture, Screen screen) {
    const Size size = appSize(screen);
    Shot window = blackShot(size.width, size.height);
    if (size.width == 1280) {
        for (int y = 0; y < 720; ++y) {
            for (int x = 0; x < 1280; ++x) {
                window.at(x, y) = picture.at(x / 2, y / 2);
            }
        }
        return window;
    }
    // The rows follow one another at the window's width from this pixel on.
    const int start = (size.height - 360) * size.width / 2 + (size.width - 640) / 2;
    for (int y = 0; y < 360; ++y) {
        for (int x = 0; x < 640; ++x) {
            window.pixels[static_cast<size_t>(start + y * size.width + x)] = picture.at(x, y);
        }
    }
    return window;
}

// Each field loses its lowest bit, then half of it counts.
Shot blended(const Shot& bottom, const Shot& top) {
    return combined(bottom, top, [](Fields a, Fields b) {
        return Fields{a.r / 2 + b.r / 2, a.g / 2 + b.g / 2, a.b / 2 + b.b / 2};
    });
}

// Blue and red saturate; a green sum of 64 or more is 63.
Shot added(const Shot& bottom, const Shot& top) {
    return combined(bottom, top, [](Fields a, Fields b) {
        return Fields{std::min(a.r + b.r, 31), std::min(a.g + b.g, 63), std::min(a.b + b.b, 31)};
    });
}

Shot multiplied(const Shot& bottom, const Shot& top) {
    return combined(bottom, top, [](Fields a, Fields b) {
        return Fields{a.r * b.r / 31, a.g * b.g / 63, a.b * b.b / 31};
    });
}

Shot keyed(const Shot& bottom, const Shot& top) {
    return combined(bottom, top, [](Fields a, Fields b) { return b.r + b.g + b.b == 0 ? a : b; });
}

Shot keyedByAlpha(const Shot& bottom, const Shot& top, const std::vector<uint8_t>& alpha) {
    Shot result = bottom;
    for (size_t i = 0; i < result.pixels.size(); ++i) {
        const int level = alpha[i];
        const Fields a = split(bottom.pixels[i]);
        const Fields b = split(top.pixels[i]);
        const auto field = [level](int under, int over) {
            return over * level / 15 + under * (15 - level) / 15;
        };
        result.pixels[i] = join({field(a.r, b.r), field(a.g, b.g), field(a.b, b.b)});
    }
    return result;
}

Shot halves(const Shot& bottom, const Shot& top) {
    Shot result = bottom;
    for (int y = 0; y < 360; ++y) {
        for (int x = 0; x < 320; ++x) {
            result.at(x, y) = top.at(x, y);
        }
    }
    return result;
}

Shot faded(const Shot& picture, int level) {
    const int k = 15 - level;
    return combined(picture, picture, [k](Fields p, Fields) {
        return Fields{k * p.r / 15, 2 * k * p.g / 30, k * p.b / 15};
    });
}

Shot flashed(const Shot& picture, int level) {
    const int k = level;
    return combined(picture, picture, [k](Fields p, Fields) {
        return Fields{(31 * k + (15 - k) * p.r) / 15, (126 * k + (31 - 2 * k) * p.g) / 31,
                      (31 * k + (15 - k) * p.b) / 15};
    });
}

}  // namespace app
