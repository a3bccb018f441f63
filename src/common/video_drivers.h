#pragma once
// SDL's video drivers, by their names.

#include <algorithm>
#include <iterator>
#include <string_view>

inline constexpr std::string_view kDriversWithoutPicture[] = {"aalib", "caca", "dummy",
                                                              "offscreen"};

// False for one that nobody can look at, or only as letters.
inline bool showsPictures(std::string_view driver) {
    return std::ranges::find(kDriversWithoutPicture, driver) == std::end(kDriversWithoutPicture);
}

// Where SDL finds no display it goes on to draw with letters, and libcaca, which does that, clears
// the terminal and takes its keys. With these in the environment it does nothing.
inline constexpr const char* kLettersVariable = "CACA_DRIVER";
inline constexpr const char* kNoLetters = "null";
