#include "files/pending_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdio>
#include <string_view>
#include <utility>

namespace files {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kOrdinaryMode = 0666;
constexpr size_t kPieceBytes = size_t{1} << 20;
constexpr int kMostLinks = 40;  // one behind the other, as many as the system itself follows

// A name that no other takes: ".", the target's name, the mark, the writer's process number and a
// number of six digits.
constexpr const char* kMark = ".velmora-";
constexpr int kNumbers = 1000000;
constexpr std::string_view kNumbered = "-000000";

std::string temporaryStart(const fs::path& path) {
    std::string start = ".";
    start += path.filename().string();
    start += kMark;
    return start;
}

// What stands behind temporaryStart() in the name of a file whose writer has ended.
bool isAbandoned(std::string_view rest) {
    pid_t writer = 0;
    const auto [end, error] = std::from_chars(rest.begin(), rest.end(), writer);
    const std::string_view numbered = rest.substr(static_cast<size_t>(end - rest.begin()));
    return error == std::errc() && writer > 0 && numbered.size() == kNumbered.size() &&
           numbered[0] == kNumbered[0] && kill(writer, 0) != 0 && errno == ESRCH;
}

// A run that was killed could not remove its temporary file.
void removeAbandoned(const fs::path& path) {
    const std::string start = temporaryStart(path);
    std::error_code error;
    fs::directory_iterator entry(folderOf(path), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with(start) && isAbandoned(name.substr(start.size()))) {
            unlink(entry->path().c_str());
        }
    }
}

// Makes the new name itself last through a power cut. Not every file system can.
void syncFolder(const fs::path& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
}

}  // namespace

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

void removeAbandonedIn(const fs::path& folder) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        const size_t mark = name.rfind(kMark);
        if (name.starts_with('.') && mark != std::string::npos && mark > 0 &&
            isAbandoned(std::string_view(name).substr(mark + std::string_view(kMark).size()))) {
            unlink(entry->path().c_str());
        }
    }
}

bool followLinks(fs::path& path) {
    char target[PATH_MAX];
    for (int links = 0; links <= kMostLinks; ++links) {
        const ssize_t length = readlink(path.c_str(), target, sizeof target);
        if (length < 0) {
            return errno == EINVAL || errno == ENOENT;
        }
        path = folderOf(path) / std::string(target, static_cast<size_t>(length));
    }
    errno = ELOOP;
    return false;
}

PendingFile::PendingFile(PendingFile&& other) noexcept
    : temporary_(std::exchange(other.temporary_, {})),
      descriptor_(std::exchange(other.descriptor_, -1)) {}

PendingFile::~PendingFile() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
    if (!temporary_.empty()) {
        unlink(temporary_.c_str());
    }
}

bool PendingFile::create(const std::string& temporary, mode_t mode) {
    temporary_ = temporary;  // first: without memory for its name there is no file either
    descriptor_ = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (descriptor_ < 0) {
        temporary_.clear();
    }
    return descriptor_ >= 0;
}

bool PendingFile::createBeside(const fs::path& path) {
    removeAbandoned(path);
    const std::string start =
        (folderOf(path) / temporaryStart(path)).string() + std::to_string(getpid());
    bool made = false;
    errno = EEXIST;
    for (int number = 0; !made && errno == EEXIST && number < kNumbers; ++number) {
        char ending[16];
        snprintf(ending, sizeof ending, "-%06d", number);
        made = create(start + ending, kOrdinaryMode);
    }
    return made;
}

bool PendingFile::write(std::span<const uint8_t> bytes, void (*beforeEach)()) {
    while (!bytes.empty()) {
        if (beforeEach != nullptr) {
            beforeEach();
        }
        const ssize_t written =
            ::write(descriptor_, bytes.data(), std::min(bytes.size(), kPieceBytes));
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes = bytes.subspan(written > 0 ? static_cast<size_t>(written) : 0);
    }
    return true;
}

bool PendingFile::finish() {
    return fsync(descriptor_) == 0 && close(std::exchange(descriptor_, -1)) == 0;
}

bool PendingFile::commit(const fs::path& path) {
    const fs::path folder = folderOf(path);  // takes memory, which has to be there before
    if (rename(temporary_.c_str(), path.c_str()) != 0) {
        return false;
    }
    temporary_.clear();
    syncFolder(folder);
    return true;
}

}  // namespace files
