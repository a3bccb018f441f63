#pragma once
// A double of a slow card below the loader: 10 MB/s and 2 ms a request, one request after the
// other, and a page cache that is empty at first.
//
// A program that links slow_card reads through it. Its clock stands still
// but for pass() and for reads that have to wait, so nothing depends on how busy the machine is.
// Like the kernel it keeps 128 KB ahead of who reads on, and one posix_fadvise() brings no more
// than that.

#include <string>

namespace slow_card {

inline constexpr long kRequestBytes = 128 * 1024;  // the longest

// The folder's files are on it from now on, with nothing of them in memory; the clock is at 0.
void insert(const std::string& folder);
void remove();
void fail();  // from now on nothing that is asked for ahead comes
void pass(double ms);

struct Facts {
    int waits;       // reads that waited for the card
    double waited;   // ms in all
    double longest;  // ms of one read
    long requests;   // that the card was given
    double clock;    // ms since insert()
};
Facts facts();

}  // namespace slow_card
