#include "tools/clip/jobs/playlist_file.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <set>

#include "files/xmlscan.h"
#include "layout/page_layout.h"
#include "playlists/playlist.h"
#include "tools/clip/base/atomic_file.h"
#include "tools/clip/base/errors.h"
#include "tools/clip/jobs/clip_names.h"

namespace maker {

namespace fs = std::filesystem;

namespace {

constexpr const char* kFolder = "userdata";
constexpr const char* kFile = "userdata/playlists.xml";
constexpr const char* kCopy = "userdata/playlists.xml.old";

int countOf(const std::string& text, const std::string& part) {
    int count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

int tracksIn(const c_playlist& playlists) {
    int tracks = 0;
    for (int f = 0; f < playlists.nbFamilles; ++f) {
        tracks += playlists.familles[f].nbTracks;
    }
    return tracks;
}

// The class without its screen: nothing here needs a display.
std::unique_ptr<c_playlist> readPlaylists() {
    auto playlists = std::make_unique<c_playlist>();
    playlists->baseDir = fs::current_path().string();
    std::error_code ignored;
    if (fs::exists(kFile, ignored)) {
        playlists->lireXML();
    }
    if (playlists->userFile.unreadable()) {
        throw ToolError(std::string("cannot read ") + kFile);
    }
    return playlists;
}

bool sameTracks(const Famille& a, const Famille& b) {
    return a.name == b.name && a.nbTracks == b.nbTracks &&
           std::equal(a.tracks, a.tracks + a.nbTracks, b.tracks,
                      [](const Track& x, const Track& y) { return x.path == y.path; });
}

// Reads the file again, to be sure.
void save(c_playlist& playlists) {
    FolderInMaking folder(kFolder);
    playlists.saveXML();
    const std::unique_ptr<c_playlist> saved = readPlaylists();
    const bool same = saved->nbFamilles == playlists.nbFamilles &&
                      std::equal(playlists.familles, playlists.familles + playlists.nbFamilles,
                                 saved->familles, sameTracks);
    if (!same) {
        throw ToolError(std::string("cannot write ") + kFile);
    }
    folder.keep();
}

// What the program does not read would be gone once it is written.
std::string keepCopy(const c_playlist& playlists) {
    std::error_code ignored;
    if (!fs::exists(kFile, ignored)) {
        return "";
    }
    const std::vector<uint8_t> bytes = readWholeFile(kFile);
    const std::string text(bytes.begin(), bytes.end());
    if (countOf(text, "<playlist>") == playlists.nbFamilles &&
        countOf(text, "<track>") == tracksIn(playlists)) {
        return "";
    }
    writeWholeFile(kCopy, bytes);
    return kCopy;
}

std::string partName(const std::string& name, int number) {
    return number == 1 ? name : name + " " + std::to_string(number);
}

Famille* findPlaylist(c_playlist& playlists, const std::string& name) {
    Famille* end = playlists.familles + playlists.nbFamilles;
    Famille* found = std::find_if(playlists.familles, end,
                                  [&name](const Famille& famille) { return famille.name == name; });
    return found == end ? nullptr : found;
}

Famille* createPlaylist(c_playlist& playlists, const std::string& name) {
    if (playlists.nbFamilles >= kPlaylists) {
        return nullptr;
    }
    Famille* created = &playlists.familles[playlists.nbFamilles++];
    created->name = name;
    created->nbTracks = 0;
    return created;
}

// Null when all are full and no other can be made.
Famille* playlistWithRoom(c_playlist& playlists, const std::string& name) {
    for (int number = 1;; ++number) {
        Famille* famille = findPlaylist(playlists, partName(name, number));
        if (famille == nullptr) {
            return createPlaylist(playlists, partName(name, number));
        }
        if (famille->nbTracks < kClipSlots) {
            return famille;
        }
    }
}

std::set<std::string> tracksOf(c_playlist& playlists, const std::string& name) {
    std::set<std::string> tracks;
    int number = 1;
    while (const Famille* famille = findPlaylist(playlists, partName(name, number++))) {
        for (int t = 0; t < famille->nbTracks; ++t) {
            tracks.insert(famille->tracks[t].path);
        }
    }
    return tracks;
}

void noteAdded(PlaylistChange& change, const Famille& famille) {
    if (change.parts.empty() || change.parts.back().name != famille.name) {
        change.parts.push_back({famille.name, 0, 0});
    }
    ++change.parts.back().added;
    change.parts.back().tracks = famille.nbTracks;
}

}  // namespace

std::string playlistName(const std::string& text) {
    const std::string name = latin1Of(text);
    const bool readable = std::all_of(name.begin(), name.end(), [](char c) {
        const unsigned char byte = static_cast<unsigned char>(c);
        return byte >= ' ' && (byte < 0x7F || byte >= 0xA0) &&
               std::string("<>&%").find(c) == std::string::npos;
    });
    const bool seen = name.find_first_not_of(" \xA0") != std::string::npos;
    return readable && seen && name.size() <= static_cast<size_t>(page::kLongestName) ? name : "";
}

PlaylistChange addToPlaylist(const std::string& name, const std::vector<std::string>& tracks) {
    const std::unique_ptr<c_playlist> playlists = readPlaylists();
    PlaylistChange change;
    change.keptCopy = keepCopy(*playlists);
    std::set<std::string> there = tracksOf(*playlists, name);
    for (const std::string& track : tracks) {
        if (!xml::comesBack(track, "track")) {
            change.lost.push_back(track);
            continue;
        }
        if (!there.insert(track).second) {
            continue;
        }
        Famille* famille = playlistWithRoom(*playlists, name);
        if (famille == nullptr) {
            change.leftOut.push_back(track);
            continue;
        }
        famille->tracks[famille->nbTracks++].path = track;
        noteAdded(change, *famille);
    }
    if (!change.parts.empty()) {
        save(*playlists);
    }
    return change;
}

}  // namespace maker
