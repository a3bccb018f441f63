#include "tools/clip/jobs/import_log.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string_view>

#include "tools/clip/base/atomic_file.h"
#include "tools/clip/base/errors.h"
#include "tools/clip/base/names.h"
#include "tools/clip/jobs/clip_names.h"

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

}  // namespace

ImportLog::ImportLog(const fs::path& folder) : folder_(folder) {
    std::error_code ignored;
    if (!fs::is_directory(folder, ignored)) {
        return;
    }
    hold();
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
    for (const int descriptor : {file_, held_}) {
        if (descriptor >= 0) {
            close(descriptor);
        }
    }
}

void ImportLog::hold() {
    held_ = open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (held_ < 0) {
        throw ToolError("cannot read " + folder_.string() + ": " + std::strerror(errno));
    }
    if (flock(held_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        throw ToolError("another import into " + folder_.string() + " is at work");
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
    if (held_ < 0) {
        hold();
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
    if (found == entries_.end() || found->second.state != state ||
        found->second.options != options) {
        return {};
    }
    std::vector<std::string> files;
    for (const Clip& clip : found->second.clips) {
        std::error_code error;
        if (fs::file_size(folder_ / clip.file, error) != clip.bytes || error) {
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

}  // namespace maker
