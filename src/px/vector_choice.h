#pragma once
// Which of the vectors that Highway has code for this processor has. Highway finds out by itself at
// the first call but on 32-bit Arm, where it asks for NEON by names that the C library does not
// have. Included with the operations on vectors, so that the choice is made before main() in every
// program that has them.

#include <hwy/targets.h>

#include <cstdint>

#if HWY_ARCH_ARM_V7
#include <sys/auxv.h>
#endif

// Whether pairs of pixels in plain registers (pairs.h) serve where there are no vectors.
#ifdef __ARM_FEATURE_SIMD32
#define VELMORA_HAS_PAIRS 1
#else
#define VELMORA_HAS_PAIRS 0
#endif

namespace px {

inline int64_t vectorsOfProcessor() {
    int64_t targets = hwy::SupportedTargets() & HWY_TARGETS;
#if HWY_ARCH_ARM_V7
    constexpr unsigned long kNeeded = HWCAP_ARM_NEON | HWCAP_ARM_VFPv4;
    if ((getauxval(AT_HWCAP) & kNeeded) == kNeeded) {
        targets |= HWY_NEON;
    }
#endif
    return targets;
}

#if HWY_ARCH_ARM_V7
inline const bool kVectorsChosen = [] {
    hwy::GetChosenTarget().Update(vectorsOfProcessor());
    return true;
}();
#endif

}  // namespace px
