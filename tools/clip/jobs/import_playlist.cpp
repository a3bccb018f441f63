#include "tools/clip/jobs/import_playlist.h"

#include <algorithm>
#include <set>

#include "common/limits.h"
#include "files/playlists.h"
#include "files/xmlscan.h"
#include "layout/page_layout.h"
#include "tools/clip/jobs/clip_names.h"
#include "tools/clip/jobs/playlists_file.h"

namespace maker {

using files::Playlist;

namespace {

std::string partName(const std::string& name, int number) {
    return number == 1 ? name : name + " " + std::to_string(number);
}

Playlist* findPlaylist(std::vector<Playlist>& playlists, const std::string& name) {
    const auto found = std::ranges::find(playlists, name, &Playlist::name);
    return found == playlists.end() ? nullptr : &*found;
}

// Null when all are full and no other can be made.
Playlist* playlistWithRoom(std::vector<Playlist>& playlists, const std::string& name) {
    for (int number = 1;; ++number) {
        const std::string part = partName(name, number);
        Playlist* playlist = findPlaylist(playlists, part);
        if (playlist == nullptr && playlists.size() < kPlaylists) {
            playlist = &playlists.emplace_back(Playlist{part, {}});
        }
        if (playlist == nullptr || playlist->tracks.size() < kClipSlots) {
            return playlist;
        }
    }
}

void noteAdded(PlaylistChange& change, const Playlist& playlist) {
    if (change.parts.empty() || change.parts.back().name != playlist.name) {
        change.parts.push_back({playlist.name, 0, 0});
    }
    ++change.parts.back().added;
    change.parts.back().tracks = static_cast<int>(playlist.tracks.size());
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
    std::vector<Playlist> playlists = playlistsHere();
    PlaylistChange change;
    change.keptCopy = keepCopyOfPlaylists(playlists);
    std::set<std::string> there;
    int number = 1;
    while (const Playlist* playlist = findPlaylist(playlists, partName(name, number++))) {
        there.insert(playlist->tracks.begin(), playlist->tracks.end());
    }
    for (const std::string& track : tracks) {
        if (!xml::comesBack(track, "track")) {
            change.lost.push_back(track);
            continue;
        }
        if (!there.insert(track).second) {
            continue;
        }
        Playlist* playlist = playlistWithRoom(playlists, name);
        if (playlist == nullptr) {
            change.leftOut.push_back(track);
            continue;
        }
        playlist->tracks.push_back(track);
        noteAdded(change, *playlist);
    }
    if (!change.parts.empty()) {
        savePlaylistsHere(playlists);
    }
    return change;
}

}  // namespace maker
