#pragma once
// The frame double: a library of ours that is preloaded into the program and counts its frames,
// whatever road they take to the display. A frame begins when the program samples its keys, and is
// finished once the program rests (or samples again: a program that is late never rests). The
// counts lie in a mapped file that the test reads; the program never knows.

#include <atomic>
#include <cstdint>

namespace app {

// The whole file.
struct FrameCount {
    std::atomic<uint32_t> begun;
    std::atomic<uint32_t> finished;  // begun, or one less
    std::atomic<uint32_t> held;      // by the test: while it is not 0, no frame begins
};
static_assert(std::atomic<uint32_t>::is_always_lock_free);

// The variable that names the file. Without it, or without the file, nothing is counted.
inline constexpr const char* kFrameFileVariable = "VELMORA_TEST_FRAMES";

}  // namespace app
