#include "tools/clip/encoder/rate.h"

#include <algorithm>
#include <cmath>

namespace maker {

namespace {

constexpr double kRecordBytes = 6;

}  // namespace

// What a new record would cost moves the limit, so that a clip made to be small or quick to load
// can hold what moves a little.
int Rate::visibleLimit() const {
    constexpr double kSensorNoise = 24;  // moves a pixel that stands still
    constexpr double kLargest = 255;
    constexpr double kWidest = 8;  // deviations that noise spreads over sixteen frames
    const double limit = std::max(kSensorNoise, kWidest * noise) +
                         6 * std::sqrt(perByte * recordBytes / kRecordBytes);
    return static_cast<int>(std::min(limit, kLargest));
}

Rate Rate::forFewerRecords(double factor) const {
    const double forBytes = std::sqrt(std::sqrt(factor));
    Rate rate = *this;
    rate.perByte *= forBytes;
    rate.recordBytes *= factor / forBytes;
    rate.noisePictures = std::max(1.0, noisePictures / factor);
    return rate;
}

// A power of the distance to 100: fine steps near the top, where differences are hard to see, and
// coarser ones below.
Rate rateOf(int quality) {
    constexpr double kFirstStep = 0.01;
    constexpr double kExponent = 2.8;
    return {kFirstStep * std::pow(kBestQuality - quality, kExponent), kRecordBytes};
}

}  // namespace maker
