#pragma once
// Clips that the playlists of the current directory, which is Velmora's folder, name and that are
// missing, found again in other folders: by what they held where its checksum is known
// (manifest.h), or else by their names.

#include <filesystem>
#include <string>
#include <vector>

namespace maker {

enum class FindKind { NONE, BY_CONTENT, BY_NAME, AMBIGUOUS };

struct FoundClip {
    std::string track;  // below videos/
    FindKind kind = FindKind::NONE;
    std::vector<std::filesystem::path> files;  // several that differ when it is ambiguous
};

// One for each missing track, sorted. Only clips that play are found. Throws ToolError for a folder
// that is none.
std::vector<FoundClip> findMissing(const std::vector<std::string>& folders);

// Copies what was found into videos/, under the tracks' names, so that the playlists stay as they
// are: all of it or, when something fails, nothing. Faults are thrown.
void bringBack(const std::vector<FoundClip>& found);

}  // namespace maker
