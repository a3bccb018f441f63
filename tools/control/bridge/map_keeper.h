#pragma once
// The user's map file: made with comments at the first start, read again when it has changed.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tools/base/velmora_folder.h"
#include "tools/control/map/map_file.h"

namespace control {

using maker::userMapFile;

class MapKeeper {
public:
    explicit MapKeeper(std::filesystem::path file) : file_(std::move(file)) {}

    // Writes the default map where there is no file. True when it did. Throws ToolError.
    bool makeWhenMissing();

    // The map, when the file has changed since the last call. One with faults is given as far as it
    // is right; a file that cannot be read, or is no TOML, changes nothing.
    std::optional<ControlMap> changed();

    // Of the last file read, a line each: "control.toml:12:8: ..."
    const std::vector<std::string>& faults() const { return faults_; }

private:
    std::filesystem::path file_;
    std::filesystem::file_time_type time_ = std::filesystem::file_time_type::min();
    std::vector<std::string> faults_;
};

}  // namespace control
