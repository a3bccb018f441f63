#include "tools/base/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

#include "tools/base/errors.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr size_t kPieceBytes = size_t{1} << 20;

[[noreturn]] void fail(const char* action, const fs::path& path) {
    throw ToolError(std::string("cannot ") + action + " " + path.string() + ": " +
                    std::strerror(errno));
}

class OpenFile {
public:
    OpenFile(int descriptor) : descriptor_(descriptor) {}
    ~OpenFile() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    int get() const { return descriptor_; }

private:
    int descriptor_;
};

// The file that a link leads to is written, and the link stays. A folder cannot be replaced; a
// device or a pipe could, and would be gone.
fs::path targetOf(const fs::path& path) {
    if (path == "-") {
        throw ToolError("cannot write to -: name a file; it gets its name when it is whole");
    }
    std::error_code ignored;
    const fs::file_status status = fs::status(path, ignored);
    if (fs::is_directory(status)) {
        throw ToolError("cannot write " + path.string() + ": it is a folder");
    }
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw ToolError("cannot write " + path.string() + ": it is no ordinary file");
    }
    fs::path target = path;
    if (!files::followLinks(target)) {
        fail("write", path);
    }
    return target;
}

}  // namespace

PendingFile::PendingFile(const fs::path& path, std::span<const uint8_t> bytes) {
    if (!file_.createBeside(targetOf(path)) || !file_.write(bytes, stopIfInterrupted) ||
        !file_.finish()) {
        fail("write", path);
    }
}

void PendingFile::commit(const fs::path& path) {
    if (!file_.commit(targetOf(path))) {
        fail("write", path);
    }
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
    std::error_code ignored;
    fs::path folder = folderOf(targetOf(path));
    while (!folder.empty() && !fs::exists(folder, ignored)) {
        folder = folder.parent_path();
    }
    if (access(folder.empty() ? "." : folder.c_str(), W_OK | X_OK) != 0) {
        fail("write", path);
    }
}

void checkOutput(const fs::path& path) {
    const fs::path folder = folderOf(path);
    std::error_code ignored;
    if (!fs::is_directory(folder, ignored)) {
        throw ToolError("cannot write " + path.string() + ": no folder " + folder.string());
    }
    checkWritable(path);
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
