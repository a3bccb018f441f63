#pragma once
// The pace that Velmora reaches here: frames with all that it can do at once, made by its own pixel
// code and shown by its own way to the display.

#include <optional>

#include "tools/doctor/remarks.h"

namespace doctor {

struct PaceFacts {
    double made = 0;              // ms to mix a frame with every filter on both layers
    std::optional<double> shown;  // ms to show it; empty without a display
};

// Takes about a second. With the display open (display.h) a window comes up for that long.
PaceFacts measurePace(bool withDisplay);

void judgePace(const PaceFacts& pace, Remarks& remarks);

}  // namespace doctor
