#pragma once
// How the tool fails: an exception that carries the line shown to the user, without a full stop.

#include <stdexcept>

namespace maker {

class ToolError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// The user stopped the tool; nothing more is said.
class Interrupted : public std::exception {};

}  // namespace maker
