// What the playlist screen changes in playlists: names, copies, moves, deletes, adds, and saves.
#include <algorithm>
#include <utility>

#include "editor/editor.h"
#include "editor/names.h"

namespace {

constexpr const char* kFullPlaylist = "49 tracks is the most: remove one first";
constexpr const char* kNotSaved =
    "the playlists could not be saved: nothing is lost yet, try again";
constexpr const char* kNotSavedYet =
    "the playlists could not be saved: the change goes with the next save, or with the end";

constexpr const char* kNameNotSaved = "the playlists could not be saved: try again, or go back";

// The marks go with the playlists: a scan of every file would take too long on the way.
void swapMarks(Famille& one, Famille& other) {
    std::swap(one.nbMissing, other.nbMissing);
    std::swap(one.weight, other.weight);
    for (int t = 0; t < kTrackSlots; ++t) {
        std::swap(one.tracks[t].missing, other.tracks[t].missing);
    }
}

}  // namespace

// The change stands whether or not it could be saved; the next save takes it along.
void Editor::saveChange() {
    if (!model.saveFamille()) {
        notice = kNotSavedYet;
    }
}

// Where it cannot be saved the page stays, and what was edited with it.
void Editor::confirmTracks() {
    if (!model.saveFamille()) {
        notice = kNotSaved;
        return;
    }
    showBrowse();
}

void Editor::discardTracks() {
    std::swap(shown(), enteredFamille);
    showBrowse();
}

bool Editor::tracksChanged() const {
    const Famille& now = shown();
    const auto samePath = [](const Track& a, const Track& b) { return a.path == b.path; };
    return now.nbTracks != enteredFamille.nbTracks ||
           !std::equal(now.tracks, now.tracks + now.nbTracks, enteredFamille.tracks, samePath);
}

void Editor::deleteSelected() {
    if (onPage(page::BROWSE)) {
        ask(ASK_DELETE);
    } else {
        model.removeTrack(model.editFamille, model.selRow);
        model.selRow = std::clamp(model.selRow, 0, lastOf(shown().nbTracks));
    }
}

void Editor::deleteFamille() {
    const int pos = model.scroll[page::LEFT].pos;
    model.removeFamille(model.editFamille);
    saveChange();
    model.editFamille = std::clamp(model.editFamille, 0, lastOf(model.nbFamilles));
    showBrowse();
    model.scroll[page::LEFT].pos = std::min(pos, model.scroll[page::LEFT].maxPos);
    // The list over the mix must not go on pointing at a playlist that is gone.
    if (listOverMix != nullptr) {
        *listOverMix = std::clamp(*listOverMix, 0, lastOf(model.nbFamilles));
    }
}

// Behind the selected one, and selected itself. Turning records round takes no memory.
void Editor::copySelected() {
    Famille& copy = model.familles[model.nbFamilles];
    copy = shown();
    copy.name = names::copyOf(copy.name, model);
    notice = names::whyLost(copy.name);
    if (!notice.empty()) {
        return;
    }
    ++model.editFamille;
    std::rotate(model.familles + model.editFamille, model.familles + model.nbFamilles,
                model.familles + model.nbFamilles + 1);
    ++model.nbFamilles;
    saveChange();
    showBrowse();
}

// Before the row or behind it is where it stands already.
void Editor::moveFamilleTo(int row) {
    const int from = model.editFamille;
    const int to = std::clamp(row, 0, model.nbFamilles);
    if (from >= model.nbFamilles || to == from || to == from + 1) {
        return;
    }
    model.deplacerFamille(from, to);
    model.editFamille = to > from ? to - 1 : to;
    model.selRow = model.editFamille;
    saveChange();
}

// A full playlist keeps its order, and says why.
bool Editor::isFullToMove() {
    if (shown().isFull()) {
        notice = kFullPlaylist;
    }
    return shown().isFull();
}

void Editor::moveTrackTo(int row) {
    const int tracks = shown().nbTracks;
    const int to = std::clamp(row, 0, tracks);
    if (model.selRow >= tracks || to == model.selRow || to == model.selRow + 1 || isFullToMove()) {
        return;
    }
    model.moveTrack(model.selRow, to);
    model.selRow = to > model.selRow ? to - 1 : to;
}

void Editor::addEntryAt(int row) {
    if (model.selItem >= model.nbEntries || !model.isFileMoxel(model.entries[model.selItem])) {
        return;
    }
    notice = names::whyPathLost(model.browsedFolder() + model.entries[model.selItem]);
    if (!notice.empty()) {
        return;
    }
    const int before = shown().nbTracks;
    model.addTrack(model.entries[model.selItem], model.editFamille, row);
    if (shown().nbTracks == before) {
        notice = kFullPlaylist;
        return;
    }
    model.selRow = std::clamp(row, 0, before);
}

void Editor::addBehindSelected() {
    addEntryAt(model.selRow + 1);
    scrollIntoView(model.scroll[page::LEFT], model.selRow);
}

void Editor::insertEntry() {
    if (onPage(page::TRACKS) && model.dragSource == page::RIGHT) {
        addBehindSelected();
    }
}

void Editor::dropOnList(int row) {
    if (onPage(page::BROWSE) && model.dragSource == page::LEFT) {
        moveFamilleTo(row);
    } else if (onPage(page::TRACKS) && model.dragSource == page::LEFT) {
        moveTrackTo(row);
    } else if (onPage(page::TRACKS)) {
        addEntryAt(row);
    }
}

void Editor::pickUp() {
    if (onPage(page::TRACKS) && isFullToMove()) {
        return;
    }
    model.dragSource = page::LEFT;
    focus = page::kNoButton;
    carriedFrom = selectedRow(page::LEFT);
    scrollIntoView(model.scroll[page::LEFT], carriedFrom);
}

// A row lands before the one that it is moved to: one further up, two further down.
void Editor::carryOne(int step) {
    const int from = selectedRow(page::LEFT);
    const int target = step < 0 ? from - 1 : from + 2;
    if (target < 0 || target > rowsIn(page::LEFT)) {
        return;
    }
    if (onPage(page::TRACKS)) {
        moveTrackTo(target);
        return;
    }
    model.deplacerFamille(from, target);
    swapMarks(model.familles[from], model.familles[from + step]);
    model.editFamille = from + step;
    model.selRow = model.editFamille;
}

void Editor::carry(int step) {
    carryOne(step);
    scrollIntoView(model.scroll[page::LEFT], selectedRow(page::LEFT));
}

void Editor::setDown() {
    const bool moved = carriedFrom >= 0 && carriedFrom != selectedRow(page::LEFT);
    carriedFrom = -1;
    if (moved && onPage(page::BROWSE)) {
        saveChange();
    }
}

void Editor::putBack() {
    for (int way = carriedFrom - selectedRow(page::LEFT); way != 0; way += way < 0 ? 1 : -1) {
        carry(way < 0 ? -1 : 1);
    }
    carriedFrom = -1;
}

void Editor::openNamePage(bool forOld) {
    renaming = forOld ? 1 : 0;
    model.newName = oldName();
    // Who comes by keys finds a key lit.
    model.keyUnderPointer = focus != page::kNoButton ? 0 : -1;
    focus = page::kNoButton;
    model.editPage = page::NEW_PLAYLIST;
}

bool Editor::takesLetters() const {
    return onPage(page::NEW_PLAYLIST) && question == ASK_NOTHING;
}

std::string Editor::oldName() const {
    return renaming != 0 ? shown().name : "";
}

void Editor::typeKey(int key) {
    if (key == page::kKeyOk) {
        useButton(page::OK);
    } else if (key == page::kKeyDel) {
        // A letter of an old name may be several bytes of UTF-8.
        if (!model.newName.empty()) {
            model.newName = names::startOf(model.newName, model.newName.size() - 1);
        }
    } else if (model.newName.size() < page::kLongestName) {
        model.newName += model.edit_char(key);
    }
}

// Where it cannot be saved nothing is new, and the page keeps its name.
void Editor::finishName() {
    notice = model.newName != oldName() ? names::whyLost(model.newName) : "";
    if (!notice.empty() || !canUse(renaming != 0 ? page::RENAME : page::CREATE)) {
        return;
    }
    if (renaming != 0 ? renameNamed() : createNamed()) {
        showBrowse();
    } else {
        notice = kNameNotSaved;
    }
}

bool Editor::createNamed() {
    if (!model.createNewFamille()) {
        --model.nbFamilles;
        return false;
    }
    model.editFamille = model.nbFamilles - 1;
    return true;
}

bool Editor::renameNamed() {
    std::string& name = shown().name;
    std::string other = model.newName;
    std::swap(name, other);
    const bool saved = name == other || model.saveXML();
    if (!saved) {
        std::swap(name, other);
    }
    return saved;
}
