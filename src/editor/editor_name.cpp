// The name page: a new playlist's name or an old one's is typed, and taken.
#include <utility>

#include "editor/editor.h"
#include "editor/names.h"

namespace {

constexpr const char* kNotSaved = "the playlists could not be saved: try again, or go back";

}  // namespace

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

void Editor::finishName() {
    notice = model.newName != oldName() ? names::whyLost(model.newName) : "";
    if (!notice.empty()) {
        return;
    }
    if (renaming != 0) {
        renameNamed();
    } else {
        createNamed();
    }
}

// Where it cannot be saved there is no new playlist, and the page keeps its name.
void Editor::createNamed() {
    if (model.newName.empty() || model.nbFamilles >= kPlaylists) {
        return;
    }
    if (!model.createNewFamille()) {
        --model.nbFamilles;
        notice = kNotSaved;
        return;
    }
    model.editFamille = model.nbFamilles - 1;
    showBrowse();
}

void Editor::renameNamed() {
    if (model.newName.empty() || model.editFamille >= model.nbFamilles) {
        return;
    }
    std::string& name = shown().name;
    std::string other = model.newName;
    std::swap(name, other);
    if (name != other && !model.saveXML()) {
        std::swap(name, other);
        notice = kNotSaved;
        return;
    }
    showBrowse();
}
