#include "tools/clip/jobs/import_log.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <sstream>
#include <string_view>
#include <tuple>

#include "tools/base/atomic_file.h"
#include "tools/base/errors.h"
#include "tools/base/texts.h"
#include "tools/clip/jobs/clip_names.h"
#include "tools/clip/jobs/clip_origin.h"
#include "tools/clip/media/image_sequence.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr const char* kLogName = "imported.jsonl";
constexpr mode_t kFileMode = 0666;

// Paths are bytes and JSON is UTF-8: bytes are written as the Latin-1 characters that they could
// be.
std::string keyOf(const std::string& input) {
    return fs::absolute(input).lexically_normal().string();
}

// A disk that has become full takes a part at first, and tells why only when asked for the rest.
bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(written > 0 ? static_cast<size_t>(written) : 0);
    }
    return true;
}

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

ImportLog::ImportLog(const fs::path& folder) : folder_(folder) {
    std::error_code ignored;
    if (!fs::is_directory(folder, ignored)) {
        return;
    }
    held_.emplace(folder_);
    const fs::path path = folder / kLogName;
    if (fs::exists(path, ignored)) {
        const std::vector<uint8_t> bytes = readWholeFile(path);
        brokenOff_ = !bytes.empty() && bytes.back() != '\n';
        std::istringstream lines(std::string(bytes.begin(), bytes.end()));
        for (std::string line; std::getline(lines, line);) {
            readLine(line);
        }
    }
}

ImportLog::~ImportLog() {
    if (file_ >= 0) {
        close(file_);
    }
}

void ImportLog::readLine(const std::string& line) {
    const nlohmann::json json = nlohmann::json::parse(line, nullptr, false);
    if (!json.is_object()) {
        return;
    }
    try {
        Entry entry;
        entry.name = json.at("name").get<std::string>();
        if (json.contains("clips")) {
            entry.state.bytes = json.at("bytes").get<uint64_t>();
            entry.state.changed = json.at("changed").get<int64_t>();
            entry.options = json.at("options").get<std::string>();
            for (const nlohmann::json& clip : json.at("clips")) {
                entry.clips.push_back(
                    {clip.at("file").get<std::string>(), clip.at("bytes").get<uint64_t>()});
            }
        }
        entries_[latin1Of(json.at("input").get<std::string>())] = entry;
    } catch (const nlohmann::json::exception&) {
        // Not a line of ours.
    }
}

// Each line in one piece, and on the disk before anything that it speaks of goes on.
void ImportLog::append(const std::string& line) {
    const std::lock_guard lock(mutex_);
    if (!held_) {
        held_.emplace(folder_);
    }
    const fs::path path = folder_ / kLogName;
    if (file_ < 0) {
        file_ = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, kFileMode);
    }
    std::string text = brokenOff_ ? "\n" : "";
    text += line;
    text += "\n";
    brokenOff_ = true;  // until all of it is there; an empty line does no harm
    if (file_ < 0 || !writeAll(file_, text) || fdatasync(file_) != 0) {
        throw ToolError("cannot write " + path.string() + ": " + std::strerror(errno));
    }
    brokenOff_ = false;
}

std::string ImportLog::nameOf(const std::string& input) const {
    const auto entry = entries_.find(keyOf(input));
    return entry == entries_.end() ? "" : entry->second.name;
}

std::vector<std::string> ImportLog::names() const {
    std::vector<std::string> names;
    for (const auto& [input, entry] : entries_) {
        names.push_back(entry.name);
    }
    return names;
}

std::vector<std::string> ImportLog::clipsOf(const std::string& input, const InputState& state,
                                            const std::string& options) const {
    const auto found = entries_.find(keyOf(input));
    if (found == entries_.end() || found->second.state.bytes != state.bytes ||
        found->second.options != options) {
        return {};
    }
    const bool touched = found->second.state != state;
    const SourceSum sum = touched ? sumOf(input) : SourceSum();
    std::vector<std::string> files;
    for (const Clip& clip : found->second.clips) {
        std::error_code error;
        const fs::path path = folder_ / clip.file;
        const bool same = fs::file_size(path, error) == clip.bytes && !error;
        const std::optional<ClipOrigin> origin = same && !touched ? std::nullopt : readOrigin(path);
        if ((!same && !origin) || (touched && (!origin || origin->sum != sum))) {
            return {};
        }
        files.push_back(clip.file);
    }
    return files;
}

void ImportLog::begin(const std::string& input, const std::string& name) {
    append(nlohmann::json{{"input", latin1AsUtf8(keyOf(input))}, {"name", name}}.dump());
}

void ImportLog::finish(const std::string& input, const std::string& name, const InputState& state,
                       const std::string& options, const std::vector<ClipReport>& clips) {
    nlohmann::json list = nlohmann::json::array();
    for (const ClipReport& clip : clips) {
        list.push_back({{"file", clip.path.filename().string()}, {"bytes", clip.bytes}});
    }
    append(nlohmann::json{
        {"input", latin1AsUtf8(keyOf(input))},
        {"name", name},
        {"bytes", state.bytes},
        {"changed", state.changed},
        {"options", options},
        {"clips",
         list}}.dump());
}

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
    if (!pattern) {
        addFile(input, state);
        return state;
    }
    for (const auto& [number, path] : picturesOf(*pattern)) {
        addFile(path, state);
    }
    return state;
}

}  // namespace maker
