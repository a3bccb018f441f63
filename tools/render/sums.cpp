#include "tools/render/sums.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <memory>

extern "C" {
#include <libavutil/mem.h>
#include <libavutil/murmur3.h>
}

#include "tools/base/errors.h"

namespace maker {

namespace {

struct FreeMemory {
    void operator()(void* memory) const { av_free(memory); }
};

// A score that is played by a child; its sums come one after the other.
class Performance {
public:
    Performance(const Score& score, const DiffSettings& settings);
    ~Performance();
    Performance(const Performance&) = delete;
    Performance& operator=(const Performance&) = delete;

    // None at the end. Throws ToolError when the child has failed, which has said why.
    std::optional<uint64_t> next();

private:
    [[noreturn]] static void perform(const Score& score, const DiffSettings& settings, int to);

    pid_t child_ = -1;
    int from_ = -1;
};

Performance::Performance(const Score& score, const DiffSettings& settings) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw ToolError("cannot make a pipe");
    }
    std::fflush(stdout);
    child_ = fork();
    if (child_ == 0) {
        perform(score, settings, ends[1]);
    }
    close(ends[1]);
    from_ = ends[0];
    if (child_ < 0) {
        throw ToolError("cannot start another process");
    }
}

Performance::~Performance() {
    close(from_);
    if (child_ > 0) {
        kill(child_, SIGTERM);
        while (waitpid(child_, nullptr, 0) < 0 && errno == EINTR) {
        }
    }
}

void Performance::perform(const Score& score, const DiffSettings& settings, int to) {
    int status = 0;
    try {
        play(score, {settings.folder, settings.interface, [&](int, const StagePicture& picture) {
                         const uint64_t sum = sumOf(picture);
                         return write(to, &sum, sizeof sum) == sizeof sum;
                     }});
    } catch (const Interrupted&) {
        status = 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "velmora-render: %s\n", lineOf(error));
        status = 1;
    }
    _exit(status);
}

std::optional<uint64_t> Performance::next() {
    uint64_t sum = 0;
    size_t read = 0;
    while (read < sizeof sum) {
        const ssize_t got = ::read(from_, reinterpret_cast<char*>(&sum) + read, sizeof sum - read);
        stopIfInterrupted();
        if (got == 0) {
            break;
        }
        read += got > 0 ? static_cast<size_t>(got) : 0;
    }
    if (read == sizeof sum) {
        return sum;
    }
    int status = 0;
    while (waitpid(child_, &status, 0) < 0 && errno == EINTR) {
    }
    child_ = -1;
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        throw ToolError("a score could not be played to its end");
    }
    return std::nullopt;
}

}  // namespace

uint64_t sumOf(const StagePicture& picture) {
    const std::unique_ptr<AVMurMur3, FreeMemory> sum(av_murmur3_alloc());
    if (sum == nullptr) {
        throw std::bad_alloc();
    }
    av_murmur3_init(sum.get());
    for (int y = 0; y < picture.height; ++y) {
        const uint16_t* const row = picture.pixels + static_cast<ptrdiff_t>(y) * picture.pitch;
        av_murmur3_update(sum.get(), reinterpret_cast<const uint8_t*>(row),
                          static_cast<size_t>(picture.width) * sizeof *row);
    }
    std::array<uint8_t, 16> bytes{};
    av_murmur3_final(sum.get(), bytes.data());
    uint64_t value = 0;
    for (size_t i = 0; i < sizeof value; ++i) {
        value = value << 8 | bytes[i];
    }
    return value;
}

std::optional<int> firstDifference(const Score& one, const Score& other,
                                   const DiffSettings& settings) {
    Performance first(one, settings);
    Performance second(other, settings);
    for (int frame = 0;; ++frame) {
        const std::optional<uint64_t> left = first.next();
        const std::optional<uint64_t> right = second.next();
        if (left != right) {
            return frame;
        }
        if (!left) {
            return std::nullopt;
        }
    }
}

}  // namespace maker
