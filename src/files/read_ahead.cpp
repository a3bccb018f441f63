#include "files/read_ahead.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include "files/regular_file.h"

namespace {

constexpr off_t kPage = 4096;  // the smallest that there is
// The kernel may leave out what is past its own read-ahead, which is this much.
constexpr off_t kAsk = 128 * 1024;

// Up to kAsk bytes.
bool pieceHasCome(int file, off_t from, off_t bytes) {
    const auto length = static_cast<size_t>(bytes);
    void* const mapped = mmap(nullptr, length, PROT_NONE, MAP_SHARED, file, from);
    if (mapped == MAP_FAILED) {
        return true;
    }
    std::array<unsigned char, kAsk / kPage> pages;
    pages.fill(1);
    mincore(mapped, length, pages.data());
    munmap(mapped, length);
    return std::all_of(pages.begin(), pages.end(), [](int page) { return (page & 1) != 0; });
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
    come_ = std::max(come_, from / kAsk * kAsk);
    asked_ = std::max(asked_, from / kAsk * kAsk);
    ask(std::min(end + kBehind, facts.st_size));
    end = std::min(end, facts.st_size);
    for (off_t piece = come_; piece < end; piece += kAsk) {
        if (!pieceHasCome(file_, piece, std::min(kAsk, end - piece))) {
            // Asked for anew by the next call: the kernel may have dropped it.
            asked_ = piece;
            return false;
        }
        // One that is needed in part is looked at again.
        come_ = piece + kAsk <= end ? piece + kAsk : come_;
    }
    return true;
}
