#pragma once
// Where plain() takes its functions from.

#include "px/operations.h"

namespace px {

void addPlainKernels(Operations& table);  // mixes and transitions
void addPlainEffects(Operations& table);

}  // namespace px
