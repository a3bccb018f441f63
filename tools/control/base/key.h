#pragma once
// The keys that Velmora listens to on stage. What a key is called on X and to the kernel stands in
// hands/key_codes.h.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace control {

// The filter letters first, in the order of their slots.
// clang-format off
enum class Key : uint8_t {
    Q, W, E, R, T, Y, U, I, O,
    A, S, Z, X, F,
    ONE, TWO, THREE, FOUR, FIVE, SIX,
    UP, RIGHT, DOWN, LEFT,
    TAB, SPACE, BACKSPACE, RETURN,
};
// clang-format on
inline constexpr size_t kKeys = static_cast<size_t>(Key::RETURN) + 1;

// As messages call them.
inline constexpr std::array<std::string_view, kKeys> kKeyNames = {
    "Q",  "W",     "E",    "R",    "T",   "Y",     "U",         "I",     "O", "A",
    "S",  "Z",     "X",    "F",    "1",   "2",     "3",         "4",     "5", "6",
    "Up", "Right", "Down", "Left", "Tab", "Space", "Backspace", "Return"};

constexpr size_t indexOf(Key key) {
    return static_cast<size_t>(key);
}

constexpr Key keyAt(size_t index) {
    return static_cast<Key>(index);
}

}  // namespace control
