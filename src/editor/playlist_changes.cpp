// What the playlist screen changes in playlists: copies, moves, deletes, adds, and saves.
#include <algorithm>
#include <utility>

#include "core/globals.h"
#include "editor/lost_names.h"
#include "layout/page_layout.h"
#include "playlists/playlist.h"
#include "ui/overmenu.h"

namespace {

constexpr const char* kFullPlaylist = "49 tracks is the most: remove one first";
constexpr const char* kNotSaved =
    "the playlists could not be saved: nothing is lost yet, try again";
constexpr const char* kNotSavedYet =
    "the playlists could not be saved: the change goes with the next save, or with the end";

int lastOf(int rows) {
    return std::max(rows - 1, 0);
}

}  // namespace

// The change stands whether or not it could be saved; the next save takes it along.
void c_playlist::saveChange() {
    if (!saveFamille()) {
        notice = kNotSavedYet;
    }
}

// Where it cannot be saved the page stays, and what was edited with it.
void c_playlist::confirmTracks() {
    if (!saveFamille()) {
        notice = kNotSaved;
        return;
    }
    showBrowse();
}

void c_playlist::discardTracks() {
    std::swap(familles[editFamille], enteredFamille);
    showBrowse();
}

bool c_playlist::tracksChanged() const {
    const Famille& now = familles[editFamille];
    const auto samePath = [](const Track& a, const Track& b) { return a.path == b.path; };
    return now.nbTracks != enteredFamille.nbTracks ||
           !std::equal(now.tracks, now.tracks + now.nbTracks, enteredFamille.tracks, samePath);
}

void c_playlist::deleteSelected() {
    if (editPage == page::BROWSE) {
        ask(ASK_DELETE);
    } else {
        removeTrack(editFamille, selRow);
        selRow = std::clamp(selRow, 0, lastOf(familles[editFamille].nbTracks));
    }
}

void c_playlist::deleteFamille() {
    const int pos = scroll[page::LEFT].pos;
    removeFamille(editFamille);
    saveChange();
    editFamille = std::clamp(editFamille, 0, lastOf(nbFamilles));
    showBrowse();
    scroll[page::LEFT].pos = std::min(pos, scroll[page::LEFT].maxPos);
    // The list over the mix must not go on pointing at a playlist that is gone.
    overMenu->selected = std::clamp(overMenu->selected, 0, lastOf(nbFamilles));
}

// Behind the selected one, and selected itself. Turning records round takes no memory.
void c_playlist::copySelected() {
    if (nbFamilles >= kPlaylists) {
        return;
    }
    Famille& copy = familles[nbFamilles];
    copy = familles[editFamille];
    copy.name = copyName(copy.name);
    notice = lost::whyName(copy.name);
    if (!notice.empty()) {
        return;
    }
    ++editFamille;
    std::rotate(familles + editFamille, familles + nbFamilles, familles + nbFamilles + 1);
    ++nbFamilles;
    saveChange();
    showBrowse();
}

// Before the row or behind it is where it stands already.
void c_playlist::moveFamilleTo(int row) {
    const int from = editFamille;
    const int to = std::clamp(row, 0, nbFamilles);
    if (from >= nbFamilles || to == from || to == from + 1) {
        return;
    }
    deplacerFamille(from, to);
    editFamille = to > from ? to - 1 : to;
    selRow = editFamille;
    saveChange();
}

// A full playlist keeps its order, and says why.
bool c_playlist::isFullToMove() {
    const int tracks = familles[editFamille].nbTracks;
    const bool full = tracks == kEditorTracks || tracks >= kTrackSlots;
    if (full) {
        notice = kFullPlaylist;
    }
    return full;
}

void c_playlist::moveTrackTo(int row) {
    const int tracks = familles[editFamille].nbTracks;
    const int to = std::clamp(row, 0, tracks);
    if (selRow >= tracks || to == selRow || to == selRow + 1) {
        return;
    }
    if (isFullToMove()) {
        return;
    }
    moveTrack(selRow, to);
    selRow = to > selRow ? to - 1 : to;
}

void c_playlist::addEntryAt(int row) {
    if (selItem >= nbEntries || !isFileMoxel(entries[selItem])) {
        return;
    }
    notice = lost::whyPath(browsedFolder() + entries[selItem]);
    if (!notice.empty()) {
        return;
    }
    const int before = familles[editFamille].nbTracks;
    addTrack(entries[selItem], editFamille, row);
    if (familles[editFamille].nbTracks == before) {
        notice = kFullPlaylist;
        return;
    }
    selRow = std::clamp(row, 0, before);
}

void c_playlist::addBehindSelected() {
    addEntryAt(selRow + 1);
    scrollIntoView(scroll[page::LEFT], selRow);
}

void c_playlist::insertEntry() {
    if (editPage == page::TRACKS && dragSource == page::RIGHT) {
        addBehindSelected();
    }
}
