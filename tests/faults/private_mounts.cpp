#include "faults/private_mounts.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <vector>

namespace faults {

namespace {

constexpr const char* kBallast = "/ballast";
constexpr size_t kPieceBytes = size_t{1} << 16;

std::string failure(const std::string& what) {
    return what + ": " + strerror(errno);
}

bool writeText(const char* path, const std::string& text) {
    const int file = open(path, O_WRONLY | O_CLOEXEC);
    if (file < 0) {
        return false;
    }
    const bool written = write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return close(file) == 0 && written;
}

// The user stays the same, under the name of root.
bool mapToRoot(uid_t user, gid_t group) {
    return writeText("/proc/self/setgroups", "deny") &&
           writeText("/proc/self/uid_map", "0 " + std::to_string(user) + " 1") &&
           writeText("/proc/self/gid_map", "0 " + std::to_string(group) + " 1");
}

}  // namespace

std::string enterPrivateMounts() {
    static bool entered = false;
    if (entered) {
        return "";
    }
    const uid_t user = geteuid();
    const gid_t group = getegid();
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return failure("no namespaces of its own");
    }
    if (!mapToRoot(user, group)) {
        return failure("no user of its own in the namespace");
    }
    if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        return failure("no mounts of its own");
    }
    entered = true;
    return "";
}

SmallDisk::SmallDisk(const std::string& folder, const std::string& size) : folder_(folder) {
    const std::string options = "size=" + size;
    if (mount("faults", folder.c_str(), "tmpfs", 0, options.c_str()) != 0) {
        throw std::runtime_error(failure("no file system on " + folder));
    }
}

SmallDisk::~SmallDisk() {
    umount2(folder_.c_str(), MNT_DETACH);
}

void SmallDisk::fill() {
    const std::vector<char> piece(kPieceBytes, 'b');
    const int file = open((folder_ + kBallast).c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
    while (write(file, piece.data(), piece.size()) > 0) {
    }
    close(file);
}

void SmallDisk::makeRoom() {
    unlink((folder_ + kBallast).c_str());
}

void SmallDisk::setReadOnly(bool readOnly) {
    const unsigned long flags = MS_REMOUNT | (readOnly ? MS_RDONLY : 0);
    if (mount("faults", folder_.c_str(), "tmpfs", flags, nullptr) != 0) {
        throw std::runtime_error(failure("cannot mount again " + folder_));
    }
}

}  // namespace faults
