// The names of playlists: typed on the name page, given to new playlists, old ones and copies.
#include <algorithm>
#include <string>
#include <utility>

#include "core/globals.h"
#include "editor/lost_names.h"
#include "layout/page_layout.h"
#include "playlists/playlist.h"

namespace {

constexpr const char* kNotSaved = "the playlists could not be saved: try again, or go back";

// The first so many bytes, and no character of UTF-8 cut in two.
std::string startOf(const std::string& name, size_t bytes) {
    if (name.size() <= bytes) {
        return name;
    }
    const auto continues = [](char byte) { return (static_cast<uint8_t>(byte) & 0xC0) == 0x80; };
    while (bytes > 0 && continues(name[bytes])) {
        --bytes;
    }
    return name.substr(0, bytes);
}

// "set-2" is a copy of "set": the next one is "set-3", not "set-2-2".
std::string withoutNumber(const std::string& name) {
    const size_t digits = name.find_last_not_of("0123456789");
    const bool numbered = digits != std::string::npos && digits > 0 && name[digits] == '-' &&
                          digits + 1 < name.size();
    return numbered ? name.substr(0, digits) : name;
}

}  // namespace

void c_playlist::openNamePage(bool forOld) {
    newName = forOld ? familles[editFamille].name : "";
    renaming = forOld ? 1 : 0;
    // Who comes by keys finds a key lit.
    keyUnderPointer = focus != page::kNoButton ? 0 : -1;
    focus = page::kNoButton;
    editPage = page::NEW_PLAYLIST;
}

bool c_playlist::takesLetters() const {
    return editPage == page::NEW_PLAYLIST && question == ASK_NOTHING;
}

bool c_playlist::nameTouched() const {
    return newName != (renaming != 0 ? familles[editFamille].name : "");
}

void c_playlist::typeKey(int key) {
    if (key == page::kKeyOk) {
        useButton(page::OK);
    } else if (key == page::kKeyDel) {
        // A letter of an old name may be several bytes of UTF-8.
        if (!newName.empty()) {
            newName = startOf(newName, newName.size() - 1);
        }
    } else if (newName.size() < page::kLongestName) {
        newName += edit_char(key);
    }
}

void c_playlist::finishName() {
    notice = nameTouched() ? lost::whyName(newName) : "";
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
void c_playlist::createNamed() {
    if (newName.empty() || nbFamilles >= kPlaylists) {
        return;
    }
    if (!createNewFamille()) {
        --nbFamilles;
        notice = kNotSaved;
        return;
    }
    editFamille = nbFamilles - 1;
    showBrowse();
}

void c_playlist::renameNamed() {
    if (newName.empty() || editFamille >= nbFamilles) {
        return;
    }
    std::string& name = familles[editFamille].name;
    std::string other = newName;
    std::swap(name, other);
    if (name != other && !saveXML()) {
        std::swap(name, other);
        notice = kNotSaved;
        return;
    }
    showBrowse();
}

// The name with the lowest number from 2 on that no playlist has, as long as a typed name may be.
std::string c_playlist::copyName(const std::string& name) const {
    const std::string stem = withoutNumber(name);
    const auto taken = [this](const std::string& wanted) {
        return std::any_of(familles, familles + nbFamilles,
                           [&](const Famille& famille) { return famille.name == wanted; });
    };
    // Guard: with 50 playlists at most one of the numbers is free.
    std::string copy;
    for (int number = 2; number <= kPlaylists + 2; ++number) {
        std::string end = "-";
        end += std::to_string(number);
        copy = startOf(stem, page::kLongestName - end.size()) + end;
        if (!taken(copy)) {
            break;
        }
    }
    return copy;
}
