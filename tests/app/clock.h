#pragma once
// Waiting with an end. Every wait of the harness goes through here, so that one number stretches
// them all: APP_SLOWNESS is 1, and more where the program runs with sanitizers. VELMORA_SLOWNESS in
// the environment takes its place, for busy machines and tools that slow the program down.

#include <chrono>
#include <cstdlib>
#include <thread>

namespace app {

inline constexpr int kPollMs = 4;

inline int slowness() {
    const char* text = getenv("VELMORA_SLOWNESS");
    return text != nullptr ? atoi(text) : APP_SLOWNESS;
}

inline const int kPatienceMs = 12000 * slowness();  // then the awaited thing counts as missing

inline long long nowMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

inline void sleepMs(int ms) {
    std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

// Polls `done` until it answers true; false when it never did in `timeoutMs`.
template <typename Condition>
bool waitUntil(Condition done, int timeoutMs = kPatienceMs, int pollMs = kPollMs) {
    const long long end = nowMs() + timeoutMs;
    while (!done()) {
        if (nowMs() >= end) {
            return false;
        }
        sleepMs(pollMs);
    }
    return true;
}

}  // namespace app
