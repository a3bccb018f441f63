#include "files/read_ahead.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "files/regular_file.h"

namespace {

constexpr off_t kPage = 4096;
// The kernel may leave out what is past its own read-ahead, which is this much.
constexpr off_t kAsk = 128 * 1024;

// True at the file's end as well, and where a read would fail: that is for who reads.
bool pageHasCome(int file, off_t at) {
    uint8_t byte;
    iovec part = {&byte, 1};
    return preadv2(file, &part, 1, at, RWF_NOWAIT) >= 0 || errno != EAGAIN;
}

}  // namespace

void ReadAhead::open(const std::string& path) {
    close();
    file_ = openRegular(path);
    asked_ = 0;
    come_ = 0;
}

void ReadAhead::close() {
    if (isOpen()) {
        ::close(file_);
        file_ = -1;
    }
}

void ReadAhead::ask(off_t end) {
    for (; asked_ < end; asked_ += kAsk) {
        posix_fadvise(file_, asked_, kAsk, POSIX_FADV_WILLNEED);
    }
}

bool ReadAhead::haveCome(off_t from, off_t end) {
    struct stat facts;
    if (!isOpen() || fstat(file_, &facts) != 0) {
        return true;
    }
    come_ = std::max(come_, from / kPage * kPage);
    asked_ = std::max(asked_, from / kAsk * kAsk);
    ask(std::min(end + kBehind, facts.st_size));
    end = std::min(end, facts.st_size);
    for (; come_ < end; come_ += kPage) {
        if (!pageHasCome(file_, come_)) {
            // Asked for anew by the next call: the kernel may have dropped it.
            asked_ = come_ / kAsk * kAsk;
            return false;
        }
    }
    return true;
}
