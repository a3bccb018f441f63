#pragma once
// What the conformance corpus holds: each clip, what it is for and what a reader makes of it.

#include <cstdint>
#include <span>
#include <vector>

namespace maker::conformance {

enum class Expected {
    OK,       // every frame has its checksum
    REFUSED,  // no reader shows a frame
    BROKEN,   // a reader that checks refuses it; one that plays on stays inside its memory
};

struct Case {
    const char* name;  // of the file, without its ending
    const char* what;  // one sentence
    Expected expected;
    std::vector<uint8_t> (*make)();
};

// In the order of the page.
struct Chapter {
    const char* title;
    std::span<const Case> cases;
};

Chapter pathCases();    // each record type along each path
Chapter recordCases();  // each form of a record
Chapter mapCases();     // map entries, change runs and tile codes
Chapter blockCases();   // frames, blocks, rooms and the file header
Chapter faultCases();

std::vector<Chapter> chapters();

}  // namespace maker::conformance
