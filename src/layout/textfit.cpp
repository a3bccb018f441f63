#include "layout/textfit.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "layout/latin1.h"

std::string fitText(const std::string& text, int room,
                    const std::function<int(const std::string&)>& widthOf) {
    constexpr const char* kEllipsis = "...";
    if (text.empty() || widthOf(text) <= room) {
        return text;
    }
    if (widthOf(kEllipsis) > room) {
        return "";
    }
    // Where letters end. A longer beginning is never narrower.
    std::vector<size_t> ends = {0};
    while (ends.back() < text.size()) {
        const std::string_view rest = std::string_view(text).substr(ends.back());
        ends.push_back(ends.back() + latin1::firstLetter(rest).bytes);
    }
    const auto tooLong = std::partition_point(ends.begin() + 1, ends.end() - 1, [&](size_t end) {
        return widthOf(text.substr(0, end) + kEllipsis) <= room;
    });
    return text.substr(0, *(tooLong - 1)) + kEllipsis;
}
