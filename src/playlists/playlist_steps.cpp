// The steps of the playlist screen: what buttons, keys and drops do on its three pages.
#include <algorithm>
#include <utility>

#include "core/all.h"
#include "core/globals.h"
#include "playlists/lost_names.h"
#include "playlists/page_layout.h"
#include "playlists/playlist.h"
#include "ui/overmenu.h"

namespace {

constexpr const char* kFullPlaylist = "49 tracks is the most: remove one first";

int lastOf(int rows) {
    return std::max(rows - 1, 0);
}

}  // namespace

int c_playlist::rowsIn(int list) const {
    if (editPage == page::TRACKS && list == page::RIGHT) {
        return nbEntries;
    }
    if (editPage == page::BROWSE && list == page::LEFT) {
        return nbFamilles;
    }
    const bool shown = editFamille >= 0 && editFamille < nbFamilles;
    return shown && editPage != page::NEW_PLAYLIST ? familles[editFamille].nbTracks : 0;
}

int c_playlist::selectedRow(int list) const {
    if (list == page::RIGHT) {
        return selItem;
    }
    return editPage == page::BROWSE ? editFamille : selRow;
}

void c_playlist::holdSelection() {
    editFamille = std::clamp(editFamille, 0, lastOf(nbFamilles));
    if (editPage == page::TRACKS && nbFamilles == 0) {
        showBrowse();
    }
    if (editPage == page::NEW_PLAYLIST) {
        return;
    }
    selRow =
        editPage == page::BROWSE ? editFamille : std::clamp(selRow, 0, lastOf(rowsIn(page::LEFT)));
    selItem = std::clamp(selItem, 0, lastOf(rowsIn(page::RIGHT)));
    for (int list = page::LEFT; list <= page::RIGHT; ++list) {
        if (scroll[list].count != rowsIn(list)) {
            updateScroll(list, rowsIn(list));
        }
    }
}

void c_playlist::select(int list, int row) {
    if (list < page::LEFT || list > page::RIGHT || row < 0 || row >= rowsIn(list)) {
        return;
    }
    dragSource = list;
    if (list == page::RIGHT) {
        selItem = row;
        return;
    }
    selRow = row;
    if (editPage == page::BROWSE && row != editFamille) {
        editFamille = row;
        selItem = 0;
        initScroll(page::RIGHT, rowsIn(page::RIGHT));
    }
}

bool c_playlist::canUse(int button) const {
    const bool browse = editPage == page::BROWSE;
    const int row = selectedRow(dragSource);
    const bool chosen = row >= 0 && row < rowsIn(dragSource);
    switch (button) {
        case page::CREATE:
            return nbFamilles < kPlaylists;
        case page::EDIT:
            return nbFamilles > 0;
        case page::PREVIEW:
            if (dragSource == page::LEFT) {
                return !browse && chosen;
            }
            return chosen && (browse || isClipEntry(row));
        case page::DELETE:
            return browse ? nbFamilles > 0 : dragSource == page::LEFT && chosen;
        case page::OK:
            return !newName.empty();
        default:
            return true;
    }
}

// On the browse page a playlist goes onto edit and delete, a track onto preview alone.
bool c_playlist::takesDrop(int button) const {
    const bool browse = editPage == page::BROWSE;
    switch (button) {
        case page::EDIT:
            return browse && dragSource == page::LEFT && canUse(button);
        case page::DELETE:
            return (!browse || dragSource == page::LEFT) && canUse(button);
        case page::PREVIEW:
            return canUse(button);
        default:
            return false;
    }
}

void c_playlist::useButton(int button) {
    if (!canUse(button)) {
        return;
    }
    switch (button) {
        case page::CREATE:
            newName.clear();
            keyUnderPointer = -1;
            editPage = page::NEW_PLAYLIST;
            break;
        case page::EDIT:
            showTracks();
            break;
        case page::PREVIEW:
            startPreview();
            break;
        case page::DELETE:
            deleteSelected();
            break;
        case page::CONFIRM:
            confirmTracks();
            break;
        case page::OK:
            createNamed();
            break;
        case page::YES:
        case page::NO:
            answer(button == page::YES);
            break;
        case page::BACK:
        case page::CANCEL:
            goBack();
            break;
        default:
            break;
    }
}

void c_playlist::openSelection() {
    if (editPage == page::BROWSE && dragSource == page::LEFT) {
        useButton(page::EDIT);
    } else if (editPage == page::TRACKS && dragSource == page::RIGHT && selItem < nbEntries &&
               entryIsDir[selItem] != 0) {
        showFolder(entries[selItem]);
    } else {
        useButton(page::PREVIEW);
    }
}

void c_playlist::showBrowse() {
    editPage = page::BROWSE;
    selRow = editFamille;
    selItem = 0;
    dragSource = page::LEFT;
    initScroll(page::LEFT, nbFamilles);
    initScroll(page::RIGHT, familles[editFamille].nbTracks);
    scrollIntoView(scroll[page::LEFT], editFamille);
}

void c_playlist::showTracks() {
    enteredFamille = familles[editFamille];
    curDir = baseDir;
    showFolder("videos");
    editPage = page::TRACKS;
    selRow = 0;
    initScroll(page::LEFT, familles[editFamille].nbTracks);
    dragSource = familles[editFamille].nbTracks > 0 ? page::LEFT : page::RIGHT;
}

void c_playlist::showFolder(const std::string& entry) {
    // A copy: the listing is rewritten meanwhile, and `entry` may be one of its rows.
    readDir(std::string(entry));
    selItem = 0;
    initScroll(page::RIGHT, nbEntries);
}

void c_playlist::createNamed() {
    if (newName.empty() || nbFamilles >= kPlaylists) {
        return;
    }
    notice = lost::whyName(newName);
    if (!notice.empty()) {
        return;
    }
    createNewFamille();
    editFamille = nbFamilles - 1;
    showBrowse();
}

void c_playlist::typeKey(int key) {
    if (key == page::kKeyOk) {
        useButton(page::OK);
    } else if (key == page::kKeyDel) {
        if (!newName.empty()) {
            newName.pop_back();
        }
    } else if (newName.size() < page::kLongestName) {
        newName += edit_char(key);
    }
}

void c_playlist::confirmTracks() {
    saveFamille();
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

void c_playlist::goBack() {
    if (editPage == page::BROWSE) {
        leave();
    } else if (editPage == page::TRACKS && tracksChanged()) {
        question = ASK_SAVE;
    } else {
        showBrowse();
    }
}

void c_playlist::leave() {
    letGo();
    question = ASK_NOTHING;
    exitEditPlaylists();
    all->state = STATE_HOME;
}

void c_playlist::letGo() {
    press = PRESS_NOTHING;
    dragging = 0;
    dropRow = page::kNoDropRow;
    scroll[page::LEFT].active = 0;
    scroll[page::RIGHT].active = 0;
}

void c_playlist::answer(bool yes) {
    const int32_t asked = question;
    question = ASK_NOTHING;
    if (asked == ASK_DELETE && yes) {
        deleteFamille();
    } else if (asked == ASK_SAVE && yes) {
        confirmTracks();
    } else if (asked == ASK_SAVE) {
        discardTracks();
    }
}

void c_playlist::deleteSelected() {
    if (editPage == page::BROWSE) {
        question = ASK_DELETE;
    } else {
        removeTrack(editFamille, selRow);
    }
}

void c_playlist::deleteFamille() {
    const int pos = scroll[page::LEFT].pos;
    removeFamille(editFamille);
    saveFamille();
    editFamille = std::clamp(editFamille, 0, lastOf(nbFamilles));
    showBrowse();
    scroll[page::LEFT].pos = std::min(pos, scroll[page::LEFT].maxPos);
    // The list over the mix must not go on pointing at a playlist that is gone.
    overMenu->selected = std::clamp(overMenu->selected, 0, lastOf(nbFamilles));
}

void c_playlist::dropOnList(int row) {
    if (editPage == page::BROWSE && dragSource == page::LEFT) {
        moveFamilleTo(row);
    } else if (editPage == page::TRACKS && dragSource == page::LEFT) {
        moveTrackTo(row);
    } else if (editPage == page::TRACKS) {
        addEntryAt(row);
    }
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
    saveFamille();
}

void c_playlist::moveTrackTo(int row) {
    const int tracks = familles[editFamille].nbTracks;
    const int to = std::clamp(row, 0, tracks);
    if (selRow >= tracks || to == selRow || to == selRow + 1) {
        return;
    }
    if (tracks == kEditorTracks || tracks >= kTrackSlots) {
        notice = kFullPlaylist;
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

void c_playlist::insertEntry() {
    if (editPage != page::TRACKS || dragSource != page::RIGHT) {
        return;
    }
    addEntryAt(selRow + 1);
    scrollIntoView(scroll[page::LEFT], selRow);
}

bool c_playlist::isClipEntry(int row) const {
    return row >= 0 && row < nbEntries && (entryIsClip[row] != 0 || isFileMoxel(entries[row]));
}
