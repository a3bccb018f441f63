#pragma once
// A folder held against other runs that fill it, for as long as the object lives: an import, or a
// set that is unpacked. Throws ToolError when the folder cannot be opened or another run holds it.

#include <filesystem>

namespace maker {

class FolderHold {
public:
    explicit FolderHold(const std::filesystem::path& folder);
    ~FolderHold();
    FolderHold(const FolderHold&) = delete;
    FolderHold& operator=(const FolderHold&) = delete;

private:
    int descriptor_;
};

}  // namespace maker
