#include "tools/clip/reports/compare.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

namespace maker {

namespace {

constexpr double kPeak = 255;
constexpr int kWindow = 8;
constexpr int kStep = 4;
constexpr int kWindowPixels = kWindow * kWindow;
// The usual constants: one and three per cent of the peak, squared.
constexpr double kMeanGuard = 0.01 * kPeak * 0.01 * kPeak;
constexpr double kSpreadGuard = 0.03 * kPeak * 0.03 * kPeak;

int squared(int value) {
    return value * value;
}

// The squared error over the channels from `first` to `last`.
double meanError(Rgba a, Rgba b, size_t first, size_t last) {
    int64_t sum = 0;
    for (size_t i = 0; i < a.size(); i += 4) {
        for (size_t channel = first; channel <= last; ++channel) {
            sum += squared(a[i + channel] - b[i + channel]);
        }
    }
    return static_cast<double>(sum) / (static_cast<double>(a.size()) / 4) /
           static_cast<double>(last - first + 1);
}

// Luma by the weights of standard-definition video, in 256ths.
std::vector<int> lumaOf(Rgba rgba) {
    std::vector<int> luma(rgba.size() / 4);
    for (size_t i = 0; i < luma.size(); ++i) {
        luma[i] = (77 * rgba[4 * i] + 150 * rgba[4 * i + 1] + 29 * rgba[4 * i + 2] + 128) / 256;
    }
    return luma;
}

double windowSsim(const int* a, const int* b, int width) {
    int sumA = 0;
    int sumB = 0;
    int squares = 0;
    int product = 0;
    for (int i = 0; i < kWindowPixels; ++i) {
        const int at = i / kWindow * width + i % kWindow;
        sumA += a[at];
        sumB += b[at];
        squares += squared(a[at]) + squared(b[at]);
        product += a[at] * b[at];
    }
    const double meanA = static_cast<double>(sumA) / kWindowPixels;
    const double meanB = static_cast<double>(sumB) / kWindowPixels;
    const double means = meanA * meanA + meanB * meanB;
    const double spread = static_cast<double>(squares) / kWindowPixels - means;
    const double together = static_cast<double>(product) / kWindowPixels - meanA * meanB;
    return (2 * meanA * meanB + kMeanGuard) * (2 * together + kSpreadGuard) /
           ((means + kMeanGuard) * (spread + kSpreadGuard));
}

double meanOf(const std::vector<FrameScore>& frames, double FrameScore::*part) {
    double sum = 0;
    for (const FrameScore& frame : frames) {
        sum += frame.*part;
    }
    return sum / static_cast<double>(frames.size());
}

}  // namespace

double colourError(Rgba a, Rgba b) {
    return meanError(a, b, 0, 2);
}

double alphaError(Rgba a, Rgba b) {
    return meanError(a, b, 3, 3);
}

double ssim(Rgba a, Rgba b, int width) {
    const std::vector<int> lumaA = lumaOf(a);
    const std::vector<int> lumaB = lumaOf(b);
    const int height = static_cast<int>(lumaA.size()) / width;
    double sum = 0;
    int windows = 0;
    for (int y = 0; y + kWindow <= height; y += kStep) {
        for (int x = 0; x + kWindow <= width; x += kStep) {
            const int at = y * width + x;
            sum += windowSsim(lumaA.data() + at, lumaB.data() + at, width);
            ++windows;
        }
    }
    return sum / windows;
}

double psnrOf(double meanSquaredError) {
    return meanSquaredError > 0 ? 10 * std::log10(kPeak * kPeak / meanSquaredError)
                                : std::numeric_limits<double>::infinity();
}

double Comparison::psnr() const {
    return psnrOf(meanOf(frames, &FrameScore::colourError));
}

double Comparison::alphaPsnr() const {
    return psnrOf(meanOf(frames, &FrameScore::alphaError));
}

double Comparison::meanSsim() const {
    return meanOf(frames, &FrameScore::ssim);
}

int Comparison::worstFrame() const {
    const auto worst =
        std::ranges::max_element(frames, std::ranges::less(), &FrameScore::colourError);
    return static_cast<int>(worst - frames.begin());
}

}  // namespace maker
