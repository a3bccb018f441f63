#pragma once
// Texts as the interface draws them: one Latin-1 letter each, which is what its font is asked for.
//
// File names and playlists are bytes. Where they are valid UTF-8, a character of Latin-1 (U+00A0 to
// U+00FF) is drawn as that letter, an accent that follows its letter (U+0300 to U+036F) together
// with it, and any other character as "?". Bytes that are not valid UTF-8 are drawn as they are.
// Nothing here changes a text that is kept.

#include <cstddef>
#include <string_view>

namespace latin1 {

struct Letter {
    size_t bytes;  // of the text that it stands for, accents included; at least 1
    unsigned char drawn;
};

// The first letter of `text`, which is not empty.
Letter firstLetter(std::string_view text);

// The letters of `text` and a closing 0 into `out`, which has room for `room` bytes, at least 1.
// What does not fit is left out. Returns the number of letters, never more than bytes in `text`.
size_t lettersOf(std::string_view text, char* out, size_t room);

}  // namespace latin1
