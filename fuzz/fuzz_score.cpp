// Any bytes as a score: what is refused names a line, and what is read is in order, within its
// limits, and the same when it is printed and read again.
//
// Input: the text, which lacks the first line.
#include <algorithm>
#include <string>

#include "fuzz/input.h"
#include "tools/base/errors.h"
#include "tools/score/score.h"

namespace {

using fuzz::require;

void checkScore(const maker::Score& score) {
    require(std::ranges::is_sorted(score.events, {}, &maker::ScoreEvent::frame),
            "events are in order");
    require(score.events.empty() || score.events.front().frame >= 0,
            "no frame is before the first");
    require(score.events.empty() || score.events.back().frame < score.frames,
            "no event is behind the end");
    require(score.events.size() <= maker::kMostScoreEvents, "events have a limit");
    require(maker::parseScore(maker::printScore(score)) == score, "printed, it reads as it was");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t kFewEvents = 100000;
    std::string text = "velmora score 1\n";
    text.append(reinterpret_cast<const char*>(data), size);
    try {
        const maker::Score score = maker::parseScore(text);
        if (score.events.size() < kFewEvents) {  // a short line can make millions
            checkScore(score);
        }
    } catch (const maker::ToolError& error) {
        require(std::string(error.what()).starts_with("line "), "a fault has a line");
    }
    return 0;
}
