#pragma once
// Names that do not fit where the program shows them, or that it shows otherwise than meant.
//
// Widths are those of the program's font, byte for byte as it draws names.

#include <string>
#include <vector>

#include "tools/clip/reports/findings.h"
#include "tools/clip/reports/user_files.h"

namespace maker {

// A place where the program shows names, and what happens to one that is too long.
struct NamePlace {
    const char* what;
    int room;  // pixels
    int size;  // of the font
    const char* outcome;
};

// The list of playlists over the mix; the playlist editor.
std::vector<NamePlace> playlistNamePlaces();
// The panel of the mix on both kinds of output: the file's name without folder and ending.
std::vector<NamePlace> panelPlaces();
// The playlist editor: the whole path.
std::vector<NamePlace> trackPathPlaces();

// The part of a track's path that the panel shows.
std::string panelTitle(const std::string& path);

void checkNames(const std::vector<PlaylistText>& playlists, Findings& findings);

}  // namespace maker
