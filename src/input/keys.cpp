// Set-up of the input state, and the dispatcher.
#include "input/keys.h"

#include <algorithm>

#include "common/geometry.h"
#include "core/all.h"
#include "core/globals.h"

void c_keys::initKeys() {
    std::fill(std::begin(gKeys), std::end(gKeys), KEY_UP_STATE);
    anyKeyCount = 0;
    mouseClick = 0;
    mouseHeld = 0;
    keyDown = 0;
    keyHeld = 0;
    clickReleased = 0;
    wheel = 0;
    typedCount = 0;
    writing = 0;
    moved = 0;
    turned = 0;
    watchEvents();
}

void c_keys::initController() {
    std::fill(std::begin(padButton), std::end(padButton), kPadUnassigned);
}

int c_keys::isMouseXYIn(int x, int y, int w, int h) {
    return insideInclusive(mouseX, mouseY, x, y, w, h) ? 1 : 0;
}

void c_keys::actions() {
    switch (all->state) {
        case STATE_HOME:
            actionsHome();
            break;
        case STATE_PLAYLISTS:
            actionsEditPlaylists();
            break;
        case STATE_MIX:
            if (all->subState == SUB_PERFORMING) {
                actionsMix();
            } else if (all->subState == SUB_OVERMENU) {
                actionsOverMenu();
            }
            break;
        case STATE_OPTIONS:
            actionsOptions();
            break;
        default:
            break;
    }
}
