#pragma once
// Clips that become tracks of a playlist in Velmora's playlists file, in the current directory.
//
// The other playlists stay as the program reads them; after an error the file is as it was.

#include <string>
#include <vector>

namespace maker {

struct PlaylistPart {
    std::string name;
    int added = 0;
    int tracks = 0;  // in all
};

struct PlaylistChange {
    std::vector<PlaylistPart> parts;   // the playlists that got something
    std::vector<std::string> leftOut;  // tracks for which there was no room
    std::vector<std::string> lost;     // tracks that the program could not read back
    std::string keptCopy;              // of a file that held more than the program reads of it
};

// A playlist's name as the file holds it: Latin-1, of 1 to 20 characters that the program can read
// back, not all of them blank. Empty for any other.
std::string playlistName(const std::string& text);

// Adds the tracks that are not there yet behind those of the playlist. A playlist holds 50; what is
// more goes to "name 2", "name 3" and so on. There can be 50 playlists.
PlaylistChange addToPlaylist(const std::string& name, const std::vector<std::string>& tracks);

}  // namespace maker
