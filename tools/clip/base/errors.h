#pragma once
// How the tool fails: an exception that carries the line shown to the user, without a full stop.

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

}  // namespace maker
