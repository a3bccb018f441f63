#pragma once
// What the fuzz targets share: an input read from its front, a check that a fuzzer notices, and
// files in memory for code that wants a path or a stream.
//
// An input that is used up goes on with zero bytes, so every input means something.

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>

namespace fuzz {

class Input {
public:
    Input(const uint8_t* data, size_t size) : bytes_(data, size) {}

    bool empty() const { return bytes_.empty(); }
    std::span<const uint8_t> rest() const { return bytes_; }

    uint8_t byte() {
        if (bytes_.empty()) {
            return 0;
        }
        const uint8_t value = bytes_.front();
        bytes_ = bytes_.subspan(1);
        return value;
    }
    uint16_t word() {
        const unsigned low = byte();
        return static_cast<uint16_t>(low | unsigned{byte()} << 8);
    }
    // 0 to limit - 1; limit at most 256
    int below(int limit) { return byte() % limit; }

    // Up to `count` bytes into `out`, the others zero; only `skip` of them are used up.
    void peek(uint8_t* out, size_t count) const {
        const size_t got = std::min(count, bytes_.size());
        std::copy_n(bytes_.begin(), got, out);
        std::fill_n(out + got, count - got, uint8_t{0});
    }
    void skip(size_t count) { bytes_ = bytes_.subspan(std::min(count, bytes_.size())); }

private:
    std::span<const uint8_t> bytes_;
};

inline void require(bool holds, const char* what) {
    if (!holds) {
        fprintf(stderr, "does not hold: %s\n", what);
        abort();
    }
}

// The program tells on standard output which clip it opens; a fuzzer opens too many.
inline void silenceOutput() {
    require(freopen("/dev/null", "w", stdout) != nullptr, "/dev/null can be opened");
}

// A regular file that is on no disk. Whoever opens path() reads what write() wrote last.
class MemoryFile {
public:
    MemoryFile() : descriptor_(memfd_create("input", MFD_CLOEXEC)) {
        require(descriptor_ >= 0, "there are files in memory");
        path_ = "/proc/self/fd/" + std::to_string(descriptor_);
    }
    ~MemoryFile() { close(descriptor_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    void write(const void* data, size_t size) {
        require(pwrite(descriptor_, data, size, 0) == static_cast<ssize_t>(size) &&
                    (size == size_ || ftruncate(descriptor_, static_cast<off_t>(size)) == 0),
                "the file in memory can be written");
        size_ = size;
    }
    const std::string& path() const { return path_; }

private:
    int descriptor_;
    size_t size_ = 0;
    std::string path_;
};

struct CloseStream {
    void operator()(FILE* stream) const { fclose(stream); }
};
using Stream = std::unique_ptr<FILE, CloseStream>;

inline Stream openStream(std::span<const uint8_t> bytes) {
    FILE* stream = fmemopen(const_cast<uint8_t*>(bytes.data()), bytes.size(), "rb");
    require(stream != nullptr, "memory can be opened as a stream");
    return Stream(stream);
}

}  // namespace fuzz
