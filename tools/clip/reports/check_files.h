#pragma once
// What a check of a performer's folder finds in the user's three files: what the program would
// ignore, cut or misread in them, and names that do not fit where it shows them.
//
// The files are read twice: as the program's own scanner reads them, and as they are written (an
// XML parser's view). Where the two differ, the program misreads. A file that is no well-formed XML
// is compared with what its plain tags enclose. Texts are bytes. A missing file has `there` false
// and nothing else.

#include <filesystem>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "files/playlists.h"

namespace maker {

// A problem will show on stage; a note is good to know.
struct Finding {
    bool problem;
    std::string where;  // a file, a playlist or a clip
    std::string text;   // without a full stop
};

class Findings {
public:
    void problem(std::string where, std::string text) {
        all_.push_back({true, std::move(where), std::move(text)});
    }
    void note(std::string where, std::string text) {
        all_.push_back({false, std::move(where), std::move(text)});
    }
    const std::vector<Finding>& all() const { return all_; }
    int problems() const;

private:
    std::vector<Finding> all_;
};

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

void checkPlaylistsFile(const PlaylistsFile& file, Findings& findings);
void checkPrefsFile(const ElementsFile& file, Findings& findings);
void checkControllerFile(const ElementsFile& file, Findings& findings);

// The part of a track's path that the panel shows.
std::string panelTitle(const std::string& path);

// Widths are those of the program's font, byte for byte as it draws names.
void checkNames(const std::vector<PlaylistText>& playlists, Findings& findings);

}  // namespace maker
