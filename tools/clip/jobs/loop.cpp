#include "tools/clip/jobs/loop.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "clip/format.h"
#include "common/limits.h"
#include "tools/clip/media/picture.h"

namespace maker {

namespace {

constexpr int kShrink = 10;  // frame pixels along a side of one small pixel
constexpr int kAcross = kFrameWidth / kShrink;
constexpr int kDown = kFrameHeight / kShrink;
constexpr size_t kSamples = size_t{kAcross} * kDown * 3;
constexpr int kBefore = 1;        // frames compared before the seam
constexpr int kAfter = 1;         // and after the frame that the loop comes back to
constexpr int kFewestFrames = 2;  // below, nothing moves
constexpr double kEqual = 1e-9;

using Samples = std::vector<int16_t>;

double difference(const Samples& a, const Samples& b) {
    int64_t sum = 0;
    for (size_t i = 0; i < kSamples; ++i) {
        const int apart = a[i] - b[i];
        sum += apart * apart;
    }
    return static_cast<double>(sum) / kSamples;
}

// What comes `steps` frames after `last` when the motion from `before` to it goes on.
Samples goOn(const SmallPicture& before, const SmallPicture& last, int steps) {
    Samples next(kSamples);
    for (size_t i = 0; i < kSamples; ++i) {
        next[i] = static_cast<int16_t>(last[i] + steps * (last[i] - before[i]));
    }
    return next;
}

class Search {
public:
    explicit Search(const std::vector<SmallPicture>& pictures) {
        const size_t count = pictures.size();
        for (int steps = kBefore; steps > 0; --steps) {
            frames_.push_back(goOn(pictures[1], pictures[0], steps));
        }
        for (const SmallPicture& picture : pictures) {
            frames_.emplace_back(picture.begin(), picture.end());
        }
        for (int steps = 1; steps <= kAfter + 1; ++steps) {
            frames_.push_back(goOn(pictures[count - 2], pictures[count - 1], steps));
        }
    }

    // The loop, or where it holds the same motion several times over, once that motion.
    Seam best(int count) {
        const int longest = std::min(count, clip::kMaxFrames);
        const Seam whole = bestOf((longest + 1) / 2, longest, count);
        const int period = periodOf(whole);
        return period == 0 ? whole : bestOf(period - 1, std::min(period + 1, longest), count);
    }

    Seam bestOf(int shortest, int longest, int count) {
        Seam best{0, 0, std::numeric_limits<double>::max()};
        for (int length = longest; length >= shortest; --length) {
            compareAll(static_cast<size_t>(length));
            for (int begin = 0; begin + length <= count; ++begin) {
                const double cost = costOf(begin);
                if (cost < best.difference - kEqual) {
                    best = {begin, begin + length, cost};
                }
            }
        }
        return best;
    }

private:
    // 0 where the motion does not repeat within the loop. Frames a period apart differ by next to
    // nothing of what those in between do, or, where coding or a camera left noise, by no more than
    // those at the best seam do; in a slow motion neighbours are alike, but those in between even
    // more so.
    int periodOf(const Seam& loop) {
        constexpr double kAlike = 1.0 / 64;
        constexpr double kAlikeButForNoise = 1.0 / 4;
        constexpr double kNoise = 2;  // times that of the seam: noise of films is 1.1 to 1.5 times
        const int length = loop.end - loop.begin;
        double between = 0;  // the sum up to the step before
        for (int step = 1; 2 * step <= length + 1; ++step) {
            compareAll(static_cast<size_t>(step));
            const auto from = apart_.begin() + kBefore + loop.begin;
            const double apart = std::accumulate(from, from + length - step, 0.0) / (length - step);
            const bool divides = std::abs(std::round(1.0 * length / step) * step - length) <= 1;
            const double mean = between / std::max(step - 1, 1);
            const bool noise = apart < kNoise * loop.difference && apart < kAlikeButForNoise * mean;
            if (divides && (noise || apart < kAlike * mean)) {
                return step;
            }
            between += apart;
        }
        return 0;
    }

    // The differences between every frame and the one `length` later.
    void compareAll(size_t length) {
        apart_.resize(frames_.size() - length);
        for (size_t i = 0; i < apart_.size(); ++i) {
            apart_[i] = difference(frames_[i], frames_[i + length]);
        }
    }

    double costOf(int begin) const {
        constexpr int kCompared = kBefore + 1 + kAfter;
        const auto from = apart_.begin() + begin;
        return std::accumulate(from, from + kCompared, 0.0) / kCompared;
    }

    std::vector<Samples> frames_;  // kBefore frames, the source's, kAfter + 1 frames
    std::vector<double> apart_;
};

}  // namespace

int framesTaken(const LoopSettings& loop) {
    switch (loop.kind) {
        case LoopKind::PINGPONG:
            return clip::kMaxFrames / 2 + 1;
        case LoopKind::CROSSFADE:
            return clip::kMaxFrames + loop.blend;
        case LoopKind::BEST:
            return kSeamSearchFrames;
        default:
            return clip::kMaxFrames;
    }
}

int blendOf(const LoopSettings& loop, int taken) {
    return loop.kind == LoopKind::CROSSFADE ? std::min(loop.blend, taken / 2) : 0;
}

int framesGiven(const LoopSettings& loop, int taken) {
    if (loop.kind == LoopKind::PINGPONG) {
        return taken + std::max(taken - 2, 0);
    }
    return taken - blendOf(loop, taken);
}

void crossfade(int index, int blend, const std::vector<uint8_t>& last,
               std::vector<uint8_t>& first) {
    mixInto(first, last, blend - index, blend + 1);
}

SmallPicture smallPicture(const std::vector<uint8_t>& rgba) {
    constexpr int kArea = kShrink * kShrink * 255;
    SmallPicture small(kSamples);
    std::vector<int> sums(size_t{kAcross} * 3);
    for (int row = 0; row < kDown; ++row) {
        std::fill(sums.begin(), sums.end(), 0);
        const uint8_t* pixel =
            rgba.data() + size_t{kFrameWidth} * 4 * kShrink * static_cast<size_t>(row);
        for (int i = 0; i < kFrameWidth * kShrink; ++i, pixel += 4) {
            int* sum = &sums[static_cast<size_t>(i % kFrameWidth / kShrink) * 3];
            for (int c = 0; c < 3; ++c) {
                sum[c] += pixel[c] * pixel[3];
            }
        }
        for (size_t i = 0; i < sums.size(); ++i) {
            small[static_cast<size_t>(row) * sums.size() + i] =
                static_cast<uint8_t>(sums[i] / kArea);
        }
    }
    return small;
}

Seam findSeam(const std::vector<SmallPicture>& pictures, int frames) {
    const int count = static_cast<int>(pictures.size());
    if (count < kFewestFrames) {
        return {0, count, 0};
    }
    Search search(pictures);
    return frames > 0 ? search.bestOf(frames, frames, count) : search.best(count);
}

}  // namespace maker
