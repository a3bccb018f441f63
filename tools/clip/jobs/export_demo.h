#pragma once
// The demo loops as clips and as a playlists file.
//
// Takes the loops and playlists as arguments, so that any set of them can be exported. Errors are
// thrown as ToolError; what was written before stays, every file of it whole.

#include <cstdint>
#include <filesystem>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "art/loops/loops.h"

namespace maker {

std::vector<uint8_t> encodeLoop(const demo::Loop& loop);

// Called for each loop: its file, and what became of it in a few words.
using ExportLog = std::function<void(const std::filesystem::path&, const std::string&)>;

// Encodes every loop to folder/<name>.m19 and makes the folder. Files that are there are kept,
// unless `force`.
void exportLoops(std::span<const demo::Loop> loops, const std::filesystem::path& folder, bool force,
                 const ExportLog& log);

// Writes the playlists file and makes its folder; false when a file of that name is there.
bool exportPlaylists(std::span<const demo::Playlist> playlists, const std::filesystem::path& path);

}  // namespace maker
