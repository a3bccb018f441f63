#include "tools/clip/media/image_sequence.h"

#include <algorithm>
#include <charconv>
#include <filesystem>

extern "C" {
#include <libavutil/avstring.h>
}

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr size_t kMostDigits = 9;  // an int holds any number of so many

}  // namespace

std::string ImagePattern::text() const {
    return folder + before + "%0" + std::to_string(digits) + "d" + after;
}

std::optional<ImagePattern> imagePattern(const std::string& path) {
    std::error_code ignored;
    const size_t slash = path.rfind('/');
    const size_t percent = path.find('%');
    const size_t nameAt = slash == std::string::npos ? 0 : slash + 1;
    if (percent == std::string::npos || percent < nameAt || path.rfind('%') != percent ||
        fs::exists(path, ignored)) {
        return std::nullopt;
    }
    ImagePattern pattern;
    size_t at = percent + 1;
    while (at < path.size() && av_isdigit(path[at]) && at - percent <= 2) {
        ++at;
    }
    if (at >= path.size() || path[at] != 'd') {
        return std::nullopt;
    }
    std::from_chars(path.data() + percent + 1, path.data() + at, pattern.digits);
    pattern.folder = path.substr(0, nameAt);
    pattern.before = path.substr(nameAt, percent - nameAt);
    pattern.after = path.substr(at + 1);
    return pattern;
}

std::optional<ImagePattern> patternOfFile(const std::string& path) {
    const size_t slash = path.rfind('/');
    const size_t nameAt = slash == std::string::npos ? 0 : slash + 1;
    const size_t dot = path.rfind('.');
    const size_t end = dot == std::string::npos || dot < nameAt ? path.size() : dot;
    size_t from = end;
    while (from > nameAt && av_isdigit(path[from - 1]) && end - from < kMostDigits) {
        --from;
    }
    if (from == end || path.find('%') != std::string::npos) {
        return std::nullopt;
    }
    ImagePattern pattern;
    pattern.folder = path.substr(0, nameAt);
    pattern.before = path.substr(nameAt, from - nameAt);
    pattern.after = path.substr(end);
    pattern.digits = path[from] == '0' ? static_cast<int>(end - from) : 1;
    return pattern;
}

std::optional<int> numberOf(const ImagePattern& pattern, const std::string& fileName) {
    const size_t around = pattern.before.size() + pattern.after.size();
    if (fileName.size() <= around || !fileName.starts_with(pattern.before) ||
        !fileName.ends_with(pattern.after)) {
        return std::nullopt;
    }
    const std::string digits = fileName.substr(pattern.before.size(), fileName.size() - around);
    const size_t least = static_cast<size_t>(pattern.digits);
    const bool padded = digits.size() == least || (digits.size() > least && digits[0] != '0');
    if (!padded || digits.size() > kMostDigits ||
        !std::all_of(digits.begin(), digits.end(), av_isdigit)) {
        return std::nullopt;
    }
    return std::stoi(digits);
}

std::map<int, std::string> picturesOf(const ImagePattern& pattern) {
    std::map<int, std::string> pictures;
    std::error_code error;
    const std::string folder = pattern.folder.empty() ? "." : pattern.folder;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        const std::optional<int> number = numberOf(pattern, at->path().filename().string());
        if (number) {
            pictures.emplace(*number, at->path().string());
        }
    }
    return pictures;
}

}  // namespace maker
