#include "tools/clip/atomic_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tools/clip/errors.h"
#include "tools/clip/interrupt.h"

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

// Removes the file on the way out unless it was renamed.
class TemporaryName {
public:
    explicit TemporaryName(std::string name) : name_(std::move(name)) {}
    ~TemporaryName() {
        if (!name_.empty()) {
            unlink(name_.c_str());
        }
    }
    TemporaryName(const TemporaryName&) = delete;
    TemporaryName& operator=(const TemporaryName&) = delete;

    const std::string& get() const { return name_; }
    void renameTo(const fs::path& path) {
        if (rename(name_.c_str(), path.c_str()) != 0) {
            fail("write", path);
        }
        name_.clear();
    }

private:
    std::string name_;
};

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

// Makes the new name itself last through a loss of power. Not every file system can.
void syncFolder(const fs::path& folder) {
    const OpenFile file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (file.get() >= 0) {
        fsync(file.get());
    }
}

}  // namespace

void writeWholeFile(const fs::path& path, std::span<const uint8_t> bytes) {
    if (fs::is_directory(path)) {
        throw ToolError("cannot write " + path.string() + ": it is a folder");
    }
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    std::string name = folder.string();
    name += "/.";
    name += path.filename().string();
    name += ".XXXXXX";
    OpenFile file(mkstemp(name.data()));
    if (file.get() < 0) {
        fail("write", path);
    }
    TemporaryName temporary(name);
    setOrdinaryMode(file.get());
    writePieces(file.get(), bytes, path);
    if (fsync(file.get()) != 0 || !file.close()) {
        fail("write", path);
    }
    stopIfInterrupted();
    temporary.renameTo(path);
    syncFolder(folder);
}

std::vector<uint8_t> readWholeFile(const fs::path& path) {
    if (fs::is_directory(path)) {
        throw ToolError("cannot read " + path.string() + ": it is a folder");
    }
    const OpenFile file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.get() < 0) {
        fail("read", path);
    }
    std::vector<uint8_t> bytes;
    size_t used = 0;
    for (;;) {
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
