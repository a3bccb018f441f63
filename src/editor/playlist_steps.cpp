// The steps of the playlist screen: what buttons, keys and drops do on its three pages.
#include <algorithm>

#include "core/all.h"
#include "core/globals.h"
#include "layout/page_layout.h"
#include "playlists/playlist.h"

namespace {

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
    if (carriedFrom >= rowsIn(page::LEFT)) {
        carriedFrom = -1;
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
        case page::RENAME:
            return nbFamilles > 0;
        case page::COPY:
            return nbFamilles > 0 && nbFamilles < kPlaylists;
        case page::MOVE:
            return browse ? nbFamilles > 1
                          : dragSource == page::LEFT && rowsIn(page::LEFT) > 1 && chosen;
        case page::ADD:
            return isClipEntry(selItem);
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

// On the browse page a playlist goes onto the buttons, a track onto preview alone.
bool c_playlist::takesDrop(int button) const {
    const bool browse = editPage == page::BROWSE;
    switch (button) {
        case page::EDIT:
        case page::RENAME:
        case page::COPY:
            return browse && dragSource == page::LEFT && canUse(button);
        case page::ADD:
            return !browse && dragSource == page::RIGHT && canUse(button);
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
        case page::RENAME:
            openNamePage(button == page::RENAME);
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
        case page::COPY:
            copySelected();
            break;
        case page::MOVE:
            pickUp();
            break;
        case page::ADD:
            addBehindSelected();
            break;
        case page::CONFIRM:
            confirmTracks();
            break;
        case page::OK:
            finishName();
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
    focus = page::kNoButton;
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
    focus = page::kNoButton;
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

void c_playlist::goBack() {
    if (editPage == page::BROWSE) {
        leave();
    } else if (editPage == page::TRACKS && tracksChanged()) {
        ask(ASK_SAVE);
    } else if (editPage == page::NEW_PLAYLIST && nameTouched()) {
        ask(ASK_DISCARD);
    } else {
        showBrowse();
    }
}

void c_playlist::leave() {
    letGo();
    question = ASK_NOTHING;
    focus = page::kNoButton;
    closeGate(gate, true, tempsActuel);
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

// The answer that loses nothing is chosen at first.
void c_playlist::ask(Question asked) {
    question = asked;
    chosenYes = asked == ASK_SAVE ? 1 : 0;
}

void c_playlist::takeQuestionBack() {
    question = ASK_NOTHING;
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
    } else if (asked == ASK_DISCARD && yes) {
        showBrowse();
    }
}

bool c_playlist::isClipEntry(int row) const {
    return row >= 0 && row < nbEntries && (entryIsClip[row] != 0 || isFileMoxel(entries[row]));
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
