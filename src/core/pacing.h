#pragma once
// When the next frame is due. Times are milliseconds since SDL started.

#include <cstdint>

// Shortest time between two frames at a target rate: 1000 / (rate + 1).
inline int16_t frameInterval(int targetFps) {
    return static_cast<int16_t>(1000 / (targetFps + 1));
}

// A frame is due once more than `interval` has passed since the last one started. SDL reads the
// wall clock, which is set back at times: a time before that of the last frame is due as well, and
// the pace goes on from it.
inline bool frameDue(int now, int previous, int interval) {
    return now < previous || now - previous > interval;
}

// What is left to wait, in milliseconds, while no frame is due: 1 to interval + 1. Who sleeps so
// long wakes in the first millisecond in which one is.
inline int untilFrame(int now, int previous, int interval) {
    return previous + interval + 1 - now;
}

// Frame rate of a frame that follows the previous one after `elapsed` (at least 1) milliseconds.
inline int frameRate(int elapsed) {
    return 1000 / elapsed;
}
