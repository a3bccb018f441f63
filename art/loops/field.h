#pragma once
// Pictures given by a rule for each point: samples a palette index at four points of every pixel
// of the rectangle from the top left corner and writes their mean, so borders come out smooth.
//
// `indexAt(x, y)` gets a place in pixels and returns an index inside `palette`. The caller mirrors
// the rest of the picture; width and height are at most those of the picture.

#include <array>
#include <span>

#include "art/loops/canvas.h"
#include "art/loops/motion.h"

namespace demo {

// Colours count by their alpha, so a border with nothing stays in the colour of the other side.
inline Colour meanOf(const std::array<int, 4>& samples, std::span<const Colour> palette) {
    std::array<int, 4> sum{};
    for (const int index : samples) {
        const Colour c = palette[static_cast<size_t>(index)];
        sum[0] += c.red * c.alpha;
        sum[1] += c.green * c.alpha;
        sum[2] += c.blue * c.alpha;
        sum[3] += c.alpha;
    }
    if (sum[3] == 0) {
        return kClear;
    }
    const auto mean = [&sum](size_t i) { return static_cast<uint8_t>(sum[i] / sum[3]); };
    return Colour{mean(0), mean(1), mean(2), static_cast<uint8_t>(sum[3] / 4)};
}

// The same for a rectangle anywhere: places count from its top left corner.
template <class IndexAt>
void sampleRect(Canvas& canvas, int left, int top, int width, int height,
                std::span<const Colour> palette, IndexAt indexAt) {
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const float px = real(x);
            const float py = real(y);
            const std::array<int, 4> samples{
                indexAt(px + 0.25F, py + 0.25F), indexAt(px + 0.75F, py + 0.25F),
                indexAt(px + 0.25F, py + 0.75F), indexAt(px + 0.75F, py + 0.75F)};
            canvas.set(left + x, top + y, meanOf(samples, palette));
        }
    }
}

template <class IndexAt>
void sampleField(Canvas& canvas, int width, int height, std::span<const Colour> palette,
                 IndexAt indexAt) {
    sampleRect(canvas, 0, 0, width, height, palette, indexAt);
}

}  // namespace demo
