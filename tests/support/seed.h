#pragma once
// The seed of a test's choices by chance. Without VELMORA_SEED it is always the same: a run differs
// from the last one only where the code does. scripts/soak gives another one each time.

#include <cstdlib>
#include <iostream>

inline unsigned chosenSeed() {
    constexpr unsigned kUsual = 20130;
    const char* wanted = getenv("VELMORA_SEED");
    const auto seed =
        wanted != nullptr ? static_cast<unsigned>(strtoul(wanted, nullptr, 10)) : kUsual;
    std::cout << "VELMORA_SEED=" << seed << " repeats this\n";
    return seed;
}
