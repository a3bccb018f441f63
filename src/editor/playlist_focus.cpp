// Keys on the buttons: which one they are on, and the row that MOVE lets them carry.
#include <algorithm>

#include "layout/page_layout.h"
#include "playlists/playlist.h"

void c_playlist::enterButtons() {
    focus = page::kNoButton;
    moveFocus(1);
}

void c_playlist::leaveButtons() {
    focus = page::kNoButton;
}

// Every row of buttons has one that can always be used.
void c_playlist::moveFocus(int step) {
    const auto places = page::buttonsOf(editPage);
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
void c_playlist::useFocused() {
    useButton(focus);
    if (focus != page::kNoButton && !canUse(focus)) {
        leaveButtons();
    }
}

void c_playlist::pickUp() {
    if (editPage == page::TRACKS && isFullToMove()) {
        return;
    }
    dragSource = page::LEFT;
    focus = page::kNoButton;
    carriedFrom = selectedRow(page::LEFT);
    scrollIntoView(scroll[page::LEFT], carriedFrom);
}

// A row lands before the one that it is moved to: one further up, two further down.
void c_playlist::carryOne(int step) {
    const int from = selectedRow(page::LEFT);
    const int target = step < 0 ? from - 1 : from + 2;
    if (target < 0 || target > rowsIn(page::LEFT)) {
        return;
    }
    if (editPage == page::TRACKS) {
        moveTrackTo(target);
        return;
    }
    deplacerFamille(from, target);
    swapMarks(from, from + step);
    editFamille = from + step;
    selRow = editFamille;
}

// A scan of every file would take too long on the way.
void c_playlist::swapMarks(int one, int other) {
    Famille& a = familles[one];
    Famille& b = familles[other];
    std::swap(a.nbMissing, b.nbMissing);
    std::swap(a.weight, b.weight);
    for (int t = 0; t < kTrackSlots; ++t) {
        std::swap(a.tracks[t].missing, b.tracks[t].missing);
    }
}

void c_playlist::carry(int step) {
    carryOne(step);
    scrollIntoView(scroll[page::LEFT], selectedRow(page::LEFT));
}

void c_playlist::setDown() {
    const bool moved = carriedFrom >= 0 && carriedFrom != selectedRow(page::LEFT);
    carriedFrom = -1;
    if (moved && editPage == page::BROWSE) {
        saveChange();
    }
}

void c_playlist::putBack() {
    for (int way = carriedFrom - selectedRow(page::LEFT); way != 0; way += way < 0 ? 1 : -1) {
        carry(way < 0 ? -1 : 1);
    }
    carriedFrom = -1;
}
