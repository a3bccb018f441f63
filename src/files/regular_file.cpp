#include "files/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

int openRegular(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return -1;
    }
    struct stat facts;
    if (fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        close(descriptor);
        errno = EINVAL;
        return -1;
    }
    return descriptor;
}

FILE* openRegularFile(const std::string& path) {
    const int descriptor = openRegular(path);
    if (descriptor < 0) {
        return nullptr;
    }
    FILE* file = fdopen(descriptor, "rb");
    if (file == nullptr) {
        close(descriptor);
        errno = ENOMEM;
    }
    return file;
}
