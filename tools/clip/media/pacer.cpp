#include "tools/clip/media/pacer.h"

#include <cmath>

namespace maker {

namespace {

// Part of a clip frame that rounded timestamps may be early or late.
constexpr double kSlack = 1e-3;

}  // namespace

int framesFor(double seconds, double fps, int limit) {
    const double frames = std::ceil(seconds * fps - kSlack);
    if (!(frames > 0)) {
        return 0;
    }
    return frames < limit ? static_cast<int>(frames) : limit;
}

int Pacer::due(double until) {
    const int target = framesFor(until, fps_, limit_);
    if (target <= given_) {
        return 0;
    }
    const int frames = target - given_;
    given_ = target;
    return frames;
}

}  // namespace maker
