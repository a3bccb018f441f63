#pragma once
// The one place where memory that cannot be had becomes a result. Texts and lists take theirs
// wherever they grow; what would be left half done by that runs in here. What `act` has changed by
// then stays: it changes what others see only once it has all that it needs.

#include <new>

// False when there was no memory for `act`, which has ended where it stood then.
template <typename Act>
bool withinMemory(Act act) {
    try {
        act();
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}
