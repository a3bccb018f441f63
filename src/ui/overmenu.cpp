#include "ui/overmenu.h"

#include "core/all.h"
#include "core/globals.h"
#include "playlists/playlist.h"
#include "ui/lib.h"
#include "ui/ttf.h"

namespace {

constexpr int kBoxX = 30;
constexpr int kBoxWidth = 200;
constexpr int kRowX = 32;
constexpr int kRowWidth = 196;
constexpr int kRowHeight = 20;
constexpr int kEdge = 2;  // above the first row and below the last
constexpr short kNameX = 34;
constexpr short kCountX = 206;
constexpr int kBoxOpacity = 60;
constexpr int kRowOpacity = 30;
constexpr int kBoxColour = 0x000000;
constexpr int kSelectedRowColour = 0x999999;
constexpr int kSelectedTextColour = 0xFFFFFF;
constexpr int kTextColour = 0x707070;
constexpr int kHelpColour = 0xAAAAAA;
constexpr int kHelpAbove = 20;

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

// Deliberate: the box stands 30 pixels from the window's left edge and is centred in the window,
// not in the picture. [quirk_over_menu_stands_in_the_window]
void c_overMenu::drawOverMenu(SDL_Surface* s) {
    const int boxHeight = playlist->nbFamilles * kRowHeight + 2 * kEdge;
    const int top = (all->appH - boxHeight) / 2;
    _lib->CSS_rectNoBorder(kBoxX, top, kBoxWidth, boxHeight, kBoxColour, kBoxOpacity);
    for (int row = 0; row < playlist->nbFamilles; ++row) {
        drawRow(s, playlist->familles[row], top + kEdge + kRowHeight * row, row == selected);
    }
    ttf->texteFilled(s, "X load   Z home", kRowX, static_cast<short>(top - kHelpAbove), kHelpColour,
                     0, kBoxColour);
}
