#include "playlists/userfile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

namespace {

constexpr mode_t kFolderMode = 0777;

std::string folderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? "." : path.substr(0, slash);
}

bool writeDurably(const std::string& path, const std::string& content) {
    FILE* file = fopen(path.c_str(), "wb");
    if (file == nullptr) {
        return false;
    }
    bool written = fwrite(content.data(), 1, content.size(), file) == content.size();
    written = fflush(file) == 0 && written;
    written = fsync(fileno(file)) == 0 && written;
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

}  // namespace

bool replaceFile(const std::string& path, const std::string& content) {
    const std::string folder = folderOf(path);
    const std::string temporary = path + ".tmp";
    mkdir(folder.c_str(), kFolderMode);
    if (!writeDurably(temporary, content) || rename(temporary.c_str(), path.c_str()) != 0) {
        unlink(temporary.c_str());
        return false;
    }
    syncFolder(folder);
    return true;
}
