#include "tools/clip/frame_list.h"

#include <numeric>
#include <regex>

#include "tools/clip/errors.h"

namespace maker {

namespace {

int numberIn(const std::string& digits, int count) {
    const int number = std::stoi(digits);
    if (number >= count) {
        throw ToolError("there is no frame " + digits + ": the clip's last one is " +
                        std::to_string(count - 1));
    }
    return number;
}

}  // namespace

bool isFrameList(const std::string& text) {
    static const std::regex form("\\d{1,6}(-\\d{1,6})?(,\\d{1,6}(-\\d{1,6})?)*");
    return std::regex_match(text, form);
}

std::vector<int> framesOf(const std::string& text, int count) {
    std::vector<int> frames;
    if (text.empty()) {
        frames.resize(static_cast<size_t>(count));
        std::iota(frames.begin(), frames.end(), 0);
        return frames;
    }
    static const std::regex part("(\\d+)(?:-(\\d+))?");
    for (std::sregex_iterator match(text.begin(), text.end(), part), end; match != end; ++match) {
        const int first = numberIn((*match)[1], count);
        const int last = (*match)[2].matched ? numberIn((*match)[2], count) : first;
        const int step = first <= last ? 1 : -1;
        for (int frame = first; frame != last + step; frame += step) {
            frames.push_back(frame);
        }
    }
    return frames;
}

}  // namespace maker
