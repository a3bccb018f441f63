#pragma once
// Names of files and playlists: bytes of no sure encoding. The program shows them byte by byte as
// Latin-1; today's file systems and editors write UTF-8.

#include <string>
#include <string_view>

namespace maker {

bool isUtf8(std::string_view bytes);
bool isAscii(std::string_view bytes);

// As the program shows them.
std::u32string fromLatin1(std::string_view bytes);
std::string latin1AsUtf8(std::string_view bytes);

// As they are meant: UTF-8 where they are that, else Latin-1. The second is for terminals and
// JSON; control characters become "?".
std::u32string codePoints(std::string_view bytes);
std::string readable(std::string_view bytes);
std::string inQuotes(std::string_view bytes);  // readable, between apostrophes

}  // namespace maker
