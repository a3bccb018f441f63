#include "ui/overmenu.h"

#include <algorithm>
#include <string>

#include "core/all.h"
#include "core/globals.h"
#include "draw/lib.h"
#include "draw/painter.h"
#include "editor/editor.h"
#include "layout/colours.h"
#include "layout/name_rooms.h"
#include "playlists/playlist.h"

namespace {

constexpr int kBoxX = 30;
constexpr int kBoxWidth = 200;
constexpr int kRowX = 32;
constexpr int kRowWidth = 196;
constexpr int kBoxOpacity = 60;
constexpr int kRowOpacity = 30;
constexpr int kSelectedRowColour = 0x999999;
constexpr uint32_t kTextColour = 0x707070;
constexpr uint32_t kHelpColour = 0xAAAAAA;
constexpr int kHelpAbove = 20;

int boxHeightOf(int rows) {
    return rows * layout::kOverMenuRowHeight + 2 * layout::kOverMenuEdge;
}

// Rows that the window shows. All while they fit; a longer list leaves room for the help text too,
// and for the ground, which the work surface's height bounds.
int rowsShown(int rows, int windowHeight, int workHeight) {
    if (boxHeightOf(rows) <= windowHeight) {
        return rows;
    }
    return (std::min(windowHeight, workHeight) - boxHeightOf(0) - 2 * kHelpAbove) /
           layout::kOverMenuRowHeight;
}

}  // namespace

void c_overMenu::initOverMenu() {
    selected = playlist->currentFamille;
    editor->listOverMix = &selected;
}

// Deliberate: the box stands 30 pixels from the window's left edge and is centred in the window,
// not in the picture. [quirk_over_menu_stands_in_the_window]
void c_overMenu::drawOverMenu(SDL_Surface* s) {
    const int rows = playlist->nbFamilles;
    const int shown = std::max(rowsShown(rows, all->appH, screen[0]->h), 1);
    // The selection stays in the middle of a list that scrolls.
    const int first = std::clamp(selected - shown / 2, 0, std::max(rows - shown, 0));
    const int last = std::min(first + shown, rows);
    const int boxHeight = boxHeightOf(last - first);
    const int top = (all->appH - boxHeight) / 2;
    Painter painter(s);
    _lib->CSS_rectNoBorder(kBoxX, top, kBoxWidth, boxHeight, colours::kBlack, kBoxOpacity);
    for (int row = first; row < last; ++row) {
        const Famille& famille = playlist->familles[row];
        const int y = top + layout::kOverMenuEdge + layout::kOverMenuRowHeight * (row - first);
        if (row == selected) {
            _lib->CSS_rectNoBorder(kRowX, y, kRowWidth, layout::kOverMenuRowHeight,
                                   kSelectedRowColour, kRowOpacity);
        }
        const uint32_t ink = row == selected ? colours::kWhite : kTextColour;
        painter.text(famille.name.c_str(), layout::kOverMenuNameX, y, ink, kLargeFont);
        painter.text(std::to_string(famille.nbTracks).c_str(), layout::kOverMenuCountX, y, ink,
                     kLargeFont);
    }
    painter.textOn(colours::kBlack, "X load   Z home", kRowX, top - kHelpAbove, kHelpColour);
}
