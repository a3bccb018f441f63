#pragma once
// A packed set written: a zip that any tool opens, whole in its place or not there at all.
//
// The same files give the same bytes: they are sorted by name and all have the same time. Files are
// deflated, which halves most clips. Errors and interrupts are thrown.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace maker {

struct FileToPack {
    std::string name;            // in the set
    std::string sha256;          // of what it holds
    std::filesystem::path file;  // what is read; empty: `bytes`
    std::string bytes;
};

// Adds the list of checksums. What was written is read again and compared with it before the file
// gets its name: a clip that changed meanwhile is an error.
void writePack(const std::filesystem::path& target, std::vector<FileToPack> files);

}  // namespace maker
