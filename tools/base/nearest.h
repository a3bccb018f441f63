#pragma once
// Which of several names a mistyped one is probably meant to be.

#include <span>
#include <string>
#include <string_view>

namespace maker {

// The name that at most two characters put in, left out or changed make of `typed`; the first of
// several. Empty when none is that near, `typed` itself when it is among them.
std::string nearestName(std::string_view typed, std::span<const std::string> names);

}  // namespace maker
