#pragma once
// Names that do not fit where the program shows them, or that it shows otherwise than meant.
//
// Widths are those of the program's font, byte for byte as it draws names.

#include <string>
#include <vector>

#include "tools/clip/reports/findings.h"
#include "tools/clip/reports/user_files.h"

namespace maker {

// The part of a track's path that the panel shows.
std::string panelTitle(const std::string& path);

void checkNames(const std::vector<PlaylistText>& playlists, Findings& findings);

}  // namespace maker
