#pragma once
// The vector widths that the processor offers, pairs of pixels included, and how to hold the fast
// functions to one of them. Tiles alone have code for AVX3_DL, AVX-512 with look-ups of bytes: who
// asks for it as well defines HWY_WANT_AVX3_DL before including this.

#include <string>
#include <vector>

#ifdef VELMORA_HIGHWAY
#include <hwy/highway.h>

#include "px/vector_choice.h"
#endif

struct VectorTarget {
    std::string name;
    long long bit;
};

inline std::vector<VectorTarget> vectorTargets() {
    std::vector<VectorTarget> targets;
#ifdef VELMORA_HIGHWAY
    hwy::SetSupportedTargetsForTest(0);
    const long long supported = px::vectorsOfProcessor();
    for (int bit = 62; bit >= 0; --bit) {
        const long long target = 1LL << bit;
        const bool vectors = target != HWY_EMU128 && target != HWY_SCALAR;
        if ((supported & target) != 0 && (vectors || VELMORA_HAS_PAIRS)) {
            targets.push_back({vectors ? hwy::TargetName(target) : "pairs", target});
        }
    }
#else
    targets.push_back({"no vectors", 0});
#endif
    return targets;
}

// Functions without code for it take the next narrower one, which has the next higher bit.
inline void useTarget([[maybe_unused]] const VectorTarget& target) {
#ifdef VELMORA_HIGHWAY
    hwy::SetSupportedTargetsForTest(-target.bit);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
#endif
}
