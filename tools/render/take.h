#pragma once
// One run of the program through a score, without a display and without waiting: its own code from
// the first line of main() to the last picture.
//
// The program runs in a folder of its own, with the score's user files, or Velmora's where the
// score holds none, and with links to Velmora's data and clips: what it saves goes with that
// folder. It can be run once in a process.

#include <cstdint>
#include <filesystem>
#include <functional>

#include "tools/score/score.h"

namespace maker {

// RGB565, row-major; `pitch` pixels from one row to the next.
struct StagePicture {
    const uint16_t* pixels;
    int width;
    int height;
    int pitch;
};

struct TakeSettings {
    std::filesystem::path folder;  // Velmora's
    bool interface = false;        // the whole window; else the mix alone, 640 x 360
    // Each frame of the score, in order; false: that is enough.
    std::function<bool(int frame, const StagePicture& picture)> picture;
};

// Throws ToolError, and Interrupted when the user stops it. Returns how many frames came.
int play(const Score& score, const TakeSettings& settings);

}  // namespace maker
