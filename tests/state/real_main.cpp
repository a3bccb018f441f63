#include "state/real_main.h"

#include <cstdlib>

namespace {

constinit FirstSeed seeding = {0, 0, 0};

}  // namespace

const FirstSeed& firstSeed() {
    return seeding;
}

// Wins over the library's, whose rand() is random() by another name.
extern "C" void srand(unsigned seed) noexcept {
    if (seeding.calls++ == 0) {
        seeding.seed = seed;
        seeding.at = time(nullptr);
    }
    srandom(seed);
}

#define main velmoraMain
#include "main.cpp"
