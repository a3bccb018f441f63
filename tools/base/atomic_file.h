#pragma once
// Files that appear whole or not at all (files/pending_file.h), and the folders for them. Errors
// and interrupts are thrown (errors.h).

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "files/pending_file.h"

namespace maker {

using files::folderOf;

// A file that is written but has no name of its own yet.
class PendingFile {
public:
    // Writes the bytes beside `path`, which keeps what it holds.
    PendingFile(const std::filesystem::path& path, std::span<const uint8_t> bytes);

    // Gives it this name, in the folder where it was written.
    void commit(const std::filesystem::path& path);

private:
    files::PendingFile file_;
};

// Makes a folder and those above it, as far as they are missing, and takes them away again unless
// told to keep them. Folders that have been put to use stay.
class FolderInMaking {
public:
    explicit FolderInMaking(const std::filesystem::path& folder);
    ~FolderInMaking();
    FolderInMaking(const FolderInMaking&) = delete;
    FolderInMaking& operator=(const FolderInMaking&) = delete;

    void keep() { made_.clear(); }

private:
    std::vector<std::filesystem::path> made_;  // the innermost last
};

// Throws when the file cannot be written, as far as can be told without trying.
void checkWritable(const std::filesystem::path& path);

// Likewise, and where the folder is not there.
void checkOutput(const std::filesystem::path& path);

void writeWholeFile(const std::filesystem::path& path, std::span<const uint8_t> bytes);

// The largest clip that there can be takes 240 MB; nothing else that is read whole comes near it.
inline constexpr size_t kMostBytesRead = size_t{256} << 20;

// Refuses what is larger than that.
std::vector<uint8_t> readWholeFile(const std::filesystem::path& path);

}  // namespace maker
