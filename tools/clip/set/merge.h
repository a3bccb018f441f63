#pragma once
// Playlists of a set put behind those that there are. Plain values: no file is touched.

#include <string>
#include <vector>

#include "files/playlists.h"

namespace maker {

enum class MergeKind { NEW, THERE, RENAMED };

struct MergedPlaylist {
    MergeKind kind = MergeKind::NEW;
    std::string name;    // in the set
    std::string become;  // what it is called now
    size_t tracks = 0;
};

struct Merge {
    std::vector<files::Playlist> playlists;  // all, those that were there first
    std::vector<MergedPlaylist> parts;       // the set's, in its order
    bool changed = false;
};

// A playlist whose name and tracks are there, also under a number, is left as it is; one whose name
// alone is there gets a number, in a name no longer than the editor's or than it was. Throws
// ToolError when there would be more playlists than the program reads.
Merge mergePlaylists(const std::vector<files::Playlist>& there,
                     const std::vector<files::Playlist>& set);

// `text` with `ending` behind it in at most `most` bytes, cut before it and never inside a
// character of UTF-8.
std::string cutWith(const std::string& text, const std::string& ending, size_t most);

}  // namespace maker
