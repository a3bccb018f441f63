#include "tools/clip/reports/frame_list.h"

#include <charconv>
#include <numeric>
#include <optional>
#include <string_view>

#include "tools/clip/base/errors.h"

namespace maker {

namespace {

struct Range {
    int first;
    int last;
};

// Takes a number from the front of the text.
bool takeNumber(std::string_view& text, int& number) {
    const char* end = text.data() + text.size();
    const auto [next, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || number < 0) {
        return false;
    }
    text.remove_prefix(static_cast<size_t>(next - text.data()));
    return true;
}

bool takeMark(std::string_view& text, char mark) {
    const bool found = !text.empty() && text[0] == mark;
    text.remove_prefix(found ? 1 : 0);
    return found;
}

std::optional<std::vector<Range>> rangesOf(std::string_view text) {
    std::vector<Range> ranges;
    do {
        Range range{};
        if (!takeNumber(text, range.first)) {
            return std::nullopt;
        }
        range.last = range.first;
        if (takeMark(text, '-') && !takeNumber(text, range.last)) {
            return std::nullopt;
        }
        ranges.push_back(range);
    } while (takeMark(text, ','));
    return text.empty() ? std::optional(ranges) : std::nullopt;
}

void checkFrame(int frame, int count) {
    if (frame >= count) {
        throw ToolError("there is no frame " + std::to_string(frame) + ": the clip's last one is " +
                        std::to_string(count - 1));
    }
}

}  // namespace

bool isFrameList(const std::string& text) {
    return rangesOf(text).has_value();
}

std::vector<int> framesOf(const std::string& text, int count) {
    std::vector<int> frames;
    if (text.empty()) {
        frames.resize(static_cast<size_t>(count));
        std::iota(frames.begin(), frames.end(), 0);
        return frames;
    }
    const std::optional<std::vector<Range>> ranges = rangesOf(text);
    if (!ranges) {
        throw ToolError("frames are named like 0,5,10-20, not " + text);
    }
    for (const Range& range : *ranges) {
        checkFrame(range.first, count);
        checkFrame(range.last, count);
        const int step = range.first <= range.last ? 1 : -1;
        for (int frame = range.first; frame != range.last + step; frame += step) {
            frames.push_back(frame);
        }
    }
    return frames;
}

}  // namespace maker
