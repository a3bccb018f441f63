#pragma once
// The ways of doing pixels that the processor offers beside the plain one, for who walks them all.

#include <vector>

#include "px/operations.h"
#include "vector_targets.h"

inline std::vector<const px::Operations*> fastWays() {
    std::vector<const px::Operations*> ways;
    for (const VectorTarget& target : vectorTargets()) {
        useTarget(target);
        ways.push_back(&px::operations());
    }
    return ways;
}
