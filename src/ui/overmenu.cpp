#include "ui/overmenu.h"

#include <algorithm>

#include "core/all.h"
#include "core/globals.h"
#include "draw/lib.h"
#include "draw/ttf.h"
#include "layout/name_rooms.h"
#include "playlists/playlist.h"

namespace {

constexpr int kBoxX = 30;
constexpr int kBoxWidth = 200;
constexpr int kRowX = 32;
constexpr int kRowWidth = 196;
constexpr int kRowHeight = layout::kOverMenuRowHeight;
constexpr int kEdge = layout::kOverMenuEdge;
constexpr short kNameX = layout::kOverMenuNameX;
constexpr short kCountX = layout::kOverMenuCountX;
constexpr int kBoxOpacity = 60;
constexpr int kRowOpacity = 30;
constexpr int kBoxColour = 0x000000;
constexpr int kSelectedRowColour = 0x999999;
constexpr int kSelectedTextColour = 0xFFFFFF;
constexpr int kTextColour = 0x707070;
constexpr int kHelpColour = 0xAAAAAA;
constexpr int kHelpAbove = 20;

int boxHeightOf(int rows) {
    return rows * kRowHeight + 2 * kEdge;
}

void drawRow(SDL_Surface* s, const Famille& famille, int y, bool isSelected) {
    if (isSelected) {
        _lib->CSS_rectNoBorder(kRowX, y, kRowWidth, kRowHeight, kSelectedRowColour, kRowOpacity);
    }
    const int colour = isSelected ? kSelectedTextColour : kTextColour;
    ttf->drawTextH(s, famille.name.c_str(), kNameX, static_cast<short>(y), colour, 1);
    ttf->drawIntH(s, famille.nbTracks, kCountX, static_cast<short>(y), colour, 1);
}

}  // namespace

void c_overMenu::initOverMenu() {
    selected = playlist->currentFamille;
}

// Rows that the window shows. All while they fit; a longer list leaves room for the help text too,
// and for the ground, which the work surface's height bounds.
int rowsShown(int playlists) {
    if (boxHeightOf(playlists) <= all->appH) {
        return playlists;
    }
    return (std::min(all->appH, screen[0]->h) - boxHeightOf(0) - 2 * kHelpAbove) / kRowHeight;
}

// Deliberate: the box stands 30 pixels from the window's left edge and is centred in the window,
// not in the picture. [quirk_over_menu_stands_in_the_window]
void c_overMenu::drawOverMenu(SDL_Surface* s) {
    const int shown = std::max(rowsShown(playlist->nbFamilles), 1);
    // The selection stays in the middle of a list that scrolls.
    const int first =
        std::clamp(selected - shown / 2, 0, std::max(playlist->nbFamilles - shown, 0));
    const int last = std::min(first + shown, playlist->nbFamilles);
    const int boxHeight = boxHeightOf(last - first);
    const int top = (all->appH - boxHeight) / 2;
    _lib->CSS_rectNoBorder(kBoxX, top, kBoxWidth, boxHeight, kBoxColour, kBoxOpacity);
    for (int row = first; row < last; ++row) {
        drawRow(s, playlist->familles[row], top + kEdge + kRowHeight * (row - first),
                row == selected);
    }
    ttf->texteFilled(s, "X load   Z home", kRowX, static_cast<short>(top - kHelpAbove), kHelpColour,
                     0, kBoxColour);
}
