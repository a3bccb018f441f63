// velmora-ask: waits for any key of the terminal or any button of a controller.
//
//   velmora-ask [--seconds N]
//
// Ends with 0 when there was one, 1 when there was none in time, and otherwise when it could not
// ask.

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "tools/ask/keys.h"
#include "tools/ask/pads.h"
#include "tools/base/errors.h"

namespace {

constexpr int kYes = 0;
constexpr int kNobody = 1;
constexpr int kUsage = 2;
constexpr int kCannotAsk = 3;
constexpr int kInterrupted = 130;
constexpr long kUsualSeconds = 15;
constexpr long kMostSeconds = 600;
constexpr useconds_t kBetweenLooks = 10'000;  // microseconds

// Below 0 where the arguments are none.
long secondsOf(int argc, char** argv) {
    if (argc == 1) {
        return kUsualSeconds;
    }
    if (argc != 3 || std::string(argv[1]) != "--seconds") {
        return -1;
    }
    char* end = nullptr;
    const long seconds = std::strtol(argv[2], &end, 10);
    return end != argv[2] && *end == '\0' && seconds >= 1 && seconds <= kMostSeconds ? seconds : -1;
}

int waitFor(long seconds) {
    ask::Pads pads;
    // After SDL, which else keeps the signals for itself.
    maker::catchInterrupts();
    ask::Keys keys;
    if (!keys.there() && !pads.there()) {
        std::fprintf(stderr, "velmora-ask: there is neither a keyboard nor a controller to ask\n");
        return kCannotAsk;
    }
    const auto begin = std::chrono::steady_clock::now();
    for (long now = 0; now < seconds * 1000;) {
        if (maker::interrupted()) {
            return kInterrupted;
        }
        const bool key = keys.pressed(now);
        const bool button = pads.pressed(now);
        if (key || button) {
            return kYes;
        }
        usleep(kBetweenLooks);
        now = static_cast<long>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                    std::chrono::steady_clock::now() - begin)
                                    .count());
    }
    return kNobody;
}

}  // namespace

int main(int argc, char** argv) {
    const long seconds = secondsOf(argc, argv);
    if (seconds < 0) {
        std::fprintf(stderr, "Usage: velmora-ask [--seconds N], 1 to %ld\n", kMostSeconds);
        return kUsage;
    }
    try {
        return waitFor(seconds);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora-ask: %s\n", maker::lineOf(error));
        return kCannotAsk;
    }
}
