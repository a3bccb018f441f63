#include "tools/clip/base/atomic_file.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "tools/clip/base/errors.h"
#include "tools/clip/base/interrupt.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr size_t kPieceBytes = size_t{1} << 20;
// A temporary file: ".", the target's name, the mark, the writer's process number and a name part
// by chance.
constexpr const char* kMark = ".velmora-";
constexpr std::string_view kByChance = "-XXXXXX";

// The largest clip that there can be takes 240 MB; nothing else that is read whole comes near it.
constexpr size_t kMostBytesRead = size_t{256} << 20;

[[noreturn]] void fail(const char* action, const fs::path& path) {
    throw ToolError(std::string("cannot ") + action + " " + path.string() + ": " +
                    std::strerror(errno));
}

class OpenFile {
public:
    OpenFile(int descriptor) : descriptor_(descriptor) {}
    ~OpenFile() { close(); }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int get() const { return descriptor_; }
    bool close() {
        const int descriptor = descriptor_;
        descriptor_ = -1;
        return descriptor < 0 || ::close(descriptor) == 0;
    }

private:
    int descriptor_;
};

// A folder cannot be replaced; a device or a pipe could, and would be gone.
void checkReplaceable(const fs::path& path) {
    std::error_code ignored;
    const fs::file_status status = fs::status(path, ignored);
    if (fs::is_directory(status)) {
        throw ToolError("cannot write " + path.string() + ": it is a folder");
    }
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw ToolError("cannot write " + path.string() + ": it is no ordinary file");
    }
}

// mkstemp makes the file private; a clip is as readable as any file that the user makes.
void setOrdinaryMode(int descriptor) {
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(descriptor, 0666 & ~mask);
}

void writePieces(int descriptor, std::span<const uint8_t> bytes, const fs::path& path) {
    while (!bytes.empty()) {
        stopIfInterrupted();
        const ssize_t written =
            write(descriptor, bytes.data(), std::min(bytes.size(), kPieceBytes));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            fail("write", path);
        }
        bytes = bytes.subspan(static_cast<size_t>(written));
    }
}

std::string temporaryStart(const fs::path& path) {
    std::string start = ".";
    start += path.filename().string();
    return start += kMark;
}

// What stands behind temporaryStart() in the name of a file whose writer has ended.
bool isAbandoned(const std::string& rest) {
    const auto digit = [](unsigned char letter) { return std::isdigit(letter) != 0; };
    const auto end = std::find_if_not(rest.begin(), rest.end(), digit);
    if (end == rest.begin() || end - rest.begin() > std::numeric_limits<pid_t>::digits10 ||
        static_cast<size_t>(rest.end() - end) != kByChance.size() || *end != kByChance[0]) {
        return false;
    }
    const auto writer = static_cast<pid_t>(std::stol(rest));
    return kill(writer, 0) != 0 && errno == ESRCH;
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

// Makes the new name itself last through a loss of power. Not every file system can.
void syncFolder(const fs::path& folder) {
    const OpenFile file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (file.get() >= 0) {
        fsync(file.get());
    }
}

}  // namespace

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

PendingFile::PendingFile(const fs::path& path, std::span<const uint8_t> bytes) {
    checkReplaceable(path);
    removeAbandoned(path);
    std::string name = (folderOf(path) / temporaryStart(path)).string();
    name += std::to_string(getpid());
    name += kByChance;
    OpenFile file(mkstemp(name.data()));
    if (file.get() < 0) {
        fail("write", path);
    }
    try {
        setOrdinaryMode(file.get());
        writePieces(file.get(), bytes, path);
        if (fsync(file.get()) != 0 || !file.close()) {
            fail("write", path);
        }
    } catch (...) {
        unlink(name.c_str());
        throw;
    }
    temporary_ = name;
}

PendingFile::PendingFile(PendingFile&& other) noexcept
    : temporary_(std::exchange(other.temporary_, {})) {}

PendingFile::~PendingFile() {
    if (!temporary_.empty()) {
        unlink(temporary_.c_str());
    }
}

void PendingFile::commit(const fs::path& path) {
    if (rename(temporary_.c_str(), path.c_str()) != 0) {
        fail("write", path);
    }
    temporary_.clear();
    syncFolder(folderOf(path));
}

FolderInMaking::FolderInMaking(const fs::path& folder) {
    std::vector<fs::path> missing;
    std::error_code error;
    for (fs::path at = folder; !at.empty() && !fs::exists(at, error); at = at.parent_path()) {
        missing.push_back(at);
    }
    for (; !missing.empty(); missing.pop_back()) {
        if (fs::create_directory(missing.back(), error)) {
            made_.push_back(missing.back());
        }
    }
    if (!fs::is_directory(folder)) {
        const std::string reason = error ? error.message() : "a file of that name is there";
        throw ToolError("cannot make the folder " + folder.string() + ": " + reason);
    }
}

FolderInMaking::~FolderInMaking() {
    for (auto folder = made_.rbegin(); folder != made_.rend(); ++folder) {
        rmdir(folder->c_str());
    }
}

void checkWritable(const fs::path& path) {
    checkReplaceable(path);
    std::error_code ignored;
    fs::path folder = folderOf(path);
    while (!folder.empty() && !fs::exists(folder, ignored)) {
        folder = folder.parent_path();
    }
    if (access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) != 0) {
        fail("write", path);
    }
}

void writeWholeFile(const fs::path& path, std::span<const uint8_t> bytes) {
    PendingFile file(path, bytes);
    stopIfInterrupted();
    file.commit(path);
}

std::vector<uint8_t> readWholeFile(const fs::path& path) {
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) {
        throw ToolError("cannot read " + path.string() + ": it is a folder");
    }
    const OpenFile file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.get() < 0) {
        stopIfInterrupted();
        fail("read", path);
    }
    struct stat facts {};
    const bool known = fstat(file.get(), &facts) == 0;
    std::vector<uint8_t> bytes;
    size_t used = 0;
    for (;;) {
        stopIfInterrupted();
        if (used > kMostBytesRead || (known && facts.st_size > off_t{kMostBytesRead})) {
            throw ToolError("cannot read " + path.string() + ": it is larger than any clip");
        }
        bytes.resize(used + kPieceBytes);
        const ssize_t got = read(file.get(), bytes.data() + used, kPieceBytes);
        if (got < 0 && errno != EINTR) {
            fail("read", path);
        }
        if (got == 0) {
            break;
        }
        used += got > 0 ? static_cast<size_t>(got) : 0;
    }
    bytes.resize(used);
    return bytes;
}

}  // namespace maker
