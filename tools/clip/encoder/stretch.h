#pragma once
// Pictures of one tile position that are taken together: their mean, how far they are from it, and
// how far they move.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "tools/clip/encoder/source_block.h"

namespace maker {

inline int64_t squaresOf(const ColourPlanes& colours) {
    int32_t sum = 0;
    for (const auto& plane : colours) {
        for (const uint8_t value : plane) {
            sum += value * value;
        }
    }
    return sum;
}

class Stretch {
public:
    void begin() {
        sums_ = {};
        squares_ = 0;
        frames_ = 0;
        for (size_t c = 0; c < kChannels; ++c) {
            low_[c].fill(255);
            high_[c].fill(0);
        }
    }

    // At most 16 times. `squares` is that of the colours, where error() is wanted.
    void add(const ColourPlanes& colours, int64_t squares) {
        for (size_t c = 0; c < kChannels; ++c) {
            for (size_t i = 0; i < clip::kTilePixels; ++i) {
                const uint8_t value = colours[c][i];
                sums_[c][i] = static_cast<int16_t>(sums_[c][i] + value);
                low_[c][i] = std::min(low_[c][i], value);
                high_[c][i] = std::max(high_[c][i], value);
            }
        }
        squares_ += squares;
        ++frames_;
    }

    // Squared distance of the frames from their mean.
    double error() const {
        int64_t product = 0;
        for (size_t c = 0; c < kChannels; ++c) {
            int32_t sum = 0;  // 64 x (16 x 255)^2 at most
            for (size_t i = 0; i < clip::kTilePixels; ++i) {
                sum += sums_[c][i] * sums_[c][i];
            }
            product += sum;
        }
        return static_cast<double>(squares_) - static_cast<double>(product) / frames_;
    }

    // Any channel of any pixel, by more than that.
    bool moves(int limit) const {
        uint8_t widest = 0;
        for (size_t c = 0; c < kChannels; ++c) {
            for (size_t i = 0; i < clip::kTilePixels; ++i) {
                widest = std::max(widest, static_cast<uint8_t>(high_[c][i] - low_[c][i]));
            }
        }
        return widest > limit;
    }

    ColourPlanes mean() const {
        ColourPlanes colours;
        for (size_t c = 0; c < kChannels; ++c) {
            for (size_t i = 0; i < clip::kTilePixels; ++i) {
                colours[c][i] = static_cast<uint8_t>((sums_[c][i] + frames_ / 2) / frames_);
            }
        }
        return colours;
    }

private:
    std::array<std::array<int16_t, clip::kTilePixels>, kChannels> sums_;
    ColourPlanes low_;
    ColourPlanes high_;
    int64_t squares_ = 0;
    int frames_ = 0;
};

}  // namespace maker
