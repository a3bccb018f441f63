#include "tools/clip/jobs/folder_hold.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tools/base/errors.h"

namespace maker {

FolderHold::FolderHold(const std::filesystem::path& folder)
    : descriptor_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (descriptor_ < 0) {
        throw ToolError("cannot read " + folder.string() + ": " + std::strerror(errno));
    }
    if (flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        close(descriptor_);
        throw ToolError("another import into " + folder.string() + " is at work");
    }
}

FolderHold::~FolderHold() {
    close(descriptor_);
}

}  // namespace maker
