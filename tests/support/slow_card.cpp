#include "tests/support/slow_card.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <set>
#include <utility>

namespace {

constexpr double kRequestMs = 2;
constexpr double kBytesPerMs = 10'000;
constexpr long kPage = 4096;

struct Mapped {
    void* at;
    ino_t file;
    long from;
};

struct Card {
    std::set<ino_t> files = {};
    bool failing = false;
    double freeAt = 0;                               // when its queue is empty
    std::map<std::pair<ino_t, long>, double> pages;  // when each has come, or will have
    std::map<ino_t, std::pair<long, long>> windows;  // asked for last for who reads on
    Mapped mapped = {};                              // last
    slow_card::Facts facts = {};
};
Card card;

struct File {
    ino_t number;
    long size;
};

File fileOf(int descriptor) {
    struct stat found = {};
    fstat(descriptor, &found);
    return {found.st_ino, static_cast<long>(found.st_size)};
}

bool isOnCard(int descriptor) {
    return !card.files.empty() && card.files.count(fileOf(descriptor).number) != 0;
}

// A request for each gap in what is there or on its way.
void request(const File& file, long from, long end) {
    end = std::min(end, file.size);
    long gap = from / kPage * kPage;
    while (gap < end) {
        long stop = gap;
        while (stop < end && card.pages.count({file.number, stop / kPage}) == 0) {
            stop += kPage;
        }
        if (stop > gap) {
            card.freeAt = std::max(card.freeAt, card.facts.clock) + kRequestMs +
                          static_cast<double>(stop - gap) / kBytesPerMs;
            ++card.facts.requests;
            for (long at = gap; at < stop; at += kPage) {
                card.pages[{file.number, at / kPage}] = card.freeAt;
            }
        }
        gap = stop + kPage;
    }
}

void waitUntil(double ready) {
    const double wait = ready - card.facts.clock;
    if (wait > 0) {
        ++card.facts.waits;
        card.facts.waited += wait;
        card.facts.longest = std::max(card.facts.longest, wait);
        card.facts.clock = ready;
    }
}

// Who reads on has the next window asked for as soon as the last one is touched.
void read(const File& file, long from, long end) {
    auto& [start, stop] = card.windows[file.number];
    for (long at = from / kPage * kPage; at < std::min(end, file.size); at += kPage) {
        if (card.pages.count({file.number, at / kPage}) == 0) {
            start = at;
            stop = at + slow_card::kRequestBytes;
            request(file, start, stop);
        }
        if (at >= start && at < stop) {
            start = stop;
            stop += slow_card::kRequestBytes;
            request(file, start, stop);
        }
        waitUntil(card.pages[{file.number, at / kPage}]);
    }
}

}  // namespace

namespace slow_card {

void insert(const std::string& folder) {
    card = {};
    for (const auto& each : std::filesystem::directory_iterator(folder)) {
        struct stat found = {};
        stat(each.path().c_str(), &found);
        card.files.insert(found.st_ino);
    }
}

void remove() {
    card = {};
}

void fail() {
    card.failing = true;
}

void pass(double ms) {
    card.facts.clock += ms;
}

Facts facts() {
    return card.facts;
}

}  // namespace slow_card

extern "C" {
size_t __real_fread(void* bytes, size_t size, size_t count, FILE* file);
int __real_posix_fadvise(int descriptor, off_t from, off_t length, int advice);
int __real_mincore(void* mapped, size_t length, unsigned char* pages);
void* __real_mmap(void* wish, size_t length, int access, int flags, int descriptor, off_t from);

size_t __wrap_fread(void* bytes, size_t size, size_t count, FILE* file) {
    if (isOnCard(fileno(file))) {
        const long from = ftell(file);
        read(fileOf(fileno(file)), from, from + static_cast<long>(size * count));
    }
    return __real_fread(bytes, size, count, file);
}

int __wrap_posix_fadvise(int descriptor, off_t from, off_t length, int advice) {
    if (!isOnCard(descriptor) || advice != POSIX_FADV_WILLNEED) {
        return __real_posix_fadvise(descriptor, from, length, advice);
    }
    if (!card.failing) {
        request(fileOf(descriptor), from, from + std::min(length, slow_card::kRequestBytes));
    }
    return 0;
}

void* __wrap_mmap(void* wish, size_t length, int access, int flags, int descriptor, off_t from) {
    void* const mapped = __real_mmap(wish, length, access, flags, descriptor, from);
    if (isOnCard(descriptor)) {
        card.mapped = {mapped, fileOf(descriptor).number, from};
    }
    return mapped;
}

int __wrap_mincore(void* mapped, size_t length, unsigned char* pages) {
    const int told = __real_mincore(mapped, length, pages);
    if (mapped != card.mapped.at) {
        return told;
    }
    for (size_t page = 0; page * kPage < length; ++page) {
        const auto found =
            card.pages.find({card.mapped.file, card.mapped.from / kPage + static_cast<long>(page)});
        pages[page] = found != card.pages.end() && found->second <= card.facts.clock;
    }
    return told;
}
}
