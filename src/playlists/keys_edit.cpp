// What the keys do on the playlist screen.
#include "core/all.h"
#include "core/globals.h"
#include "input/keys.h"
#include "input/slots.h"
#include "playlists/playlist.h"

void c_keys::actionsEditPlaylists() {
    if (pressed(KEY_Z) || pressed(PAD_BACK)) {
        playlist->exitEditPlaylists();
        all->state = STATE_HOME;
    }
}
