#pragma once
// Velmora's playlists file in the current directory, read and replaced as the program does.
// Errors are thrown; the file is then as it was.

#include <string>
#include <vector>

#include "files/playlists.h"

namespace maker {

// None when there is no file. Throws when there is one that cannot be read.
std::vector<files::Playlist> playlistsHere();

// Replaces the file; its folder is made when it is missing.
void savePlaylistsHere(const std::vector<files::Playlist>& playlists);

// `playlists` are what playlistsHere() gave. When the file holds more than that, what the program
// does not read would be gone once it is written: it is kept as a copy, whose name is returned.
// Else returns an empty string.
std::string keepCopyOfPlaylists(const std::vector<files::Playlist>& playlists);

// For standard error, when there is such a copy.
void warnOfCopy(const std::string& copy);

}  // namespace maker
