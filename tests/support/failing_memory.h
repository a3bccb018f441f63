#pragma once
// Memory that cannot be had: every form of `new` of the test program goes through here, and the
// n-th call from a moment on fails, alone or with all that follow it. Link failing_memory.cpp. For
// programs of one thread.

#include <functional>

// While one lives, memory is the test double's own: it is there and counts nowhere.
class OwnMemory {
public:
    OwnMemory() { ++alive; }
    ~OwnMemory() { --alive; }
    OwnMemory(const OwnMemory&) = delete;
    OwnMemory& operator=(const OwnMemory&) = delete;

    static inline int alive = 0;
};

enum class Shortage {
    ONE_CALL,  // the n-th call fails, the others get what they ask for
    FROM_THEN_ON,
};

// Runs `act` with such a shortage; `call` counts from 1. True when a call failed.
bool withFailingMemory(long call, Shortage shortage, const std::function<void()>& act);

// Calls of `new` that `act` makes.
long memoryCalls(const std::function<void()>& act);

// What `new` gave and `delete` did not take back yet.
long blocksInUse();

// The n-th call of fdopen() from now on fails, as it does for want of memory.
void failStream(int call);
