#pragma once
// Files that appear whole or not at all.
//
// The bytes go to a temporary file beside the target, reach the disk, and take the target's name in
// one step. Whatever goes wrong on the way, the target keeps what it held and the temporary file is
// removed; what a killed run left is removed when the same target is written again. Errors and
// interrupts are thrown (errors.h).

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace maker {

// A file that is written but has no name of its own yet.
class PendingFile {
public:
    // Writes the bytes beside `path`, which keeps what it holds.
    PendingFile(const std::filesystem::path& path, std::span<const uint8_t> bytes);
    ~PendingFile();
    PendingFile(PendingFile&& other) noexcept;
    PendingFile& operator=(PendingFile&&) = delete;

    // Gives it this name, in the folder where it was written.
    void commit(const std::filesystem::path& path);

private:
    std::string temporary_;  // empty once committed
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

// The folder that a file's name stands in.
std::filesystem::path folderOf(const std::filesystem::path& path);

// Throws when the file cannot be written, as far as can be told without trying.
void checkWritable(const std::filesystem::path& path);

void writeWholeFile(const std::filesystem::path& path, std::span<const uint8_t> bytes);

// Refuses what is larger than 256 MB, which no clip can be.
std::vector<uint8_t> readWholeFile(const std::filesystem::path& path);

}  // namespace maker
