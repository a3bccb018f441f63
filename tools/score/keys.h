#pragma once
// What scores call the keys. The numbers are SDL's, which are those of ASCII as far as that goes.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace maker {

// "q", "7", "return", "left"; "key35" for those that have no name.
std::string keyName(int key);

// The key of a name; none when there is no such key.
std::optional<int> keyOf(std::string_view name);

// The character that a key gives by itself, UTF-16; 0 when it is none.
uint16_t usualCharacter(int key);

}  // namespace maker
