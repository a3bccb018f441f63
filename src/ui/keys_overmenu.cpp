// What the keys do while the list of playlists is open over the mix.
#include <SDL.h>

#include "core/all.h"
#include "core/globals.h"
#include "input/keys.h"
#include "mixer/mix.h"
#include "playlists/playlist.h"
#include "ui/overmenu.h"

namespace {

void loadSelection(const c_keys& input, int selected, c_playlist& playlists, c_mix& mixer,
                   c_all& program) {
    if (!input.confirms()) {
        return;
    }
    playlists.currentFamille = selected;
    playlists.clearMix();
    mixer.initMix();
    playlists.initLoad(selected);
    program.subState = SUB_PERFORMING;
}

void moveSelection(const c_keys& input, c_overMenu& menu, int playlists) {
    if (input.pressed(KEY_DOWN, PAD_DOWN) && menu.selected < playlists - 1) {
        ++menu.selected;
    }
    if (input.pressed(KEY_UP, PAD_UP) && menu.selected > 0) {
        --menu.selected;
    }
}

// The sub-state stays: the mix screen is entered again with the list open.
void goHome(const c_keys& input, c_playlist& playlists, c_all& program) {
    if (input.goesBack()) {
        program.state = STATE_HOME;
        playlists.clearMix();
        SDL_ShowCursor(1);
    }
}

}  // namespace

void c_keys::actionsOverMenu() {
    loadSelection(*this, overMenu->selected, *playlist, *mix, *all);
    if (pressed(KEY_RETURN)) {
        all->subState = SUB_PERFORMING;
    }
    moveSelection(*this, *overMenu, playlist->nbFamilles);
    goHome(*this, *playlist, *all);
}
