#pragma once
// A stream over bytes in memory that counts how many characters are asked for. Past the end the
// source answers with an error instead of an end of file: the C library would remember an end and
// no longer ask, and what the reader sees is EOF in both cases.

#include <cstdio>
#include <string>
#include <utility>

class CountedStream {
public:
    explicit CountedStream(std::string bytes) : bytes_(std::move(bytes)) {
        cookie_io_functions_t functions = {};
        functions.read = readOne;
        stream_ = fopencookie(this, "r", functions);
        setvbuf(stream_, nullptr, _IONBF, 0);
    }
    ~CountedStream() { fclose(stream_); }
    CountedStream(const CountedStream&) = delete;
    CountedStream& operator=(const CountedStream&) = delete;

    FILE* file() { return stream_; }
    size_t position() const { return position_; }  // bytes consumed
    size_t reads() const { return reads_; }        // characters asked for, past the end too

private:
    static ssize_t readOne(void* cookie, char* buffer, size_t) {
        auto& self = *static_cast<CountedStream*>(cookie);
        ++self.reads_;
        if (self.position_ == self.bytes_.size()) {
            return -1;
        }
        *buffer = self.bytes_[self.position_++];
        return 1;
    }

    std::string bytes_;
    size_t position_ = 0;
    size_t reads_ = 0;
    FILE* stream_;
};
