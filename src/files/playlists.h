#pragma once
// The playlists file. Names and paths are bytes as they stand in it (declared iso-8859-1), never
// decoded.

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace files {

inline constexpr const char* kPlaylistsName = "userdata/playlists.xml";

struct Playlist {
    std::string name;
    std::vector<std::string> tracks;  // relative to ./videos/
};

// Whatever the bytes are: at most kPlaylists of them, each with at most kTrackSlots tracks.
std::vector<Playlist> parsePlaylists(std::string_view bytes);

std::string printPlaylists(std::span<const Playlist> playlists);

}  // namespace files
