#pragma once
// What a packed set holds, by the names of its files: those that they have in Velmora's folder, so
// that any tool that opens a zip lays them where they belong.

#include <string>

namespace maker {

inline constexpr const char* kManifestName = "checksums.txt";
inline constexpr const char* kPackedMapName = "control.toml";  // velmora-control's map
inline constexpr const char* kVideos = "videos";
inline constexpr const char* kVideosPrefix = "videos/";

// Whether a track's path is one that a clip of a set may have: below videos/ and never out of it,
// of this version's ending, and read back by the program as it is. Any bytes will do.
bool isTrackPath(const std::string& path);

// Where a clip came from stands in a file of its name and this ending (clip_origin.h).
inline constexpr const char* kOriginEnding = ".json";

// Whether a set may hold a file of this name.
bool isPackedName(const std::string& name);

// The track's path of a clip in a set; empty for any other file.
std::string trackOfPacked(const std::string& name);

// The same of the file that tells a clip's origin.
std::string trackOfOrigin(const std::string& name);

}  // namespace maker
