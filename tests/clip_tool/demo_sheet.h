#pragma once
// A picture of a demo loop between two fences, and what tests ask of it.

#include <algorithm>
#include <cstring>
#include <ostream>
#include <vector>

#include "art/loops/canvas.h"
#include "art/loops/loops.h"

namespace demo {

// Test listings name the loop instead of its bytes.
inline void PrintTo(const Loop& loop, std::ostream* out) {
    *out << loop.name;
}

}  // namespace demo

namespace demo_sheet {

inline constexpr size_t kPixels = 640 * 360;
inline constexpr size_t kBytes = kPixels * 4;
inline constexpr size_t kFence = 4096;  // bytes kept free before and behind a picture
inline constexpr uint8_t kFenceByte = 0xA7;

// A picture between two fences, filled with a byte of choice before it is drawn.
class Sheet {
public:
    Sheet() : bytes_(kBytes + 2 * kFence, kFenceByte) {}

    uint8_t* pixels() { return bytes_.data() + kFence; }

    void draw(const demo::Loop& loop, int frame, uint8_t before = 0) {
        std::memset(pixels(), before, kBytes);
        demo::Canvas canvas(pixels());
        demo::draw(loop, frame, canvas);
    }

    bool fenceWhole() const {
        const auto intact = [](uint8_t byte) { return byte == kFenceByte; };
        return std::all_of(bytes_.begin(), bytes_.begin() + kFence, intact) &&
               std::all_of(bytes_.end() - kFence, bytes_.end(), intact);
    }

    bool same(Sheet& other) { return std::memcmp(pixels(), other.pixels(), kBytes) == 0; }

    size_t changedPixels(Sheet& other) {
        size_t count = 0;
        for (size_t i = 0; i < kPixels; ++i) {
            count += std::memcmp(pixels() + i * 4, other.pixels() + i * 4, 4) != 0 ? 1 : 0;
        }
        return count;
    }

private:
    std::vector<uint8_t> bytes_;
};

inline demo::Colour pixelOf(Sheet& sheet, int x, int y) {
    demo::Colour colour{};
    std::memcpy(&colour, sheet.pixels() + (y * 640 + x) * 4, 4);
    return colour;
}

}  // namespace demo_sheet
