// The playlists in memory and their file: set-up, scan, what is done to playlists and to tracks.
#include <algorithm>
#include <tuple>
#include <utility>

#include "common/memory.h"
#include "common/messages.h"
#include "core/globals.h"
#include "files/playlists.h"
#include "moxel/moxel.h"
#include "playlists/playlist.h"

namespace {

constexpr int kWeightUnit = 250000;
constexpr const char* kUnusedPath = "m2x/none";

// A header read through a slot that holds a clip: the slot's own goes back, so that the clip goes
// on playing.
int32_t readHeaderThrough(c_moxel& slot, const std::string& path) {
    if (slot.hasRAM == 0) {
        return slot.miniLoad(path);
    }
    const auto own = std::tuple(slot.fileSize, slot.version, slot.quality, slot.height, slot.alpha,
                                slot.blockCount, slot.frameCount);
    const int32_t found = slot.miniLoad(path);
    std::tie(slot.fileSize, slot.version, slot.quality, slot.height, slot.alpha, slot.blockCount,
             slot.frameCount) = own;
    return found;
}

// Name, count and the paths in use; the scan's results stay behind.
void copyFamille(Famille& to, const Famille& from) {
    to.name = from.name;
    to.nbTracks = from.nbTracks;
    for (int t = 0; t < from.nbTracks; ++t) {
        to.tracks[t].path = from.tracks[t].path;
    }
}

// Afterwards the first `count` records take each other's texts without memory: what moves them does
// not stop half way.
void makeRoomForTexts(Famille* familles, int count) {
    size_t longest = 0;
    int tracks = 0;
    for (const Famille* each = familles; each != familles + count; ++each) {
        longest = std::max(longest, each->name.size());
        tracks = std::max(tracks, each->nbTracks);
        for (int t = 0; t < each->nbTracks; ++t) {
            longest = std::max(longest, each->tracks[t].path.size());
        }
    }
    for (Famille* each = familles; each != familles + count; ++each) {
        each->name.reserve(longest);
        for (int t = 0; t < tracks; ++t) {
            each->tracks[t].path.reserve(longest);
        }
    }
}

// 1 when the file is there and a clip.
int32_t scanTrack(c_moxel& reader, const Track& track) {
    int32_t found = 0;
    if (!withinMemory([&] { found = readHeaderThrough(reader, "./videos/" + track.path); })) {
        puts(msg::kNoMemoryForClip);
    }
    return found;
}

}  // namespace

void c_playlist::initPlaylist() {
    file = nullptr;
    currentFamille = 0;
    loadSlot = 0;
    loading = 0;
    baseDir = workingDirectory();
    browseDir = workingDirectory();
    curDir = workingDirectory();
    editPage = 0;
    editFamille = 0;
    keyUnderPointer = 0;
    selRow = 0;
    selItem = 0;
    newName.clear();
    lastRow = 99;
    nbEntries = 0;
    dragging = 0;
    dropRow = 0;
    for (int f = 0; f < kPlaylists; ++f) {
        familles[f].weight = 0;
        familles[f].nbMissing = 0;
        for (int t = 0; t < kTrackSlots - 1; ++t) {
            familles[f].tracks[t].missing = 0;
        }
    }
    previewClip = new c_moxel;
    previewActive = 0;
    previewFrame = 0;
}

void c_playlist::scanFamilles() {
    for (int f = 0; f < nbFamilles; ++f) {
        Famille& famille = familles[f];
        famille.weight = 0;
        famille.nbMissing = 0;
        for (int t = 0; t < famille.nbTracks; ++t) {
            // Guard: track 51 has no clip slot of its own; its header is read through the last one.
            c_moxel& reader = moxel[std::min(t, kClipSlots - 1)];
            Track& track = famille.tracks[t];
            const int found = scanTrack(reader, track);
            famille.weight += found;
            track.missing = found != 0 ? 0 : 1;
            famille.nbMissing += track.missing;
        }
        // Deliberate: the weight counts files, so this leaves 0 for every real playlist.
        // [quirk_playlist_weight_is_zero]
        famille.weight /= kWeightUnit;
    }
}

bool c_playlist::createNewFamille() {
    if (nbFamilles >= kPlaylists) {
        return false;
    }
    Famille& created = familles[nbFamilles];
    created.name = newName;
    created.nbTracks = 0;
    // Nothing of a playlist that had this record before.
    created.weight = 0;
    created.nbMissing = 0;
    for (Track& track : created.tracks) {
        track.missing = 0;
    }
    ++nbFamilles;
    return saveXML();
}

bool c_playlist::saveFamille() {
    const bool saved = saveXML();
    scanFamilles();
    return saved;
}

void c_playlist::removeFamille(int index) {
    if (index < 0 || index >= nbFamilles) {
        return;
    }
    makeRoomForTexts(familles, nbFamilles);
    for (int f = index; f < nbFamilles - 1; ++f) {
        copyFamille(familles[f], familles[f + 1]);
    }
    --nbFamilles;
    Famille& unused = familles[nbFamilles];
    for (int t = 0; t < unused.nbTracks; ++t) {
        unused.tracks[t].path = kUnusedPath;
    }
    unused.nbTracks = 0;
}

// Towards the front a famille ends at `to`; towards the back at `to` - 1, before the one that stood
// at `to`.
void c_playlist::deplacerFamille(int from, int to) {
    if (from < 0 || from >= nbFamilles) {
        return;
    }
    to = std::clamp(to, 0, nbFamilles);
    makeRoomForTexts(familles, std::min(nbFamilles + 2, kPlaylists + 1));
    // Deliberate: the gap opens from the unused record past the end on.
    // [quirk_move_copies_the_unused_record]
    for (int f = std::min(nbFamilles, kPlaylists - 1); f >= to; --f) {
        copyFamille(familles[f + 1], familles[f]);
    }
    if (from >= to) {
        ++from;
    }
    copyFamille(familles[to], familles[from]);
    ++nbFamilles;
    removeFamille(from);
}

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

bool c_playlist::saveXML() {
    return userFile.save(baseDir, files::kPlaylistsName, [this] {
        std::vector<files::Playlist> playlists;
        for (const Famille* famille = familles; famille != familles + nbFamilles; ++famille) {
            files::Playlist& written = playlists.emplace_back();
            written.name = famille->name;
            for (int t = 0; t < famille->nbTracks; ++t) {
                written.tracks.push_back(famille->tracks[t].path);
            }
        }
        return files::printPlaylists(playlists);
    });
}

// Deliberate: reading takes the path from the current directory, writing from the directory of the
// start-up. [quirk_read_path_is_relative_write_path_is_not]
void c_playlist::lireXML() {
    const std::optional<std::string> bytes =
        userFile.read(std::string("./") + files::kPlaylistsName);
    nbFamilles = 0;
    for (Famille& famille : familles) {
        famille.nbTracks = 0;
    }
    if (!bytes) {
        puts(msg::kNoPlaylistsFile);
        return;
    }
    for (const files::Playlist& read : files::parsePlaylists(*bytes)) {
        Famille& famille = familles[nbFamilles++];
        famille.name = read.name;
        for (const std::string& track : read.tracks) {
            famille.tracks[famille.nbTracks++].path = track;
        }
    }
}
