#pragma once
// Keeps the second click of a double click from a page that the first one opened: closed with the
// change of page, it opens 300 ms after the button came up. Pure; times are milliseconds, and a
// clock that steps back holds it up for those 300 ms at most.

#include <cstdint>

struct PressGate {
    int32_t state;  // 0 open
    int32_t upMs;   // since when the button is up
};

void closeGate(PressGate& gate, bool buttonDown, int32_t now);
// Once a frame. True while presses are not for the page.
bool gateHolds(PressGate& gate, bool buttonDown, int32_t now);

// From `since` to `now`; -1 when the clock stepped back in between.
int64_t msBetween(int32_t since, int32_t now);
