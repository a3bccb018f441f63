#pragma once
// Finding clips in folders.

#include <filesystem>
#include <string>
#include <vector>

namespace maker {

// Every file below `folder` with the name of a clip, older versions included, by its path from
// there, in alphabetical order. Links to folders are followed, but not in circles. A
// folder that is not there holds none.
std::vector<std::string> clipsBelow(const std::filesystem::path& folder);

}  // namespace maker
