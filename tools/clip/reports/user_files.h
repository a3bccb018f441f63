#pragma once
// The three files of the userdata folder, read twice: as the program's own scanner reads them, and
// as they are written (an XML parser's view). Where the two differ, the program misreads.
//
// A file that is no well-formed XML is compared with what its plain tags enclose. Texts are bytes.
// A missing file has `there` false and nothing else.

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "files/playlists.h"

namespace maker {

using PlaylistText = files::Playlist;

struct PlaylistsFile {
    bool there = false;
    std::string fault;                  // of the XML; empty when it is well-formed
    std::vector<PlaylistText> read;     // by the program
    std::vector<PlaylistText> written;  // in the file
};

struct ElementText {
    std::string name;
    std::string read;
    std::string written;
    bool there = false;  // in the file
};

struct ElementsFile {
    bool there = false;
    std::string fault;
    std::vector<ElementText> elements;
};

PlaylistsFile readPlaylists(const std::filesystem::path& path);

// `names` in the order in which the program asks for them; a name may come several times.
ElementsFile readElements(const std::filesystem::path& path, std::span<const char* const> names);

}  // namespace maker
