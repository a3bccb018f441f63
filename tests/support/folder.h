#pragma once
// A temporary working directory for one test: entered when made, left and removed at the end.

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

class TemporaryFolder {
public:
    TemporaryFolder() : before_(std::filesystem::current_path()) {
        std::string pattern = (std::filesystem::temp_directory_path() / "velmora-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
        std::filesystem::current_path(path_);
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::current_path(before_, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path before_;
    std::filesystem::path path_;
};
