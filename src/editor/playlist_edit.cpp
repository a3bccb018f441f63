// What the editor does to a playlist's tracks, and the file explorer below ./videos.
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <utility>

#include "common/memory.h"
#include "common/messages.h"
#include "layout/clipname.h"
#include "playlists/playlist.h"

namespace {

constexpr const char* kVideosFolder = "/videos";
constexpr const char* kBack = ".. back";
constexpr const char* kUnusedRow = "error";

enum EntryKind { NEITHER, REGULAR_FILE, FOLDER };

// A link counts as what it leads to. What leads nowhere, and what is neither file nor folder, has
// no place in the explorer.
EntryKind kindOf(int folder, const dirent& entry) {
    if (entry.d_type == DT_REG) {
        return REGULAR_FILE;
    }
    if (entry.d_type == DT_DIR) {
        return FOLDER;
    }
    struct stat facts;
    if ((entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) ||
        fstatat(folder, entry.d_name, &facts, 0) != 0) {
        return NEITHER;
    }
    if (S_ISREG(facts.st_mode)) {
        return REGULAR_FILE;
    }
    return S_ISDIR(facts.st_mode) ? FOLDER : NEITHER;
}

std::string subFolderOf(const std::string& browseDir, const std::string& baseDir) {
    const size_t rootLength = baseDir.size() + std::string(kVideosFolder).size() + 1;
    return browseDir.size() > rootLength ? browseDir.substr(rootLength) + "/" : "";
}

}  // namespace

bool c_playlist::isFileMoxel(const std::string& name) const {
    return clip::isClipName(name);
}

// The folder being browsed, relative to ./videos/, with a "/" behind it; empty for ./videos itself.
std::string c_playlist::browsedFolder() const {
    return subFolderOf(browseDir, baseDir);
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
    // Guard: a playlist that came from a file may be past the editor's limit, up to its last slot.
    if (edited.nbTracks == kEditorTracks || edited.nbTracks >= kTrackSlots) {
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
    if (edited.nbTracks == kEditorTracks || edited.nbTracks >= kTrackSlots || from < 0 ||
        from >= edited.nbTracks) {
        return;
    }
    const int at = std::clamp(to, 0, edited.nbTracks);
    insertTrack(edited, at, edited.tracks[from]);
    removeTrack(editFamille, from >= at ? from + 1 : from);
}

const char* c_playlist::edit_char(int index) {
    static constexpr const char* kKeys[kEditorKeys] = {
        "a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m",   "n",
        "o", "p", "q", "r", "s", "t", "u", "v", "w", "x", "y", "z", "_",   "-",
        "+", "*", "0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "Del", "OK",
    };
    return index >= 0 && index < kEditorKeys ? kKeys[index] : "";
}

void c_playlist::exitEditPlaylists() {
    closeDirectory();
    dirHandle = opendir(baseDir.c_str());
}

void c_playlist::closeDirectory() {
    if (dirHandle != nullptr) {
        closedir(dirHandle);
        dirHandle = nullptr;
    }
}

void c_playlist::readDir(const std::string& entry) {
    const std::string root = baseDir + kVideosFolder;
    std::string folder =
        entry == kBack ? curDir.substr(0, curDir.rfind('/')) : curDir + "/" + entry;
    browseDir = folder;
    curDir = std::move(folder);
    closeDirectory();
    dirHandle = opendir(browseDir.c_str());

    std::fill_n(entryIsDir, kExplorerRows, 1);
    std::fill_n(entryIsClip, kExplorerRows, 0);
    forgetClips();
    nbEntries = 0;
    nbFound = 0;
    nbListed = 0;
    if (browseDir != root) {
        entries[0] = kBack;
        nbEntries = 1;
    }
    if (dirHandle == nullptr) {
        puts(msg::kNoDirectory);
    } else {
        // The entries that there is memory for are shown.
        if (!withinMemory([this] { listDirectory(); })) {
            puts(msg::kNoMemory);
        }
        closeDirectory();
    }
    // Deliberate: the last row keeps the text of an earlier listing; it is shown only when a folder
    // fills it. [quirk_explorer_keeps_its_last_text]
    for (int row = nbEntries; row < kExplorerRows - 1; ++row) {
        entries[row] = kUnusedRow;
    }
}

// The first hundred rows, in the order in which the directory gives them; the rest is only counted.
void c_playlist::listDirectory() {
    while (const dirent* found = readdir(dirHandle)) {
        const std::string name = found->d_name;
        if (name == "." || name == ".." || name.compare(0, 2, "._") == 0) {
            continue;
        }
        const EntryKind kind = kindOf(dirfd(dirHandle), *found);
        if (kind == NEITHER || (kind == REGULAR_FILE && !clip::isPlayableName(name))) {
            continue;
        }
        ++nbFound;
        if (nbEntries == kExplorerRows) {
            continue;
        }
        entries[nbEntries] = name;
        entryIsDir[nbEntries] = kind == FOLDER ? 1 : 0;
        entryIsClip[nbEntries] = kind == FOLDER ? 0 : 1;
        ++nbEntries;
        ++nbListed;
    }
}
