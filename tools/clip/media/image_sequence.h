#pragma once
// Numbered pictures: names such as img%03d.png, and the files that they stand for.
//
// A name is a pattern when no file has it, its last part holds one %d or %0Nd, and there is no
// other % in it. Folders are only looked into, nothing is opened.

#include <map>
#include <optional>
#include <string>

namespace maker {

struct ImagePattern {
    std::string folder;  // empty, or ends in "/"
    std::string before;  // of the file name
    std::string after;
    int digits = 1;  // of a number, at least; filled up with zeros

    std::string text() const;  // folder, before, %0Nd, after
};

std::optional<ImagePattern> imagePattern(const std::string& path);

// The pattern that a numbered file belongs to: the last digits of its name before the ending.
std::optional<ImagePattern> patternOfFile(const std::string& path);

// The number of a file name that fits the pattern.
std::optional<int> numberOf(const ImagePattern& pattern, const std::string& fileName);

// The files that there are, by their numbers.
std::map<int, std::string> picturesOf(const ImagePattern& pattern);

}  // namespace maker
