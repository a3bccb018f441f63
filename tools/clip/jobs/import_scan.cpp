#include "tools/clip/jobs/import_scan.h"

#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <optional>
#include <set>
#include <tuple>

#include "tools/clip/base/errors.h"
#include "tools/clip/base/texts.h"
#include "tools/clip/media/image_sequence.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr const char* kVideoEndings[] = {
    ".3g2",  ".3gp", ".apng", ".asf",  ".avi", ".dv",  ".f4v", ".flv",  ".gif",  ".m2t",
    ".m2ts", ".m2v", ".m4v",  ".mjpg", ".mkv", ".mng", ".mov", ".mp4",  ".mpeg", ".mpg",
    ".mts",  ".mxf", ".nut",  ".ogm",  ".ogv", ".ts",  ".vob", ".webm", ".wmv",  ".y4m",
};
constexpr const char* kPictureEndings[] = {
    ".bmp", ".exr", ".jpeg", ".jpg", ".png", ".ppm", ".tga", ".tif", ".tiff", ".webp",
};
constexpr size_t kFewestPictures = 3;  // of a sequence

template <size_t N>
bool endsIn(const fs::path& path, const char* const (&endings)[N]) {
    const std::string ending = lowerCase(path.extension().string());
    return std::find(std::begin(endings), std::end(endings), ending) != std::end(endings);
}

// The numbered pictures with the same names but for their numbers.
class Pictures {
public:
    void add(const std::string& path) {
        const std::optional<ImagePattern> pattern = patternOfFile(path);
        if (!pattern) {
            ++stills_;
            return;
        }
        Group& group = groups_[{pattern->folder, pattern->before, pattern->after}];
        group.names.push_back(fs::path(path).filename().string());
        // One number with zeros before it tells how long all of them are.
        group.pattern = group.names.size() == 1 || pattern->digits > 1 ? *pattern : group.pattern;
    }

    void into(Scan& scan) const {
        scan.stills += stills_;
        for (const auto& [key, group] : groups_) {
            const size_t fitting = static_cast<size_t>(std::count_if(
                group.names.begin(), group.names.end(), [&group = group](const auto& name) {
                    return numberOf(group.pattern, name).has_value();
                }));
            const bool sequence = fitting >= kFewestPictures;
            if (sequence) {
                scan.inputs.push_back(group.pattern.text());
            }
            scan.stills += static_cast<int>(group.names.size() - (sequence ? fitting : 0));
        }
    }

private:
    struct Group {
        ImagePattern pattern;
        std::vector<std::string> names;
    };
    std::map<std::tuple<std::string, std::string, std::string>, Group> groups_;
    int stills_ = 0;
};

void scanFolder(const std::string& folder, Scan& scan) {
    const size_t before = scan.inputs.size();
    Pictures pictures;
    std::error_code error;
    fs::recursive_directory_iterator at(folder, error);
    for (const fs::recursive_directory_iterator end; !error && at != end; at.increment(error)) {
        std::error_code ignored;
        const fs::path& path = at->path();
        if (path.filename().string().starts_with('.')) {
            at.disable_recursion_pending();
        } else if (!at->is_regular_file(ignored)) {
            continue;
        } else if (endsIn(path, kVideoEndings)) {
            scan.inputs.push_back(path.string());
        } else if (endsIn(path, kPictureEndings)) {
            pictures.add(path.string());
        }
    }
    if (error) {
        throw ToolError("cannot read the folder " + folder + ": " + error.message());
    }
    pictures.into(scan);
    std::sort(scan.inputs.begin() + static_cast<std::ptrdiff_t>(before), scan.inputs.end());
}

void addFile(const fs::path& path, InputState& state) {
    constexpr int64_t kNanoseconds = 1'000'000'000;
    struct stat facts {};
    if (stat(path.c_str(), &facts) == 0) {
        state.bytes += static_cast<uint64_t>(facts.st_size);
        const int64_t changed =
            int64_t{facts.st_mtim.tv_sec} * kNanoseconds + facts.st_mtim.tv_nsec;
        state.changed = std::max(state.changed, changed);
    }
}

}  // namespace

Scan scanInputs(const std::vector<std::string>& given) {
    Scan all;
    for (const std::string& name : given) {
        std::error_code ignored;
        if (fs::is_directory(name, ignored)) {
            scanFolder(name, all);
        } else if (fs::exists(name, ignored) || imagePattern(name)) {
            all.inputs.push_back(name);
        } else {
            throw ToolError("cannot read " + name + ": there is no such file");
        }
    }
    Scan once{{}, all.stills};
    std::set<fs::path> seen;
    for (const std::string& input : all.inputs) {
        if (seen.insert(fs::absolute(input).lexically_normal()).second) {
            once.inputs.push_back(input);
        }
    }
    return once;
}

InputState stateOf(const std::string& input) {
    InputState state;
    const std::optional<ImagePattern> pattern = imagePattern(input);
    std::error_code error;
    if (!pattern) {
        addFile(input, state);
        return state;
    }
    const std::string folder = pattern->folder.empty() ? "." : pattern->folder;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        if (numberOf(*pattern, at->path().filename().string())) {
            addFile(at->path(), state);
        }
    }
    return state;
}

}  // namespace maker
