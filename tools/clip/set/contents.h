#pragma once
// What there is to pack of the current directory, which is Velmora's folder: playlists, the clips
// that they name, preferences and controller maps. Nothing is written.

#include <string>
#include <vector>

#include "files/playlists.h"
#include "tools/clip/set/pack_writer.h"

namespace maker {

struct PackedClip {
    std::string track;  // its path below videos/
    size_t bytes = 0;
    std::string fault;  // why it is left out; empty when it is not
};

struct SetContents {
    std::vector<files::Playlist> playlists;
    std::vector<PackedClip> clips;  // each once, sorted
    std::vector<FileToPack> files;  // all that is packed
    size_t leftOut = 0;             // of the clips
};

// The playlists of these names, given as UTF-8 or as the file's bytes; all of them for no names.
// Clips that are missing or would not play are left out. Throws ToolError for a name that is not
// there, and where there is nothing to pack.
SetContents contentsHere(const std::vector<std::string>& names);

}  // namespace maker
