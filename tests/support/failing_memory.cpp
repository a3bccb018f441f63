#include "support/failing_memory.h"

#include <dlfcn.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace {

constexpr long kNever = 0;

bool armed = false;
long failingCall = kNever;
bool lasting = false;
long calls = 0;
bool failed = false;
long inUse = 0;
int streamsToFailure = 0;

// Also when an exception ends what is acted.
struct Armed {
    Armed() { armed = true; }
    ~Armed() { armed = false; }
};

bool failsNow() {
    if (!armed || OwnMemory::alive > 0) {
        return false;
    }
    ++calls;
    const bool fails =
        failingCall != kNever && (calls == failingCall || (lasting && calls > failingCall));
    failed = failed || fails;
    return fails;
}

// Null when there is to be none. Alignments of 0 are malloc's own.
void* take(size_t size, size_t alignment) {
    if (failsNow()) {
        return nullptr;
    }
    void* block = nullptr;
    if (alignment == 0) {
        block = malloc(size == 0 ? 1 : size);
    } else if (posix_memalign(&block, alignment, size == 0 ? 1 : size) != 0) {
        block = nullptr;
    }
    inUse += block != nullptr ? 1 : 0;
    return block;
}

void* takeOrThrow(size_t size, size_t alignment) {
    void* block = take(size, alignment);
    if (block == nullptr) {
        throw std::bad_alloc();
    }
    return block;
}

void give(void* block) {
    inUse -= block != nullptr ? 1 : 0;
    free(block);
}

void run(long call, bool further, const std::function<void()>& act) {
    failingCall = call;
    lasting = further;
    calls = 0;
    failed = false;
    const Armed whileItActs;
    act();
}

}  // namespace

bool withFailingMemory(long call, Shortage shortage, const std::function<void()>& act) {
    run(call, shortage == Shortage::FROM_THEN_ON, act);
    return failed;
}

long memoryCalls(const std::function<void()>& act) {
    run(kNever, false, act);
    return calls;
}

long blocksInUse() {
    return inUse;
}

void failStream(int call) {
    streamsToFailure = call;
}

extern "C" FILE* fdopen(int descriptor, const char* mode) {
    if (streamsToFailure > 0 && --streamsToFailure == 0) {
        errno = ENOMEM;
        return nullptr;
    }
    using Function = FILE* (*)(int, const char*);
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, "fdopen"))(descriptor, mode);
}

void* operator new(size_t size) {
    return takeOrThrow(size, 0);
}
void* operator new[](size_t size) {
    return takeOrThrow(size, 0);
}
void* operator new(size_t size, std::align_val_t alignment) {
    return takeOrThrow(size, static_cast<size_t>(alignment));
}
void* operator new[](size_t size, std::align_val_t alignment) {
    return takeOrThrow(size, static_cast<size_t>(alignment));
}
void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return take(size, 0);
}
void* operator new[](size_t size, const std::nothrow_t&) noexcept {
    return take(size, 0);
}
void* operator new(size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return take(size, static_cast<size_t>(alignment));
}
void* operator new[](size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return take(size, static_cast<size_t>(alignment));
}

void operator delete(void* block) noexcept {
    give(block);
}
void operator delete[](void* block) noexcept {
    give(block);
}
void operator delete(void* block, size_t) noexcept {
    give(block);
}
void operator delete[](void* block, size_t) noexcept {
    give(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    give(block);
}
void operator delete[](void* block, std::align_val_t) noexcept {
    give(block);
}
void operator delete(void* block, size_t, std::align_val_t) noexcept {
    give(block);
}
void operator delete[](void* block, size_t, std::align_val_t) noexcept {
    give(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept {
    give(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept {
    give(block);
}
void operator delete(void* block, std::align_val_t, const std::nothrow_t&) noexcept {
    give(block);
}
void operator delete[](void* block, std::align_val_t, const std::nothrow_t&) noexcept {
    give(block);
}
