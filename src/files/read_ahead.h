#pragma once
// The bytes of a file on their way from a slow card before they are read.
//
// The kernel fetches them and keeps them; nothing is allocated, and nothing here waits for the
// card. Where the kernel does not tell what has come, as of files that belong to others, everything
// counts as having come.

#include <sys/types.h>

#include <string>

class ReadAhead {
public:
    // What is asked for behind the bytes that are needed: what a card of 10 MB/s brings in a frame,
    // and as much again for its pauses.
    static constexpr off_t kBehind = 768 * 1024;

    ReadAhead() = default;
    ~ReadAhead() { close(); }
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    // Of this file from now on. A file that cannot be opened has nothing to wait for.
    void open(const std::string& path);
    void close();
    bool isOpen() const { return file_ >= 0; }

    // Asks for the bytes from `from` to `end` and some behind them. Whether those up to `end` have
    // come, as far as the file has them.
    bool haveCome(off_t from, off_t end);

private:
    void ask(off_t end);

    int file_ = -1;
    off_t asked_ = 0;  // up to there
    off_t come_ = 0;   // likewise
};
