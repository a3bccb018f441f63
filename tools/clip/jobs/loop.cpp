#include "tools/clip/jobs/loop.h"

#include <algorithm>

#include "clip/format.h"
#include "tools/clip/jobs/seam.h"

namespace maker {

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
    const int firstShare = index + 1;
    const int lastShare = blend + 1 - firstShare;
    for (size_t i = 0; i < first.size(); i += 4) {
        const int ofFirst = firstShare * first[i + 3];
        const int ofLast = lastShare * last[i + 3];
        const int sum = ofFirst + ofLast;
        for (size_t c = 0; c < 3 && sum > 0; ++c) {
            const int mixed = ofFirst * first[i + c] + ofLast * last[i + c];
            first[i + c] = static_cast<uint8_t>((mixed + sum / 2) / sum);
        }
        first[i + 3] = static_cast<uint8_t>((sum + (blend + 1) / 2) / (blend + 1));
    }
}

}  // namespace maker
