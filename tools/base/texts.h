#pragma once
// Texts that the tool's lines are made of: numbers, and names of files and playlists.

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>

namespace maker {

// With a fixed count of digits behind the point.
inline std::string decimals(double value, int digits) {
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    return text;
}

// "1 frame", "2 frames"
inline std::string counted(size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

// "1.5 MB": of a thousand each, one digit behind the point.
inline std::string sizeText(uint64_t bytes) {
    constexpr double kThousand = 1000;
    const double thousands = static_cast<double>(bytes) / kThousand;
    return thousands < kThousand ? decimals(thousands, 1) + " kB"
                                 : decimals(thousands / kThousand, 1) + " MB";
}

// "556 kB", of a thousand each, rounded up
inline std::string wholeKilobytes(size_t bytes) {
    return std::to_string((bytes + 999) / 1000) + " kB";
}

inline std::string megabytes(uint64_t bytes, int digits) {
    return decimals(static_cast<double>(bytes) / 1e6, digits) + " MB";
}

inline std::string decibels(double psnr, int digits) {
    return std::isfinite(psnr) ? decimals(psnr, digits) + " dB" : "exact";
}

// ASCII letters; all other bytes stay.
std::string lowerCase(std::string text);

// Names are bytes of no sure encoding. The program shows them byte by byte as
// Latin-1; today's file systems and editors write UTF-8.
bool isUtf8(std::string_view bytes);

// As the program shows them.
std::u32string fromLatin1(std::string_view bytes);
std::string latin1AsUtf8(std::string_view bytes);

// As they are meant: UTF-8 where they are that, else Latin-1. The second is for terminals and
// JSON; control characters become "?".
std::u32string codePoints(std::string_view bytes);
std::string readable(std::string_view bytes);
std::string inQuotes(std::string_view bytes);  // readable, between apostrophes

}  // namespace maker
