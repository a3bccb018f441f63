#pragma once
// The program's own main(), under another name, so that a test can run it whole.

#include <ctime>

int velmoraMain(int argc, char** argv);

// What seeded the random numbers of this test program first, and at what time.
struct FirstSeed {
    int calls;  // so far
    unsigned seed;
    time_t at;
};
const FirstSeed& firstSeed();
