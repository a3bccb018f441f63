#include "files/userfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>

#include "common/limits.h"
#include "files/pending_file.h"
#include "files/regular_file.h"
#include "files/xmlscan.h"

namespace fs = std::filesystem;

namespace {

constexpr mode_t kFolderMode = 0777;
constexpr mode_t kNewFileMode = 0666;  // less what the user's mask takes away
constexpr mode_t kPrivateMode = 0600;
constexpr mode_t kRights = 0777;
constexpr size_t kPieceBytes = size_t{1} << 19;

// The longest of the files is the playlists': the start, then what is read of each playlist with
// its name and its tracks.
constexpr size_t kMostBytes =
    xml::kDeclarationChars + 1 + xml::kMotBudget +
    kPlaylists * (xml::kMotBudget + (1 + kTracksRead) * 2 * xml::kNoeudBudget);

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
bool writeAs(files::PendingFile& file, const std::string& content, const struct stat* old) {
    if (old != nullptr) {
        keepOwnerAndMode(file.descriptor(), *old);
    }
    return file.write({reinterpret_cast<const uint8_t*>(content.data()), content.size()}) &&
           file.finish();
}

bool readToTheEnd(int descriptor, size_t most, std::string& bytes) {
    size_t filled = 0;
    while (filled < most) {
        bytes.resize(std::min(most, filled + kPieceBytes));
        const ssize_t got = read(descriptor, bytes.data() + filled, bytes.size() - filled);
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

}  // namespace

std::string workingDirectory() {
    char buffer[PATH_MAX];
    return getcwd(buffer, sizeof buffer) != nullptr ? buffer : "";
}

std::optional<std::string> readRegular(const std::string& path, size_t most) {
    const int descriptor = openRegular(path);
    if (descriptor < 0) {
        return std::nullopt;
    }
    std::string bytes;
    const bool whole = readToTheEnd(descriptor, most, bytes);
    const int reason = errno;
    close(descriptor);
    errno = reason;
    return whole ? std::optional(std::move(bytes)) : std::nullopt;
}

bool replaceFile(const std::string& path, const std::string& content) {
    mkdir(files::folderOf(path).c_str(), kFolderMode);
    fs::path target = path;
    if (!files::followLinks(target)) {
        return false;
    }
    struct stat facts;
    const bool there = stat(target.c_str(), &facts) == 0;
    if (there ? !S_ISREG(facts.st_mode) : errno != ENOENT) {
        return false;
    }
    const std::string temporary = target.string() + ".tmp";
    // What a power cut left has rights of its own.
    unlink(temporary.c_str());
    files::PendingFile file;
    return file.create(temporary, there ? kPrivateMode : kNewFileMode) &&
           writeAs(file, content, there ? &facts : nullptr) && file.commit(target);
}

std::optional<std::string> UserFile::read(const std::string& path) {
    std::optional<std::string> bytes = readRegular(path, kMostBytes);
    unreadable_ = unreadable_ || (!bytes && errno != ENOENT);
    return bytes;
}

bool UserFile::replace(const std::string& path, const std::string& content) const {
    return !unreadable_ && replaceFile(path, content);
}
