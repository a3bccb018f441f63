#pragma once
// Pictures as a camera takes them, with its noise.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

namespace camera {

using Bytes = std::vector<uint8_t>;
inline constexpr int kHeight = 40;
inline constexpr int kWidth = 640;

// A room that stands still: soft shading and some edges.
inline std::array<int, 3> room(int x, int y) {
    const int wall = 70 + x / 8 + y;
    return x % 160 < 40 ? std::array{wall / 2, wall / 3, 60} : std::array{wall, wall + 10, 110};
}

// Pictures with normal noise in every channel, the same in every run.
class Camera {
public:
    explicit Camera(double noise) : noise_(noise) {}

    Bytes picture(const std::function<std::array<int, 3>(int, int)>& scene) {
        Bytes rgba;
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                for (const int level : scene(x, y)) {
                    const double seen = level + noise_ * normal();
                    rgba.push_back(static_cast<uint8_t>(std::clamp(std::lround(seen), 0L, 255L)));
                }
                rgba.push_back(255);
            }
        }
        return rgba;
    }

private:
    // Twelve even ones have a variance of 1 together.
    double normal() {
        double sum = -6;
        for (int i = 0; i < 12; ++i) {
            sum += static_cast<double>(random_()) / 4294967296.0;
        }
        return sum;
    }

    std::mt19937 random_;
    double noise_;
};

}  // namespace camera
