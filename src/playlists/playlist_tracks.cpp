// What is done to a playlist's tracks.
#include <algorithm>
#include <utility>

#include "playlists/playlist.h"

std::string c_playlist::browsedFolder() const {
    const size_t root = baseDir.size() + std::string(kVideosFolder).size() + 1;
    return browseDir.size() > root ? browseDir.substr(root) + "/" : "";
}

void c_playlist::setTrackCount(Famille& famille, int count) {
    famille.nbTracks = count;
    famille.nbMissing = static_cast<int32_t>(std::count_if(
        famille.tracks, famille.tracks + count, [](const Track& t) { return t.missing != 0; }));
    updateScroll(0, count);
}

// Moving a text takes no memory: a list of tracks is changed whole or not at all.
void c_playlist::insertTrack(Famille& famille, int at, Track track) {
    std::move_backward(famille.tracks + at, famille.tracks + famille.nbTracks,
                       famille.tracks + famille.nbTracks + 1);
    famille.tracks[at] = std::move(track);
    setTrackCount(famille, famille.nbTracks + 1);
}

void c_playlist::addTrack(const std::string& fileName, int famille, int pos) {
    if (famille < 0 || famille >= kPlaylists) {
        return;
    }
    Famille& edited = familles[famille];
    if (edited.isFull()) {
        return;
    }
    const int at = std::clamp(pos, 0, edited.nbTracks);
    insertTrack(edited, at, {browsedFolder() + fileName, 0});
}

void c_playlist::removeTrack(int famille, int pos) {
    if (famille < 0 || famille >= kPlaylists) {
        return;
    }
    Famille& edited = familles[famille];
    if (pos < 0 || pos >= edited.nbTracks) {
        return;
    }
    for (int t = pos; t < edited.nbTracks - 1; ++t) {
        edited.tracks[t] = std::move(edited.tracks[t + 1]);
    }
    setTrackCount(edited, edited.nbTracks - 1);
}

// Towards the top a track ends at `to`, towards the bottom at `to` - 1.
void c_playlist::moveTrack(int from, int to) {
    if (editFamille < 0 || editFamille >= kPlaylists) {
        return;
    }
    Famille& edited = familles[editFamille];
    // Deliberate: a full playlist cannot be put in another order.
    // [quirk_full_playlist_keeps_its_order]
    if (edited.isFull() || from < 0 || from >= edited.nbTracks) {
        return;
    }
    const int at = std::clamp(to, 0, edited.nbTracks);
    insertTrack(edited, at, edited.tracks[from]);
    removeTrack(editFamille, from >= at ? from + 1 : from);
}
