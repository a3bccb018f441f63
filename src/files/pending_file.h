#pragma once
// A file that comes to its place whole or not at all: the user's files, and whatever the clip tool
// writes.
//
// The bytes go to a temporary file beside the target, reach the disk, and take the target's name in
// one step: a power cut at any moment leaves either the old file or the new one. Whatever goes
// wrong on the way, the target keeps what it held and the temporary file is removed. Every step is
// false when it failed, with the reason in `errno`.

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace files {

// The folder that a file's name stands in.
std::filesystem::path folderOf(const std::filesystem::path& path);

// The file that links lead to, whether it is there or not. False, with `errno`, when they lead
// round or cannot be followed.
bool followLinks(std::filesystem::path& path);

// Removes from a folder what killed runs left of the files that PendingFile makes beside others.
void removeAbandonedIn(const std::filesystem::path& folder);

// A file that has no name of its own yet.
class PendingFile {
public:
    PendingFile() = default;
    ~PendingFile();
    PendingFile(PendingFile&& other) noexcept;
    PendingFile& operator=(PendingFile&&) = delete;

    // As `temporary`, which is no file yet, with `mode` less what the user's mask takes away.
    bool create(const std::string& temporary, mode_t mode);
    // Beside `path`, under a name that no other run or thread takes, so that several can be on
    // their way to one target. What killed runs left of such files goes first.
    bool createBeside(const std::filesystem::path& path);
    int descriptor() const { return descriptor_; }

    // Behind what was written before; `beforeEach` is called before each piece and may throw.
    bool write(std::span<const uint8_t> bytes, void (*beforeEach)() = nullptr);
    // All of it is on the disk.
    bool finish();
    // Takes the name `path`, in the folder where it was written, and makes that last, too.
    bool commit(const std::filesystem::path& path);

private:
    std::string temporary_;  // empty: none is there
    int descriptor_ = -1;    // -1 closed
};

}  // namespace files
