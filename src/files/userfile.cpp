#include "files/userfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "common/limits.h"
#include "files/xmlscan.h"

namespace {

constexpr mode_t kFolderMode = 0777;
constexpr mode_t kNewFileMode = 0666;  // less what the user's mask takes away
constexpr mode_t kPrivateMode = 0600;
constexpr mode_t kRights = 0777;
constexpr int kMostLinks = 40;  // one behind the other, as many as the system itself follows

// The longest of the files is the playlists': the start, then what is read of each playlist with
// its name and its tracks.
constexpr size_t kMostBytes =
    xml::kDeclarationChars + 1 + xml::kMotBudget +
    kPlaylists * (xml::kMotBudget + (1 + kTracksRead) * 2 * xml::kNoeudBudget);

std::string folderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash);
}

// The file that links lead to, whether it is there or not. False when they lead round or cannot be
// followed.
bool followLinks(std::string& path) {
    char target[PATH_MAX];
    for (int links = 0; links <= kMostLinks; ++links) {
        const ssize_t length = readlink(path.c_str(), target, sizeof target);
        if (length < 0) {
            return errno == EINVAL || errno == ENOENT;
        }
        const std::string next(target, static_cast<size_t>(length));
        path = next.starts_with('/') ? next : folderOf(path) + "/" + next;
    }
    return false;
}

// The new file is private up to here. Where the old one's group cannot be kept, another group and
// all others get only what both had.
void keepOwnerAndMode(int descriptor, const struct stat& old) {
    mode_t mode = old.st_mode & kRights;
    if (fchown(descriptor, old.st_uid, old.st_gid) != 0 &&
        fchown(descriptor, static_cast<uid_t>(-1), old.st_gid) != 0) {
        const mode_t shared = (mode >> 3) & mode & 07;
        mode = (mode & 0700) | shared << 3 | shared;
    }
    fchmod(descriptor, mode);
}

// `old` is null for a file that is not there yet.
bool writeDurably(const std::string& path, const std::string& content, const struct stat* old) {
    // What a power cut left has rights of its own.
    unlink(path.c_str());
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                                old != nullptr ? kPrivateMode : kNewFileMode);
    if (descriptor < 0) {
        return false;
    }
    if (old != nullptr) {
        keepOwnerAndMode(descriptor, *old);
    }
    FILE* file = fdopen(descriptor, "wb");
    if (file == nullptr) {
        close(descriptor);
        return false;
    }
    bool written = fwrite(content.data(), 1, content.size(), file) == content.size();
    written = fflush(file) == 0 && written;
    written = fsync(descriptor) == 0 && written;
    return fclose(file) == 0 && written;
}

// Makes the rename itself survive a power cut.
void syncFolder(const std::string& folder) {
    const int handle = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle >= 0) {
        fsync(handle);
        close(handle);
    }
}

bool readToTheEnd(int descriptor, std::string& bytes) {
    bytes.resize(kMostBytes);
    size_t filled = 0;
    while (filled < kMostBytes) {
        const ssize_t got = read(descriptor, bytes.data() + filled, kMostBytes - filled);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return false;
        }
        if (got == 0) {
            break;
        }
        filled += static_cast<size_t>(got);
    }
    bytes.resize(filled);
    return true;
}

// False also for what is no regular file: a pipe would hold the program up for good.
bool readRegularFile(int descriptor, std::string& bytes) {
    struct stat facts;
    return fstat(descriptor, &facts) == 0 && S_ISREG(facts.st_mode) &&
           readToTheEnd(descriptor, bytes);
}

// A stream with memory of its own, which must have room for one byte at least.
FILE* streamOf(const std::string& bytes) {
    FILE* stream = fmemopen(nullptr, bytes.size() + 1, "w+");
    if (stream == nullptr) {
        return nullptr;
    }
    if (fwrite(bytes.data(), 1, bytes.size(), stream) != bytes.size() ||
        fseek(stream, 0, SEEK_SET) != 0) {
        fclose(stream);
        return nullptr;
    }
    return stream;
}

}  // namespace

bool replaceFile(const std::string& path, const std::string& content) {
    mkdir(folderOf(path).c_str(), kFolderMode);
    std::string target = path;
    if (!followLinks(target)) {
        return false;
    }
    struct stat facts;
    const bool there = stat(target.c_str(), &facts) == 0;
    if (there ? !S_ISREG(facts.st_mode) : errno != ENOENT) {
        return false;
    }
    const std::string folder = folderOf(target);
    const std::string temporary = target + ".tmp";
    if (!writeDurably(temporary, content, there ? &facts : nullptr) ||
        rename(temporary.c_str(), target.c_str()) != 0) {
        unlink(temporary.c_str());
        return false;
    }
    syncFolder(folder);
    return true;
}

FILE* UserFile::open(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        unreadable_ = unreadable_ || errno != ENOENT;
        return nullptr;
    }
    std::string bytes;
    const bool read = readRegularFile(descriptor, bytes);
    close(descriptor);
    FILE* stream = read ? streamOf(bytes) : nullptr;
    unreadable_ = unreadable_ || stream == nullptr;
    return stream;
}

bool UserFile::replace(const std::string& path, const std::string& content) const {
    return !unreadable_ && replaceFile(path, content);
}
