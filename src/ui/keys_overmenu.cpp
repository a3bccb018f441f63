// What the keys do while the list of playlists is open over the mix.
#include <SDL.h>

#include "core/all.h"
#include "core/globals.h"
#include "input/keys.h"
#include "mixer/mix.h"
#include "playlists/playlist.h"
#include "ui/overmenu.h"

namespace {

void loadSelection(const c_keys& input) {
    if (!input.pressed(KEY_X) && !input.pressed(PAD_CONFIRM)) {
        return;
    }
    playlist->currentFamille = overMenu->selected;
    playlist->clearMix();
    mix->initMix();
    playlist->initLoad(playlist->currentFamille);
    all->subState = SUB_PERFORMING;
}

void closeMenu(const c_keys& input) {
    if (input.pressed(KEY_RETURN)) {
        all->subState = SUB_PERFORMING;
    }
}

void moveSelection(const c_keys& input) {
    if ((input.pressed(KEY_DOWN) || input.pressed(PAD_DOWN)) &&
        overMenu->selected < playlist->nbFamilles - 1) {
        ++overMenu->selected;
    }
    if ((input.pressed(KEY_UP) || input.pressed(PAD_UP)) && overMenu->selected > 0) {
        --overMenu->selected;
    }
}

// The sub-state stays: the mix screen is entered again with the list open.
void goHome(const c_keys& input) {
    if (input.pressed(KEY_Z) || input.pressed(PAD_BACK)) {
        all->state = STATE_HOME;
        playlist->clearMix();
        SDL_ShowCursor(1);
    }
}

}  // namespace

void c_keys::actionsOverMenu() {
    loadSelection(*this);
    closeMenu(*this);
    moveSelection(*this);
    goHome(*this);
}
