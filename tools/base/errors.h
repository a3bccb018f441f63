#pragma once
// How the tool ends early: by an exception that carries the line shown to the user, without a full
// stop, or because the user stops it.

#include <new>
#include <stdexcept>

namespace maker {

class ToolError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The line for any exception.
inline const char* lineOf(const std::exception& error) {
    return dynamic_cast<const std::bad_alloc*>(&error) != nullptr ? "there is not enough memory"
                                                                  : error.what();
}

// The user stopped the tool; nothing more is said.
class Interrupted : public std::exception {};

// Stopping cleanly: SIGINT, SIGTERM, SIGHUP and SIGPIPE set a flag that long work looks at, so that
// what is half done is undone by the ordinary way out. Calls that wait end with EINTR then, also
// those that begin to wait later.
void catchInterrupts();
bool interrupted();

// Throws Interrupted when the flag is set.
void stopIfInterrupted();

}  // namespace maker
