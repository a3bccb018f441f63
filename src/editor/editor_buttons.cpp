// The buttons of the playlist screen's pages, by mouse and by keys.
#include <algorithm>

#include "editor/editor.h"

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
