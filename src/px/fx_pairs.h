#pragma once
// The effects on pairs of pixels (pairs.h), where what the vectors do would take more instructions.
// On 32-bit Arm alone.

#include "px/operations.h"

namespace px::pairs {

void addEffects(Operations& table);

}  // namespace px::pairs
