#pragma once
// What the bridge reads of Velmora's files: which filter sits on which letter, and the playlists.

#include <filesystem>

#include "tools/control/stage/stage_model.h"

namespace control {

// Reads them again when they have changed since; a file that cannot be read counts as empty.
class StageFilesReader {
public:
    explicit StageFilesReader(std::filesystem::path folder) : folder_(std::move(folder)) {}

    const StageFiles& now();

private:
    std::filesystem::path folder_;  // Velmora's
    std::filesystem::file_time_type preferences_ = std::filesystem::file_time_type::min();
    std::filesystem::file_time_type playlists_ = std::filesystem::file_time_type::min();
    StageFiles files_;
};

}  // namespace control
