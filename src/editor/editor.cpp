// The playlist screen's lists, rows and buttons, and the ways from page to page.
#include "editor/editor.h"

#include <algorithm>

#include "core/all.h"
#include "core/globals.h"

namespace {

// What went wrong can be said when there is no memory, too.
constexpr size_t kRoomForNotice = 200;
constexpr int kDoubleClickMs = 400;

}  // namespace

// The click that opens the screen is not for its page.
Editor::Editor(c_playlist& lists) : model(lists) {
    shut(true);
    notice.reserve(kRoomForNotice);
}

int Editor::rowsIn(int list) const {
    if (onPage(page::TRACKS) && list == page::RIGHT) {
        return model.nbEntries;
    }
    if (onPage(page::BROWSE) && list == page::LEFT) {
        return model.nbFamilles;
    }
    const bool there = model.editFamille >= 0 && model.editFamille < model.nbFamilles;
    return there && !onPage(page::NEW_PLAYLIST) ? shown().nbTracks : 0;
}

int Editor::selectedRow(int list) const {
    if (list == page::RIGHT) {
        return model.selItem;
    }
    return onPage(page::BROWSE) ? model.editFamille : model.selRow;
}

void Editor::holdSelection() {
    model.editFamille = std::clamp(model.editFamille, 0, lastOf(model.nbFamilles));
    if (onPage(page::TRACKS) && model.nbFamilles == 0) {
        showBrowse();
    }
    if (onPage(page::NEW_PLAYLIST)) {
        return;
    }
    model.selRow = std::clamp(selectedRow(page::LEFT), 0, lastOf(rowsIn(page::LEFT)));
    model.selItem = std::clamp(model.selItem, 0, lastOf(rowsIn(page::RIGHT)));
    for (int list = page::LEFT; list <= page::RIGHT; ++list) {
        if (model.scroll[list].count != rowsIn(list)) {
            model.updateScroll(list, rowsIn(list));
        }
    }
    if (carriedFrom >= rowsIn(page::LEFT)) {
        carriedFrom = -1;
    }
}

void Editor::select(int list, int row) {
    if (list < page::LEFT || list > page::RIGHT || row < 0 || row >= rowsIn(list)) {
        return;
    }
    model.dragSource = list;
    if (list == page::RIGHT) {
        model.selItem = row;
        return;
    }
    model.selRow = row;
    if (onPage(page::BROWSE) && row != model.editFamille) {
        model.editFamille = row;
        model.selItem = 0;
        model.initScroll(page::RIGHT, rowsIn(page::RIGHT));
    }
}

std::string Editor::selectedText() const {
    const bool browse = onPage(page::BROWSE);
    const bool left = model.dragSource == page::LEFT;
    const int row = left ? model.selRow : model.selItem;
    const int famille = browse ? model.selRow : model.editFamille;
    if (row < 0 || (!browse && !onPage(page::TRACKS)) ||
        (!left && model.dragSource != page::RIGHT)) {
        return "";
    }
    if (!browse && !left) {
        return row < model.nbEntries ? model.entries[row] : "";
    }
    if (famille < 0 || famille >= model.nbFamilles) {
        return "";
    }
    const Famille& from = model.familles[famille];
    if (browse && left) {
        return from.name;
    }
    return row < from.nbTracks ? from.tracks[row].path : "";
}

bool Editor::isClipEntry(int row) const {
    return row >= 0 && row < model.nbEntries &&
           (model.entryIsClip[row] != 0 || model.isFileMoxel(model.entries[row]));
}

void Editor::showBrowse() {
    model.editPage = page::BROWSE;
    focus = page::kNoButton;
    model.selRow = model.editFamille;
    model.selItem = 0;
    model.dragSource = page::LEFT;
    model.initScroll(page::LEFT, model.nbFamilles);
    model.initScroll(page::RIGHT, shown().nbTracks);
    scrollIntoView(model.scroll[page::LEFT], model.editFamille);
}

void Editor::showTracks() {
    enteredFamille = shown();
    model.curDir = model.baseDir;
    showFolder("videos");
    model.editPage = page::TRACKS;
    focus = page::kNoButton;
    model.selRow = 0;
    model.initScroll(page::LEFT, shown().nbTracks);
    model.dragSource = shown().nbTracks > 0 ? page::LEFT : page::RIGHT;
}

void Editor::showFolder(const std::string& entry) {
    // A copy: the listing is rewritten meanwhile, and `entry` may be one of its rows.
    explorer.enter(model, std::string(entry));
    model.selItem = 0;
    model.initScroll(page::RIGHT, model.nbEntries);
}

void Editor::openSelection() {
    const int list = model.dragSource;
    if (onPage(page::BROWSE) && list == page::LEFT) {
        useButton(page::EDIT);
    } else if (onPage(page::TRACKS) && list == page::RIGHT && model.selItem < model.nbEntries &&
               model.entryIsDir[model.selItem] != 0) {
        showFolder(model.entries[model.selItem]);
    } else {
        useButton(page::PREVIEW);
    }
}

void Editor::goBack() {
    if (onPage(page::BROWSE)) {
        leave();
    } else if (onPage(page::TRACKS) && tracksChanged()) {
        ask(ASK_SAVE);
    } else if (onPage(page::NEW_PLAYLIST) && model.newName != oldName()) {
        ask(ASK_DISCARD);
    } else {
        showBrowse();
    }
}

void Editor::leave() {
    letGo();
    question = ASK_NOTHING;
    focus = page::kNoButton;
    shut(true);
    model.exitEditPlaylists();
    all->state = STATE_HOME;
}

// The answer that loses nothing is chosen at first.
void Editor::ask(Question asked) {
    question = asked;
    chosenYes = asked == ASK_SAVE ? 1 : 0;
}

void Editor::answer(bool yes) {
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

void Editor::letGo() {
    press = PRESS_NOTHING;
    model.dragging = 0;
    model.dropRow = page::kNoDropRow;
    model.scroll[page::LEFT].active = 0;
    model.scroll[page::RIGHT].active = 0;
}

bool Editor::isDoubleClick(int list, int row, bool takes) {
    const int64_t passed = msBetween(lastPressMs, tempsActuel);
    const bool twice = takes && pressList == list && lastPressRow == row && passed >= 0 &&
                       passed <= kDoubleClickMs;
    lastPressRow = takes && !twice ? row : -1;
    lastPressMs = tempsActuel;
    return twice;
}

void Editor::shut(bool buttonDown) {
    closeGate(gate, buttonDown, tempsActuel);
}

bool Editor::isShut(bool buttonDown) {
    return gateHolds(gate, buttonDown, tempsActuel);
}

bool Editor::canUse(int button) const {
    const bool browse = onPage(page::BROWSE);
    const int row = selectedRow(model.dragSource);
    const bool chosen = row >= 0 && row < rowsIn(model.dragSource);
    switch (button) {
        case page::CREATE:
            return model.nbFamilles < kPlaylists;
        case page::EDIT:
        case page::RENAME:
            return model.nbFamilles > 0;
        case page::COPY:
            return model.nbFamilles > 0 && model.nbFamilles < kPlaylists;
        case page::MOVE:
            return browse ? model.nbFamilles > 1
                          : model.dragSource == page::LEFT && rowsIn(page::LEFT) > 1 && chosen;
        case page::ADD:
            return isClipEntry(model.selItem);
        case page::PREVIEW:
            if (model.dragSource == page::LEFT) {
                return !browse && chosen;
            }
            return chosen && (browse || isClipEntry(row));
        case page::DELETE:
            return browse ? model.nbFamilles > 0 : model.dragSource == page::LEFT && chosen;
        case page::OK:
            return !model.newName.empty();
        default:
            return true;
    }
}

// On the browse page a playlist goes onto the buttons, a track onto preview alone.
bool Editor::takesDrop(int button) const {
    const bool browse = onPage(page::BROWSE);
    switch (button) {
        case page::EDIT:
        case page::RENAME:
        case page::COPY:
            return browse && model.dragSource == page::LEFT && canUse(button);
        case page::ADD:
            return !browse && model.dragSource == page::RIGHT && canUse(button);
        case page::DELETE:
            return (!browse || model.dragSource == page::LEFT) && canUse(button);
        case page::PREVIEW:
            return canUse(button);
        default:
            return false;
    }
}

void Editor::useButton(int button) {
    static constexpr struct {
        page::Button button;
        void (*use)(Editor&);
    } kUses[] = {
        {page::CREATE, [](Editor& on) { on.openNamePage(false); }},
        {page::RENAME, [](Editor& on) { on.openNamePage(true); }},
        {page::EDIT, [](Editor& on) { on.showTracks(); }},
        {page::PREVIEW, [](Editor& on) { on.startPreview(); }},
        {page::DELETE, [](Editor& on) { on.deleteSelected(); }},
        {page::COPY, [](Editor& on) { on.copySelected(); }},
        {page::MOVE, [](Editor& on) { on.pickUp(); }},
        {page::ADD, [](Editor& on) { on.addBehindSelected(); }},
        {page::CONFIRM, [](Editor& on) { on.confirmTracks(); }},
        {page::OK, [](Editor& on) { on.finishName(); }},
        {page::YES, [](Editor& on) { on.answer(true); }},
        {page::NO, [](Editor& on) { on.answer(false); }},
        {page::BACK, [](Editor& on) { on.goBack(); }},
        {page::CANCEL, [](Editor& on) { on.goBack(); }},
    };
    for (const auto& each : kUses) {
        if (each.button == button && canUse(button)) {
            each.use(*this);
            return;
        }
    }
}

void Editor::enterButtons() {
    focus = page::kNoButton;
    moveFocus(1);
}

// Every row of buttons has one that can always be used.
void Editor::moveFocus(int step) {
    const auto places = page::buttonsOf(model.editPage);
    const int count = static_cast<int>(places.size());
    int at = step > 0 ? -1 : count;
    for (int i = 0; i < count; ++i) {
        at = places[static_cast<size_t>(i)].button == focus ? i : at;
    }
    for (int tried = 0; tried < count; ++tried) {
        at = (at + step + count) % count;
        const page::Button button = places[static_cast<size_t>(at)].button;
        if (canUse(button)) {
            focus = button;
            return;
        }
    }
}

// The keys stay on it for as long as it can be used again: pressed once too often it does nothing.
void Editor::useFocused() {
    useButton(focus);
    if (focus != page::kNoButton && !canUse(focus)) {
        leaveButtons();
    }
}
