#include "tools/record/score_writer.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>

#include "tools/base/errors.h"

namespace maker {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kPipeBytes = 1 << 20;            // many minutes of playing
constexpr std::chrono::seconds kFlushEach(5);  // what a power cut may take along

// False when not all of it could be written.
bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(written > 0 ? static_cast<size_t>(written) : 0);
    }
    return true;
}

// What stands behind the last line that is whole is no event.
void endAtLine(int file, off_t size) {
    char byte = 0;
    while (size > 0 && pread(file, &byte, 1, size - 1) == 1 && byte != '\n') {
        --size;
    }
    if (ftruncate(file, size) != 0) {
        return;  // a broken last line is all that this leaves
    }
}

// Ends when the player's end of the pipe is closed, by itself or by the player's end.
[[noreturn]] void writeUntilClosed(int from, int file, const char* path) {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE, SIGXFSZ}) {
        std::signal(signal, SIG_IGN);  // the player's end is heard
    }
    std::array<char, 1 << 16> bytes{};
    bool full = false;
    Clock::time_point flushed = Clock::now();
    while (true) {
        const ssize_t got = read(from, bytes.data(), bytes.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            break;
        }
        if (!full && !writeAll(file, {bytes.data(), static_cast<size_t>(got)})) {
            full = true;
            std::fprintf(stderr, "velmora-record: %s ends here, the show goes on: %s\n", path,
                         std::strerror(errno));
            endAtLine(file, lseek(file, 0, SEEK_END));
        }
        if (Clock::now() - flushed >= kFlushEach) {
            fdatasync(file);
            flushed = Clock::now();
        }
    }
    const bool kept = fsync(file) == 0 && close(file) == 0;
    _exit(full || !kept ? 1 : 0);
}

}  // namespace

ScoreWriter::ScoreWriter(const std::string& path) : path_(path) {
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file < 0) {
        throw ToolError("cannot make " + path + ": " + std::strerror(errno));
    }
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw ToolError("cannot make a pipe");
    }
    fcntl(ends[1], F_SETPIPE_SZ, kPipeBytes);
    fcntl(ends[1], F_SETFL, O_NONBLOCK);
    std::fflush(stdout);
    writer_ = fork();
    if (writer_ == 0) {
        close(ends[1]);
        writeUntilClosed(ends[0], file, path.c_str());
    }
    close(ends[0]);
    close(file);
    line_ = ends[1];
    if (writer_ < 0) {
        throw ToolError("cannot start another process");
    }
}

ScoreWriter::~ScoreWriter() {
    finish();
}

void ScoreWriter::write(std::string_view lines) {
    if (!whole_) {
        return;
    }
    const ssize_t written = ::write(line_, lines.data(), lines.size());
    if (written != static_cast<ssize_t>(lines.size())) {
        whole_ = false;
        std::fputs("velmora-record: the score ends here, the show goes on\n", stderr);
    }
}

bool ScoreWriter::finish() {
    if (line_ >= 0) {
        close(std::exchange(line_, -1));
        int status = 0;
        while (waitpid(writer_, &status, 0) < 0 && errno == EINTR) {
        }
        whole_ = whole_ && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }
    return whole_;
}

void ScoreWriter::discard() {
    finish();
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

}  // namespace maker
